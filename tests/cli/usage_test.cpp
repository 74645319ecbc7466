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
        Mistake{{"find", "--pattern", "p.png"}, "SCENE is missing"},
        Mistake{{"find", "--engine", "lines", "p", "s"}, "neither shapes nor segments"},
        Mistake{{"find", "p", "s", "--zoom", "3"}, "--overlay"},
        Mistake{{"find", "--knowledge", "k", "s"}, "add --engine segments"},
        Mistake{{"find", "p", "s", "--json", "--csv"}, "--json"},
        Mistake{{"find", "p", "s", "--min-score", "200"}, "0 to 1"},
        Mistake{{"find", "p", "s", "--accept-score", "80"}, "write 0.8"},
        Mistake{{"find", "p", "s", "--min-score", "-0.1"}, "0 to 1"},
        Mistake{{"find", "p", "s", "--min-score", "nan"}, "0 to 1"},
        Mistake{{"find", "p", "s", "--scale", "2,1"}, "must go up"},
        Mistake{{"find", "p", "s", "--scale", "0,1"}, "above 0"},
        Mistake{{"find", "p", "s", "--scale", "0.5,1000"}, "0.01 to 100"},
        Mistake{{"find", "p", "s", "--scale", "nan,2"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--scale", "1,inf"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--scale", "a,b"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--angle", "10,-10"}, "must go up"},
        Mistake{{"find", "p", "s", "--angle", "350,10"}, "-10,10"},
        Mistake{{"find", "p", "s", "--angle", "-200,200"}, "360"},
        Mistake{{"find", "p", "s", "--angle", "nan"}, "FROM,TO"},
        Mistake{{"find", "p", "s", "--angle", "1e9,1e9"}, "720"},
        Mistake{{"find", "p", "s", "--max-matches", "-1"}, "0 to 10000"},
        Mistake{{"find", "p", "s", "--max-overlap", "1.5"}, "0 to 1"},
        Mistake{{"find", "p", "s", "--polarity", "inverse"}, "same, reversed, either and mixed"},
        Mistake{{"find", "p", "s", "--threads", "0"}, "1 to 256"},
        Mistake{{"find", "p", "s", "--scale", "1,2,3"}, "MIN,MAX"},
        Mistake{{"find", "p", "s", "--pattern-rect", "1,2,3"}, "X,Y,WIDTH,HEIGHT"},
        Mistake{{"find", "p", "s", "--timeout", "20"}, "unit"},
        Mistake{{"find", "p", "s", "--timeout", "1001s"}, "1000s"},
        Mistake{{"find", "p", "s", "--edge-threshold", "20"}, "belongs to the segment engine"},
        Mistake{{"find", "p", "s", "--min-contour", "20"}, "belongs to the segment engine"},
        Mistake{{"find", "p", "s", "--timeout"}, "--timeout: its value is missing"},
        Mistake{{"find", "p", "s", "--timeout", "1s", "--timeout", "2s"},
                "--timeout: given more than once"}));

// With --engine segments in front.
std::vector<std::string> BySegments(std::vector<std::string> rest) {
  rest.insert(rest.begin(), {"find", "--engine", "segments"});
  return rest;
}

INSTANTIATE_TEST_SUITE_P(
    FindBySegments, UsageMistake,
    testing::Values(
        Mistake{BySegments({"--knowledge", "k"}), "SCENE is missing"},
        Mistake{BySegments({"--knowledge", "k", "--pattern-rect", "0,0,9,9", "s"}), "--knowledge"},
        Mistake{BySegments({"--knowledge", "k", "--pattern", "p", "s"}), "give one of them"},
        Mistake{BySegments({"p", "s", "--accept-score", "200"}), "0 to 100"},
        Mistake{BySegments({"p", "s", "--min-score", "80.5"}), "whole number"},
        Mistake{BySegments({"p", "s", "--accept-score", "-1"}), "0 to 100"},
        Mistake{BySegments({"p", "s", "--scale", "2,1"}), "must go up"},
        Mistake{BySegments({"p", "s", "--scale", "0,1"}), "above 0"},
        Mistake{BySegments({"p", "s", "--scale", "1"}), "MIN,MAX"},
        Mistake{BySegments({"p", "s", "--scale", "a,b"}), "MIN,MAX"},
        Mistake{BySegments({"p", "s", "--scale", "1,2,3"}), "MIN,MAX"},
        Mistake{BySegments({"p", "s", "--timeout", "5s"}), "3.999s"},
        Mistake{BySegments({"p", "s", "--edge-threshold", "much"}), "auto"},
        Mistake{BySegments({"p", "s", "--edge-threshold", "253"}), "252"},
        Mistake{BySegments({"p", "s", "--min-contour", "0"}), "--min-contour"},
        Mistake{BySegments({"p", "s", "--min-contour", "50", "--max-contour", "40"}),
                "--max-contour"},
        Mistake{BySegments({"p", "s", "--angle", "-5,5"}), "belongs to the shape engine"},
        Mistake{BySegments({"p", "s", "--max-matches", "3"}), "belongs to the shape engine"},
        Mistake{BySegments({"p", "s", "--max-overlap", "0"}), "belongs to the shape engine"},
        Mistake{BySegments({"p", "s", "--polarity", "same"}), "belongs to the shape engine"},
        Mistake{BySegments({"p", "s", "--threads", "2"}), "belongs to the shape engine"}));

INSTANTIATE_TEST_SUITE_P(
    Others, UsageMistake,
    testing::Values(Mistake{{"train", "--engine", "segments", "p.png"}, "--save is required"},
                    Mistake{{"train", "p.png", "--save", "n"}, "--engine segments"},
                    Mistake{{"train", "p.png", "--zoom", "2"}, "--overlay"},
                    Mistake{{"train", "--save", "name"}, "PATTERN"},   //
                    Mistake{{"contours"}, "IMAGE"},                    //
                    Mistake{{"contours", "a.png", "b.png"}, "b.png"},  //
                    Mistake{{"contours", "a.png", "--zoom", "0"}, "1 to 32"},
                    Mistake{{"edges"}, "IMAGE"},
                    Mistake{{"edges", "a.png", "--min-strength", "nan"}, "0 to"},
                    Mistake{{"edges", "a.png", "--min-strength", "-1"}, "0 to"},
                    Mistake{{"lines"}, "IMAGE"},     //
                    Mistake{{"evaluate"}, "SUITE"},  //
                    Mistake{{"evaluate", "s", "--scale", "2,1"}, "must go up"}));

}  // namespace
}  // namespace orvandel::cli::test
