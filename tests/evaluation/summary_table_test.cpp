#include "evaluation/summary_table.h"

#include <algorithm>
#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "evaluation/csv.h"
#include "tests/evaluation/case_results.h"

namespace orvandel::evaluation::test {
namespace {

std::vector<std::vector<std::string>> FieldsOfLines(const std::string& text) {
  std::vector<std::vector<std::string>> lines;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = text.find('\n', from);
    lines.push_back(SplitCsvLine(std::string_view(text).substr(from, end - from)));
    from = end + 1;
  }
  return lines;
}

SuiteSummary SummaryOf(const std::vector<CaseResult>& results) {
  return Summarize("a, b", results);
}

TEST(SummaryTable, RowsAreAsWideAsTheHead) {
  const std::string head = SummaryTableHead(8);
  const std::string row = SummaryTableRow(SummaryOf({JudgeShift(1)}), 8);
  EXPECT_EQ(std::count(head.begin(), head.end(), '\n'), 2);
  EXPECT_EQ(head.size() - head.find('\n') - 1, row.size());
}

TEST(SummaryTable, AMissingValueIsADash) {
  EXPECT_NE(SummaryTableRow(SummaryOf({JudgeShift(40)}), 8).find(" - "), std::string::npos);
}

TEST(SummaryCsv, HasAFieldForEveryColumn) {
  const auto lines =
      FieldsOfLines(SummaryCsvHead() + SummaryCsvRow(SummaryOf({JudgeShift(3), JudgeShift(40)})));
  ASSERT_EQ(lines.size(), 2u);
  ASSERT_EQ(lines[0].size(), lines[1].size());
  EXPECT_EQ(lines[1][0], "a, b");
  EXPECT_EQ(lines[0][3], "found");
  EXPECT_EQ(lines[1][3], "1");
  EXPECT_EQ(lines[0][8], "corner_median_px");
  EXPECT_EQ(lines[1][8], "3.0000");
}

TEST(SummaryCsv, NewColumnsStandBehindTheOlderOnes) {
  const auto lines =
      FieldsOfLines(SummaryCsvHead() + SummaryCsvRow(SummaryOf({JudgeShift(3), JudgeShift(40)})));
  EXPECT_EQ(lines[0][15], "time_p90_ms");
  EXPECT_EQ(lines[0][16], "instances");
  EXPECT_EQ(lines[1][16], "2");
  EXPECT_EQ(lines[0][17], "instances_found");
  EXPECT_EQ(lines[1][17], "1");
  EXPECT_EQ(lines[0][18], "instances_false");
  EXPECT_EQ(lines[1][18], "1");
}

TEST(CasesCsv, TellsDeviationsWhereTheFinderDoes) {
  Finding finding = FindingAt(kInstance);
  finding.matches[0].covariance = std::array<double, 16>{};
  for (const std::size_t i : {0u, 5u, 10u, 15u})
    (*finding.matches[0].covariance)[i] = 0.0625;
  const auto lines = FieldsOfLines(CasesCsv(std::vector<CaseResult>{
      Judge("suite", CaseWith({kInstance}), finding, kFrame), JudgeShift(3)}));
  const auto column = static_cast<std::size_t>(std::find(lines[0].begin(), lines[0].end(), "sd_x") -
                                               lines[0].begin());
  ASSERT_LT(column + 5, lines[0].size());
  EXPECT_EQ(lines[1][column], "0.250000");
  EXPECT_EQ(lines[1][column + 4], "0.0000");  // squared deviation of the truth itself
  EXPECT_EQ(lines[1][column + 5], "4");
  EXPECT_EQ(lines[2][column], "");
}

TEST(CasesCsv, HasALinePerCaseAndPoses) {
  const std::vector<CaseResult> results = {JudgeShift(3), Unusable("suite", CaseWith({kInstance}))};
  const auto lines = FieldsOfLines(CasesCsv(results));
  ASSERT_EQ(lines.size(), 3u);
  ASSERT_EQ(lines[1].size(), lines[0].size());
  ASSERT_EQ(lines[2].size(), lines[0].size());
  EXPECT_EQ(lines[1][3], "found");
  EXPECT_EQ(lines[0][9], "x");
  EXPECT_EQ(lines[1][9], "203.0000");
  EXPECT_EQ(lines[2][3], "unusable");
  EXPECT_EQ(lines[2][9], "");
}

}  // namespace
}  // namespace orvandel::evaluation::test
