#include "lumo/commands/run_invert.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::commands {
namespace {

struct InvertAnswer
{
  int status;
  std::string out;
  std::string err;
};

InvertAnswer run_invert_on(const std::vector<std::string>& files, const std::string& standard_input = "")
{
  std::istringstream in(standard_input);
  std::ostringstream out;
  std::ostringstream err;
  const int status = run_invert(files, in, out, err);
  return {status, out.str(), err.str()};
}

/// A file that the destructor removes
class TemporaryFile
{
 public:
  TemporaryFile(const std::string& name, std::string_view text)
      : path_(std::filesystem::path(testing::TempDir()) / name)
  {
    std::ofstream(path_, std::ios::binary) << text;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::filesystem::remove(path_); }

  [[nodiscard]] std::string get_name() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

TEST(RunInvert, PrintsTheDefinitionsOfOneFileAlone)
{
  const InvertAnswer answer =
      run_invert_on({"-"},
                    "(declare-const x (_ BitVec 8))(declare-const |y z| (_ BitVec 8))\n"
                    "(assert (= (bvadd x |y z|) #x07))(check-sat)");
  EXPECT_EQ(answer.status, kAllSolved);
  EXPECT_EQ(answer.out,
            "(define-fun x () (_ BitVec 8) #x07)\n"
            "(define-fun |y z| () (_ BitVec 8) #x00)\n");
  EXPECT_EQ(answer.err, "");
}

TEST(RunInvert, ReportsEachRefusalAndGoesOn)
{
  const InvertAnswer answer =
      run_invert_on({"-"},
                    "(declare-const x (_ BitVec 8))(declare-const y (_ BitVec 8))(declare-const p Bool)\n"
                    "(assert p)\n"
                    "(assert (not true))\n"
                    "(assert (= ((_ extract 3 0) ((_ zero_extend 4) x)) #x1))\n"
                    "(assert (= (bvadd x y) #x07))\n"
                    "(assert (= (bvsub #x01 y) #x07))\n");
  EXPECT_EQ(answer.status, kSomeRefused);
  EXPECT_EQ(answer.out,
            "(define-fun x () (_ BitVec 8) #x07)\n"
            "(define-fun y () (_ BitVec 8) #x00)\n");
  EXPECT_EQ(
      answer.err,
      "<stdin>: assertion 1: this is the constant p alone, but an application of an operator was expected\n"
      "<stdin>: assertion 2: not: Term is not free!\n"
      "<stdin>: assertion 3: extract: an argument that is itself an application of (_ zero_extend 4) needs a "
      "value, but only constants can be defined\n"
      "<stdin>: assertion 5: bvsub: the constant y needs the value #xfa, but assertion 4 has given it "
      "#x00\n");
}

TEST(RunInvert, SeparatesFilesByReset)
{
  const TemporaryFile first("first.smt2", "(declare-const x Bool)(assert (not x))");
  const TemporaryFile second("sec\nond.smt2", "(declare-const x (_ BitVec 1))(assert (= (bvnot x) #b0))");
  const std::string folder = testing::TempDir();
  const InvertAnswer answer = run_invert_on({first.get_name(), second.get_name(), "-"}, "");
  EXPECT_EQ(answer.status, kAllSolved);
  EXPECT_EQ(answer.out, "; " + folder + "first.smt2\n(define-fun x () Bool false)\n(reset)\n; " + folder +
                            "sec?ond.smt2\n(define-fun x () (_ BitVec 1) #b1)\n(reset)\n; <stdin>\n");
}

TEST(RunInvert, NamesEveryFileThatItCannotReadAndPrintsNothing)
{
  const TemporaryFile good("good.smt2", "(declare-const x Bool)(assert (not x))");
  const TemporaryFile bad("bad.smt2", "(declare-const x Bool)\n(assert y)");
  const TemporaryFile foreign("foreign.smt2", "(declare-const x Real)");
  const std::string missing = testing::TempDir() + "missing.smt2";
  const InvertAnswer answer = run_invert_on(
      {good.get_name(), bad.get_name(), missing, foreign.get_name(), testing::TempDir(), "-"}, "(");
  EXPECT_EQ(answer.status, kFailed);
  EXPECT_EQ(answer.out, "");
  EXPECT_EQ(answer.err,
            bad.get_name() + ":2:9: the symbol y is not declared\n" + missing +
                ": this cannot be read: No such file or directory\n" + foreign.get_name() +
                ":1:18: the symbol Real was found, but the sort Bool or (_ BitVec w) was expected\n" +
                testing::TempDir() + ": this cannot be read: Is a directory\n" +
                "<stdin>:1:2: the end of the text was found, but the name of a command was expected\n");
}

TEST(RunInvert, FailsIfNothingCanBeWritten)
{
  std::istringstream in("(declare-const x Bool)(assert (not x))(assert x)");
  std::ofstream out("/dev/full");
  std::ostringstream err;
  EXPECT_EQ(run_invert({"-"}, in, out, err), kFailed);
  EXPECT_EQ(
      err.str(),
      "<stdin>: assertion 2: this is the constant x alone, but an application of an operator was expected\n"
      "<stdout>: this cannot be written: No space left on device\n");
}

TEST(RunInvert, AnswersALargeFileInTimeThatGrowsWithIt)
{
  // Each request names the whole chain in a branch that is not selected.
  std::string text = "(declare-const x (_ BitVec 8))";
  std::string chain = "x";
  for (int i = 0; i < 2000; ++i)
    chain = "(bvadd " + chain + " x)";
  text += "(define-fun chain () (_ BitVec 8) " + chain + ")";
  for (int i = 0; i < 2000; ++i) {
    const std::string number = std::to_string(i);
    text += "(declare-const c" + number + " Bool)(declare-const y" + number + " (_ BitVec 8))" +
            "(assert (= (ite c" + number + " y" + number + " chain) #x05))";
  }
  const InvertAnswer answer = run_invert_on({"-"}, text);
  EXPECT_EQ(answer.status, kAllSolved);
  EXPECT_EQ(std::count(answer.out.begin(), answer.out.end(), '\n'), 4000);
}

}  // namespace
}  // namespace lumo::commands
