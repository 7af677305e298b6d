#include "lumo/commands/run_check.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "tests/commands/subcommand_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

constexpr const char* kCheckScript =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const |y\n!| (_ BitVec 8))\n"
    "(declare-const p Bool)\n"
    "(assert (not p))\n"
    "  (assert (bvult x |y\n!|))\n"
    "(assert (bvult x |y\n!|))\n";

SubcommandRun check(const std::string& script, const std::string& model)
{
  const TemporaryFolder folder;
  return run(commands::run_check, commands::CheckOptions{"-", folder.write("model", model)}, script);
}

TEST(RunCheck, AcceptsAModel)
{
  for (const std::string model :
       {"((define-fun x () (_ BitVec 8) #x06) (define-fun |y\n!| () (_ BitVec 8) #b00000111))",
        "sat\n(model (define-fun |y\n!| () (_ BitVec 8) (_ bv1 8)))"})
  {
    const SubcommandRun run = check(kCheckScript, model);
    EXPECT_EQ(run.status, commands::kAnswered) << model;
    EXPECT_EQ(run.out, "valid\n");
    EXPECT_EQ(run.err, "");
  }
}

TEST(RunCheck, NamesTheFirstFalseAssertionWithItsValues)
{
  const SubcommandRun run = check(kCheckScript, "((define-fun x () (_ BitVec 8) #x06))");
  EXPECT_EQ(run.status, commands::kRefused);
  EXPECT_EQ(run.out, "invalid\n");
  EXPECT_EQ(run.err,
            "<stdin>:6:3: this assertion is false under the model; the values of its constants are\n"
            "  x = #x06\n"
            "  |y?!| = #x00, which the model leaves out\n");
}

TEST(RunCheck, ShowsSomeOfManyConstants)
{
  std::string script;
  std::string sum = "#x01";
  for (int i = 0; i < 25; ++i) {
    const std::string name = "x" + std::to_string(i);
    script += "(declare-const " + name + " (_ BitVec 8))";
    sum += " " + name;
  }
  const SubcommandRun run = check(script + "(assert (= #x00 (bvadd " + sum + ")))", "()");
  EXPECT_EQ(run.status, commands::kRefused);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 22);
  EXPECT_TRUE(run.err.ends_with("  and 5 more constants\n")) << run.err;
}

TEST(RunCheck, CutsLongValues)
{
  const SubcommandRun run = check("(declare-const x (_ BitVec 4000))(assert (= x (bvnot x)))",
                                  "((define-fun x () (_ BitVec 4000) #x" + std::string(1000, 'a') + "))");
  EXPECT_TRUE(run.err.ends_with("\n  x = #x" + std::string(198, 'a') + "...\n")) << run.err;
}

TEST(RunCheck, FailsForBadInput)
{
  const SubcommandRun script = check("(assert x)", "()");
  EXPECT_EQ(script.status, commands::kFailed);
  EXPECT_EQ(script.out, "");
  EXPECT_TRUE(script.err.starts_with("<stdin>:1:")) << script.err;
  const SubcommandRun model = check(kCheckScript, "(define-fun x () Bool true)");
  EXPECT_EQ(model.status, commands::kFailed);
  EXPECT_EQ(model.out, "");
  EXPECT_NE(model.err.find("/model:1:"), std::string::npos) << model.err;
  const SubcommandRun both = run(commands::run_check, commands::CheckOptions{"-", "-"}, kCheckScript);
  EXPECT_EQ(both.status, commands::kFailed);
  EXPECT_EQ(both.err, "lumo: several files are -, but the standard input can be read only once\n");
}

}  // namespace
}  // namespace lumo::test
