#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/tool_run.h"

namespace orvandel::cli::test {
namespace {

struct Mistake {
  std::vector<std::string> arguments;
  std::string says;  // part of the one line that it gets
};

void PrintTo(const Mistake& mistake, std::ostream* out) {
  *out << "orvandel";
  for (const std::string& argument : mistake.arguments)
    *out << ' ' << argument;
}

class UsageMistake : public testing::TestWithParam<Mistake> {};

TEST_P(UsageMistake, GetsOneTeachingLineAndExitCodeTwo) {
  const ToolRun run = RunOrvandel(GetParam().arguments);
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(NumLines(run.err), 1) << run.err;
  EXPECT_EQ(run.err.substr(0, 10), "orvandel: ") << run.err;
  EXPECT_TRUE(Contains(run.err, GetParam().says)) << run.err;
  EXPECT_TRUE(Contains(run.err, "--help")) << run.err;
}

INSTANTIATE_TEST_SUITE_P(Everywhere, UsageMistake,
                         testing::Values(Mistake{{}, "a command is missing"},                   //
                                         Mistake{{"fnid", "a", "b"}, "no command 'fnid'"},      //
                                         Mistake{{"--nonsense"}, "'--nonsense' is no option"},  //
                                         Mistake{{"find", "a", "b", "--nonsense"}, "--nonsense"}));

INSTANTIATE_TEST_SUITE_P(
    Find, UsageMistake,
    testing::Values(
        Mistake{{"find"}, "PATTERN is missing"},         //
        Mistake{{"find", "p.png"}, "SCENE is missing"},  //
        Mistake{{"find", "--knowledge", "k"}, "SCENE is missing"},
        Mistake{{"find", "--knowledge", "k", "--pattern-rect", "0,0,9,9", "s.png"}, "--knowledge"},
        Mistake{{"find", "p", "s", "--json", "--csv"}, "--json"},
        Mistake{{"find", "p", "s", "--accept-score", "200"}, "0 to 100"},
        Mistake{{"find", "p", "s", "--accept-score", "80.5"}, "whole number"},
        Mistake{{"find", "p", "s", "--accept-score", "-1"}, "0 to 100"},
        Mistake{{"find", "p", "s", "--scale", "2,1"}, "must go up"},
        Mistake{{"find", "p", "s", "--scale", "0,1"}, "above 0"},
        Mistake{{"find", "p", "s", "--scale", "1"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--scale", "a,b"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--scale", "1,2,3"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--pattern-rect", "1,2,3"}, "X,Y,WIDTH,HEIGHT"},
        Mistake{{"find", "p", "s", "--timeout", "20"}, "unit"},
        Mistake{{"find", "p", "s", "--timeout", "5s"}, "3.999s"},
        Mistake{{"find", "p", "s", "--edge-threshold", "much"}, "auto"},
        Mistake{{"find", "p", "s", "--edge-threshold", "253"}, "252"},
        Mistake{{"find", "p", "s", "--min-contour", "0"}, "--min-contour"},
        Mistake{{"find", "p", "s", "--min-contour", "50", "--max-contour", "40"}, "--max-contour"},
        Mistake{{"find", "p", "s", "--timeout"}, "--timeout: its value is missing"},
        Mistake{{"find", "p", "s", "--timeout", "1s", "--timeout", "2s"},
                "--timeout: given more than once"}));

INSTANTIATE_TEST_SUITE_P(Others, UsageMistake,
                         testing::Values(Mistake{{"train", "p.png"}, "--save is required"},  //
                                         Mistake{{"train", "--save", "name"}, "PATTERN"},    //
                                         Mistake{{"contours"}, "IMAGE"},                     //
                                         Mistake{{"contours", "a.png", "b.png"}, "b.png"},   //
                                         Mistake{{"contours", "a.png", "--zoom", "0"}, "1 to 32"},
                                         Mistake{{"lines"}, "IMAGE"},     //
                                         Mistake{{"evaluate"}, "SUITE"},  //
                                         Mistake{{"evaluate", "s", "--scale", "2"}, "MIN,MAX"}));

}  // namespace
}  // namespace orvandel::cli::test
