#include "lumo/commands/run_simplify.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"
#include "tests/commands/subcommand_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using commands::SimplifyOptions;

constexpr const char* kSimplifyScript =
    "(declare-const x (_ BitVec 8))\n"
    "(declare-const y (_ BitVec 8))\n"
    "(declare-const unused Bool)\n"
    "(assert (bvult (bvadd x y) (bvurem x #x07)))\n";

SubcommandRun simplify(const SimplifyOptions& options, const std::string& script = kSimplifyScript)
{
  return run(commands::run_simplify, options, script);
}

std::vector<std::string> list_names(const std::string& script)
{
  TermManager mgr;
  std::vector<std::string> names;
  for (const Term* constant : smtlib::read_script(mgr, script).constants)
    names.push_back(constant->get_symbol()->get_name());
  return names;
}

TEST(RunSimplify, WritesTheRestAndTheTrail)
{
  const TemporaryFolder folder;
  const SubcommandRun both = simplify({"-", folder.get_file("rest"), folder.get_file("trail")});
  EXPECT_EQ(both.status, commands::kAnswered);
  EXPECT_EQ(both.out, "");
  EXPECT_EQ(both.err, "");
  EXPECT_EQ(folder.count_files(), 2U);
  EXPECT_NE(folder.read("rest").find("(check-sat)"), std::string::npos);
  EXPECT_NE(folder.read("rest").find("(get-model)"), std::string::npos);
  EXPECT_NE(folder.read("trail").find("(bvadd x y)"), std::string::npos);

  const SubcommandRun rest = simplify({"-", "-", {}});
  EXPECT_EQ(rest.status, commands::kAnswered);
  EXPECT_EQ(rest.out, folder.read("rest"));
  const SubcommandRun trail = simplify({"-", folder.get_file("rest"), "-"});
  EXPECT_EQ(trail.status, commands::kAnswered);
  EXPECT_EQ(trail.out, folder.read("trail"));
}

TEST(RunSimplify, DeclaresWhatIsLeftAlone)
{
  // The sum and the order atom are eliminated; the guard of the atom remains.
  EXPECT_EQ(list_names(simplify({"-", "-", {}}).out), std::vector<std::string>{"x"});
  EXPECT_EQ(list_names(simplify({"-", "-", {}}, "(declare-const p Bool)(assert p)").out),
            std::vector<std::string>{});
}

TEST(RunSimplify, LeavesOldFilesAloneIfOneCannotBeWritten)
{
  const TemporaryFolder folder;
  const std::string old_file = folder.write("old", "old");
  const std::string missing = folder.get_file("missing/file");
  const std::string full_error = "/dev/full: this cannot be written: No space left on device\n";
  const std::string missing_error = missing + ": this cannot be written: No such file or directory\n";
  const std::vector<std::pair<SimplifyOptions, std::string>> rows = {
      {{"-", old_file, "/dev/full"}, full_error},
      {{"-", "/dev/full", old_file}, full_error},
      {{"-", old_file, missing}, missing_error},
      {{"-", missing, old_file}, missing_error},
  };
  for (const auto& [options, error] : rows) {
    const SubcommandRun run = simplify(options);
    EXPECT_EQ(run.status, commands::kFailed);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, error);
    EXPECT_EQ(folder.read("old"), "old");
    EXPECT_EQ(folder.count_files(), 1U);
  }
}

TEST(RunSimplify, LeavesTheTrailAloneIfTheRestCannotBePrinted)
{
  const TemporaryFolder folder;
  std::istringstream in(kSimplifyScript);
  std::ofstream out("/dev/full");
  std::ostringstream err;
  EXPECT_EQ(commands::run_simplify({"-", "-", folder.get_file("trail")}, in, out, err), commands::kFailed);
  EXPECT_EQ(err.str(), "<stdout>: this cannot be written: No space left on device\n");
  EXPECT_EQ(folder.count_files(), 0U);
}

void expect_one_output(const std::string& rest, const std::string& trail)
{
  const SubcommandRun run = simplify({"-", rest, trail});
  EXPECT_EQ(run.status, commands::kFailed) << rest << ' ' << trail;
  EXPECT_EQ(run.err,
            "lumo: the rest and the trail would both go to " + trail + ", but two files were expected\n");
}

/// For its lifetime, relative names are relative to a folder.
class CurrentFolder
{
 public:
  explicit CurrentFolder(const TemporaryFolder& folder) : before_(std::filesystem::current_path())
  {
    std::filesystem::current_path(folder.get_path());
  }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;
  ~CurrentFolder() { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_;
};

TEST(RunSimplify, RefusesTwoNamesOfOneFile)
{
  const TemporaryFolder folder;
  const CurrentFolder current(folder);
  std::filesystem::create_directory("folder");
  std::filesystem::create_directory_symlink("folder", "other");
  std::filesystem::create_symlink("folder/file", "link");
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"q", "q"},
      {"q", "./q"},
      {folder.get_file("q"), "q"},
      {"folder/../q", folder.get_path().string() + "/./q"},
      {"folder/file", "other/file"},
      {"folder/file", "link"},
      {"other/file", "link"},
  };
  const std::size_t num_files = folder.count_files();
  for (const auto& [rest, trail] : rows) {
    expect_one_output(rest, trail);
    expect_one_output(trail, rest);
  }
  EXPECT_EQ(folder.count_files(), num_files);
  folder.write("q", "old");
  folder.write("folder/file", "old");
  for (const auto& [rest, trail] : rows)
    expect_one_output(rest, trail);
  EXPECT_EQ(folder.read("q"), "old");
  EXPECT_EQ(folder.read("folder/file"), "old");
}

TEST(RunSimplify, RefusesOnePipeForBothFiles)
{
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.get_file("pipe").c_str(), 0600), 0);
  expect_one_output(folder.get_file("pipe"), folder.get_file("pipe"));
  expect_one_output("-", "-");
  expect_one_output("-", "/dev/stdout");
  expect_one_output("/dev/fd/1", "-");
  EXPECT_EQ(simplify({"-", "/dev/null", "/dev/null"}).status, commands::kAnswered);
}

TEST(RunSimplify, ReplacesTwoNamesOfOneInodeBySeparateFiles)
{
  const TemporaryFolder folder;
  folder.write("rest", "old");
  std::filesystem::create_hard_link(folder.get_file("rest"), folder.get_file("trail"));
  EXPECT_EQ(simplify({"-", folder.get_file("rest"), folder.get_file("trail")}).status, commands::kAnswered);
  EXPECT_NE(folder.read("rest").find("(check-sat)"), std::string::npos);
  EXPECT_NE(folder.read("trail").find("lumo-step"), std::string::npos);
}

TEST(RunSimplify, DoesNotWriteOverTheScript)
{
  const TemporaryFolder folder;
  const std::string script = folder.write("script", kSimplifyScript);
  const std::string same_file = folder.get_path().string() + "/./script";
  for (const SimplifyOptions& options :
       {SimplifyOptions{script, script, {}}, SimplifyOptions{same_file, script, {}},
        SimplifyOptions{script, "-", script}, SimplifyOptions{script, folder.get_file("rest"), script}})
  {
    const SubcommandRun run = simplify(options);
    EXPECT_EQ(run.status, commands::kFailed);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "lumo: " + script + " would be overwritten, but it is the script that is read\n");
    EXPECT_EQ(folder.read("script"), kSimplifyScript);
    EXPECT_EQ(folder.count_files(), 1U);
  }
}

TEST(RunSimplify, WritesNothingForABadScript)
{
  const TemporaryFolder folder;
  const SubcommandRun run =
      simplify({"-", folder.get_file("rest"), folder.get_file("trail")}, "(declare-fun f (Bool) Boole)");
  EXPECT_EQ(run.status, commands::kFailed);
  EXPECT_TRUE(run.err.starts_with("<stdin>:1:")) << run.err;
  EXPECT_EQ(folder.count_files(), 0U);
}

}  // namespace
}  // namespace lumo::test
