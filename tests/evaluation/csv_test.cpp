#include "evaluation/csv.h"

#include <gtest/gtest.h>

namespace orvandel::evaluation::test {
namespace {

using Fields = std::vector<std::string>;

TEST(Csv, LinesAreSplitAtCommas) {
  EXPECT_EQ(SplitCsvLine("a,,b c"), (Fields{"a", "", "b c"}));
  EXPECT_EQ(SplitCsvLine(""), (Fields{""}));
  EXPECT_EQ(SplitCsvLine(","), (Fields{"", ""}));
}

TEST(Csv, ACarriageReturnAtTheEndIsDropped) {
  EXPECT_EQ(SplitCsvLine("a,b\r"), (Fields{"a", "b"}));
}

TEST(Csv, QuotedFieldsKeepCommasAndQuotes) {
  EXPECT_EQ(SplitCsvLine("\"a,b\",\"say \"\"x\"\"\",c"), (Fields{"a,b", "say \"x\"", "c"}));
}

TEST(Csv, AFieldIsQuotedOnlyWhereItMustBe) {
  EXPECT_EQ(CsvField("plain name.png"), "plain name.png");
  EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvField("a\"b"), "\"a\"\"b\"");
}

TEST(Csv, AWrittenFieldIsReadBack) {
  for (const char* text : {"", "x", "a,b", "\"", "\"\"", ",\",", "it's"})
    EXPECT_EQ(SplitCsvLine(CsvField(text) + ",end"), (Fields{text, "end"}));
}

}  // namespace
}  // namespace orvandel::evaluation::test
