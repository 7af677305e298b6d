// The examples that come with the program, and a solver's verdict on its answers.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"

namespace lumo::test {
namespace {

const std::filesystem::path kFolder = std::filesystem::path(LUMO_SOURCE_DIR) / "examples";
constexpr const char* kRefusals = "refusals.smt2";

std::vector<std::string> list_examples()
{
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".smt2") names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> split_lines(const std::string& text)
{
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

[[maybe_unused]] std::string read_example(const std::string& name)
{
  std::ostringstream text;
  text << std::ifstream(kFolder / name).rdbuf();
  return text.str();
}

/// The symbol after the first word of a line: `x` of `(declare-const x Bool)`.
std::string get_declared_symbol(const std::string& line)
{
  const std::size_t first = line.find(' ') + 1;
  if (line[first] == '|') return line.substr(first, line.find('|', first + 1) + 1 - first);
  return line.substr(first, line.find(' ', first) - first);
}

/// The example with definitions in place of the declarations of their constants.
[[maybe_unused]] std::string join(const std::string& example, const std::string& definitions)
{
  std::map<std::string, std::string> by_symbol;
  for (const std::string& line : split_lines(definitions))
    by_symbol[get_declared_symbol(line)] = line;
  std::string joined;
  for (const std::string& line : split_lines(example)) {
    const bool is_declaration = line.starts_with("(declare-const ");
    const auto definition = is_declaration ? by_symbol.find(get_declared_symbol(line)) : by_symbol.end();
    joined += (definition != by_symbol.end() ? definition->second : line) + "\n";
  }
  if (joined.find("(check-sat)") == std::string::npos) joined += "(check-sat)\n";
  return joined;
}

TEST(Examples, AreAnsweredCompletelyAndZ3Agrees)
{
  std::size_t num_answered = 0;
  for (const std::string& name : list_examples()) {
    if (name == kRefusals) continue;
    SCOPED_TRACE(name);
    const Outcome answer = run_lumo({"invert", name}, kFolder);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.err, "");
    EXPECT_NE(answer.out, "");
    ++num_answered;
#ifdef Z3_PROGRAM
    const TemporaryFolder folder;
    const Outcome judgement =
        run_program(Z3_PROGRAM, {"-in"}, folder.get_path(), join(read_example(name), answer.out));
    EXPECT_EQ(judgement.out, "sat\n");
#endif
  }
  EXPECT_GE(num_answered, 3U);
}

TEST(Examples, ShowEveryKindOfRefusal)
{
  const Outcome answer = run_lumo({"invert", kRefusals}, kFolder);
  EXPECT_EQ(answer.status, 1);
  EXPECT_EQ(answer.out, "(define-fun x () (_ BitVec 8) #x05)\n(define-fun y () (_ BitVec 8) #x00)\n");
  EXPECT_EQ(
      answer.err,
      "refusals.smt2: assertion 2: bvult: We cannot find a value for this atom!\n"
      "refusals.smt2: assertion 3: bvmul: We cannot find a value for this atom!\n"
      "refusals.smt2: assertion 4: bvadd: the values that the calculator gives make the application #x0c, "
      "but #x06 was expected\n"
      "refusals.smt2: assertion 5: bvadd: an argument that is itself an application of bvmul needs a value, "
      "but only constants can be defined\n"
      "refusals.smt2: assertion 6: bvsub: the constant x needs the value #x09, but assertion 1 has given it "
      "#x05\n"
      "refusals.smt2: assertion 7: this is the constant p alone, but an application of an operator was "
      "expected\n"
      "refusals.smt2: assertion 8: bvurem: Should not be called is never free!\n"
      "refusals.smt2: assertion 9: bvsrem: Should not be called is never free!\n");
}

#ifdef Z3_PROGRAM
TEST(Examples, TogetherGiveOneScriptThatZ3Accepts)
{
  std::vector<std::string> args = {"invert"};
  const std::vector<std::string> names = list_examples();
  args.insert(args.end(), names.begin(), names.end());
  const Outcome answer = run_lumo(args, kFolder);
  EXPECT_EQ(answer.status, 1);
  const TemporaryFolder folder;
  const Outcome judgement = run_program(Z3_PROGRAM, {"-in"}, folder.get_path(), answer.out + "(check-sat)\n");
  EXPECT_EQ(judgement.status, 0);
  EXPECT_EQ(judgement.out, "sat\n");
}
#endif

}  // namespace
}  // namespace lumo::test
