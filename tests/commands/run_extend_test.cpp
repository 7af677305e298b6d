#include "lumo/commands/run_extend.h"

#include <string>

#include <gtest/gtest.h>

#include "lumo/commands/run_simplify.h"
#include "tests/commands/subcommand_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

constexpr const char* kExtendScript =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const |y !| (_ BitVec 8))\n"
    "(declare-const unused Bool)\n"
    "  (assert (= (bvadd x |y !|) (bvurem x #x07)))\n"
    "  (assert (bvult #x80 (bvurem x #xf0)))\n";
constexpr const char* kAnswer =
    "(\n"
    "  (define-fun x () (_ BitVec 8) #x83)\n"
    "  (define-fun |y !| () (_ BitVec 8) #x82)\n"
    "  (define-fun unused () Bool false)\n"
    ")\n";
/// x = #x83: 131 modulo 7 is 5.
constexpr const char* kModel = "sat\n(model (define-fun x () (_ BitVec 8) (_ bv131 8)))\n";

/// A script with its rest and its trail
struct Files
{
  TemporaryFolder folder;
  std::string script;
  std::string trail;

  explicit Files(const std::string& text = kExtendScript)
      : script(folder.write("script", text)), trail(folder.get_file("trail"))
  {
    const SubcommandRun run =
        test::run(commands::run_simplify, commands::SimplifyOptions{script, folder.get_file("rest"), trail});
    EXPECT_EQ(run.status, commands::kAnswered) << run.err;
  }
};

SubcommandRun extend(const commands::ExtendOptions& options, const std::string& standard_input = "")
{
  return run(commands::run_extend, options, standard_input);
}

TEST(RunExtend, PrintsTheModelOfTheScript)
{
  const Files files;
  const SubcommandRun run = extend({files.script, files.trail, "-"}, kModel);
  EXPECT_EQ(run.status, commands::kAnswered);
  EXPECT_EQ(run.out, kAnswer);
  EXPECT_EQ(run.err, "");
}

TEST(RunExtend, ReadsOneFileFromStandardInput)
{
  const Files files;
  const std::string model = files.folder.write("model", kModel);
  EXPECT_EQ(extend({files.script, files.trail, model}).out, kAnswer);
  EXPECT_EQ(extend({"-", files.trail, model}, kExtendScript).out, kAnswer);
  EXPECT_EQ(extend({files.script, "-", model}, files.folder.read("trail")).out, kAnswer);
  const SubcommandRun run = extend({"-", files.trail, "-"}, kExtendScript);
  EXPECT_EQ(run.status, commands::kFailed);
  EXPECT_EQ(run.err, "lumo: several files are -, but the standard input can be read only once\n");
}

TEST(RunExtend, RefusesAModelOfAnotherScript)
{
  const Files files;
  const SubcommandRun run = extend({files.script, files.trail, "-"}, "((define-fun x () (_ BitVec 8) #x0b))");
  EXPECT_EQ(run.status, commands::kCheckFailed);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(
      run.err,
      files.script +
          ":5:3: this assertion is false under the extended model; the model or the trail may belong to "
          "another script\n");
}

TEST(RunExtend, RefusesATrailOfAnotherScript)
{
  const Files files;
  const Files others(
      "(declare-const x (_ BitVec 8))(declare-const |y !| (_ BitVec 8))(declare-const unused Bool)\n"
      "(assert (= (bvsub x |y !|) (bvurem x #x07)))(assert (bvult #x80 (bvurem x #xf0)))");
  const SubcommandRun run = extend({files.script, others.trail, "-"}, kModel);
  EXPECT_EQ(run.status, commands::kCheckFailed);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.err.starts_with(files.script + ":4:3: ")) << run.err;
}

TEST(RunExtend, NamesTheFileThatCannotBeRead)
{
  const Files files;
  const SubcommandRun trail = extend({files.script, files.script, "-"}, kModel);
  EXPECT_EQ(trail.status, commands::kFailed);
  EXPECT_EQ(trail.out, "");
  EXPECT_TRUE(trail.err.starts_with(files.script + ":")) << trail.err;

  const SubcommandRun model = extend({files.script, files.trail, "-"}, "unsat\n");
  EXPECT_EQ(model.status, commands::kFailed);
  EXPECT_TRUE(model.err.starts_with("<stdin>:1:1: ")) << model.err;

  const std::string missing = files.folder.get_file("missing");
  const std::string error = missing + ": this cannot be read: No such file or directory\n";
  EXPECT_EQ(extend({missing, files.trail, "-"}).err, error);
  EXPECT_EQ(extend({files.script, missing, "-"}).err, error);
  EXPECT_EQ(extend({files.script, files.trail, missing}).err, error);
}

}  // namespace
}  // namespace lumo::test
