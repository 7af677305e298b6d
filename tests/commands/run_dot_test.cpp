#include "lumo/commands/run_dot.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "tests/commands/subcommand_run.h"

namespace lumo::test {
namespace {

constexpr const char* kDotScript =
    "(declare-const |x\"| (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(assert (bvult (bvadd |x\"| y) (bvurem y #x07)))\n"
    "(assert (= y y))\n";

SubcommandRun draw(const std::string& script, bool is_after)
{
  return run(commands::run_dot, commands::DotOptions{"-", is_after}, script);
}

std::size_t count(const std::string& text, const std::string& piece)
{
  std::size_t number = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
    ++number;
  return number;
}

TEST(RunDot, DrawsTheGraphWithWhatWillGo)
{
  const SubcommandRun run = draw(kDotScript, false);
  EXPECT_EQ(run.status, commands::kAnswered);
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(run.out.starts_with("digraph assertions {\n")) << run.out;
  EXPECT_TRUE(run.out.ends_with("}\n")) << run.out;
  EXPECT_EQ(count(run.out, "label=\"y\", shape=ellipse];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"x\\\"\", shape=ellipse];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"#x07\", shape=plaintext];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"bvadd\", shape=box, style=filled];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"bvult\", shape=box, style=filled];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"bvurem\", shape=box];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"=\", shape=box];"), 1U) << run.out;
  EXPECT_EQ(count(run.out, "label=\"assertion "), 2U) << run.out;
  EXPECT_EQ(count(run.out, " -> "), 2U * 4 + 2) << run.out;
}

TEST(RunDot, DrawsWhatIsLeft)
{
  // The order atom leaves its guard: the remainder is not 0.
  const SubcommandRun run = draw(kDotScript, true);
  EXPECT_EQ(run.status, commands::kAnswered);
  EXPECT_EQ(count(run.out, "bvult"), 0U) << run.out;
  EXPECT_EQ(count(run.out, "bvadd"), 0U) << run.out;
  EXPECT_EQ(count(run.out, "bvurem"), 1U) << run.out;
}

TEST(RunDot, MarksWhatStandsForOthers)
{
  const SubcommandRun run = draw(
      "(declare-const x (_ BitVec 8))(declare-const y (_ BitVec 8))"
      "(assert (= (bvurem (bvadd x y) #x05) (bvurem y #x05)))",
      true);
  EXPECT_EQ(count(run.out, "shape=ellipse, style=filled];"), 1U) << run.out;
}

TEST(RunDot, DrawsNothingOfNothing)
{
  EXPECT_EQ(count(draw("(declare-const x Bool)", false).out, "label"), 0U);
  EXPECT_EQ(count(draw("(declare-const x Bool)(assert x)", true).out, "label"), 0U);
}

TEST(RunDot, GrowsWithTheGraphAlone)
{
  std::string script = "(declare-const x (_ BitVec 8))(define-fun t0 () (_ BitVec 8) x)";
  constexpr int kDepth = 200;
  for (int i = 0; i < kDepth; ++i) {
    const std::string t = "t" + std::to_string(i);
    script += "(define-fun t" + std::to_string(i + 1) + " () (_ BitVec 8) (bvmul " + t + " " + t + "))";
  }
  script += "(assert (= #x01 t" + std::to_string(kDepth) + "))";
  EXPECT_EQ(count(draw(script, false).out, " -> "), 2U * kDepth + 2 + 1);
}

TEST(RunDot, FailsForBadInput)
{
  const SubcommandRun run = draw("(assert", false);
  EXPECT_EQ(run.status, commands::kFailed);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.err.starts_with("<stdin>:1:")) << run.err;
}

}  // namespace
}  // namespace lumo::test
