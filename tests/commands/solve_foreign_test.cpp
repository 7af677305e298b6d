// Scripts with arrays, functions, other sorts and quantifiers: the answers are those of Z3 for the original, and Z3
// accepts the models for it.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/commands/run_simplify.h"
#include "lumo/commands/run_solve.h"
#include "lumo/smtlib/command_splitter.h"
#include "lumo/smtlib/lexer.h"
#include "tests/commands/subcommand_run.h"
#include "tests/support/random.h"
#include "tests/support/random_theories.h"
#include "tests/support/text_file.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace lumo::test {
namespace {

using commands::SolveOptions;

const std::string kZ3Program = LUMO_Z3_PROGRAM;
const std::string kCvc5Program = LUMO_CVC5_PROGRAM;

/// The commands of a text.
std::vector<std::string> split_commands(const std::string& text)
{
  smtlib::CommandSplitter splitter;
  splitter.add(text);
  splitter.finish();
  std::vector<std::string> commands;
  for (auto command = splitter.take(); command; command = splitter.take())
    commands.emplace_back(command->text);
  return commands;
}

/// The second word of a command, which is the name that it declares or defines.
std::string get_second_word(const std::string& command)
{
  smtlib::Lexer lexer(command);
  for (int i = 0; i < 2; ++i)
    static_cast<void>(lexer.next());
  return std::string(lexer.next().text);
}

bool is_declaration(const std::string& command)
{
  return command.starts_with("(declare-fun") || command.starts_with("(declare-const");
}

/// The elements of the sort S as Z3 writes them, where cvc5 writes `(as @S_0 S)`.
std::string rename_elements(std::string model)
{
  constexpr std::string_view kBefore = "(as @S_";
  constexpr std::string_view kAfter = " S)";
  for (std::size_t i = model.find(kBefore); i != std::string::npos; i = model.find(kBefore, i)) {
    model.erase(model.find(kAfter, i), kAfter.size());
    model.replace(i, kBefore.size(), "S!val!");
  }
  return model;
}

/// The script with definitions of a model in the place of the declarations. Elements of sorts that the model does not
/// declare are declared, and different elements are distinct.
std::string substitute(const std::string& script, const std::string& printed)
{
  const std::string model = rename_elements(printed);
  const std::vector<std::string> definitions = split_commands(model.substr(1, model.rfind(')') - 1));
  std::set<std::string> defined;
  std::set<std::string> elements;
  for (const std::string& definition : definitions) {
    defined.insert(get_second_word(definition));
    smtlib::Lexer lexer(definition);
    for (smtlib::Token t = lexer.next(); t.kind != smtlib::TokenKind::kEnd; t = lexer.next()) {
      if (t.is_symbol() && (t.text.starts_with("S!val!") || t.text.starts_with("lumo!element!")))
        elements.insert(std::string(t.text));
    }
  }
  std::string text;
  bool is_before = true;
  for (const std::string& command : split_commands(script)) {
    if (is_declaration(command) && defined.contains(get_second_word(command))) continue;
    const bool is_of_sorts = command.starts_with("(declare-sort") || command.starts_with("(define-sort") ||
                             command.starts_with("(set-");
    if (is_before && !is_of_sorts) {
      is_before = false;
      std::string all;
      for (const std::string& element : elements) {
        if (!defined.contains(element)) text += "(declare-fun " + element + " () S)\n";
        all += ' ' + element;
      }
      for (const std::string& definition : definitions)
        text += definition + '\n';
      if (elements.size() > 1) text += "(assert (distinct" + all + "))\n";
    }
    if (!command.starts_with("(check-sat") && !command.starts_with("(get-")) text += command + '\n';
  }
  return text;
}

#ifdef __SANITIZE_ADDRESS__
using LeaksAreIgnored = __lsan::ScopedDisabler;
#else
struct LeaksAreIgnored
{
  LeaksAreIgnored() {}  // NOLINT(modernize-use-equals-default): so that an object counts as used
};
#endif

z3::check_result decide_by_z3(const std::string& text)
{
  // Z3 4.8.12 itself loses 64 bytes on one of these scripts.
  const LeaksAreIgnored in_z3;
  z3::context z3;
  z3::solver solver(z3);
  try {
    solver.from_string(text.c_str());
  } catch (const z3::exception& e) {
    ADD_FAILURE() << e.msg() << text;
    return z3::unknown;
  }
  return solver.check();
}

/// Solves a text and checks the result against Z3's; returns the answer.
std::string check_solution(const std::string& text, const std::optional<std::string>& solver)
{
  SolveOptions options;
  options.file = "-";
  options.wants_model = true;
  options.method.solver_command = solver;
  const SubcommandRun outcome = run(commands::run_solve, options, text);
  EXPECT_EQ(outcome.status, 0) << outcome.err << text;
  const std::size_t end = outcome.out.find('\n');
  if (end == std::string::npos) return {};
  std::string answer = outcome.out.substr(0, end);
  const z3::check_result expected = decide_by_z3(text);
  EXPECT_EQ(answer, expected == z3::sat ? "sat" : "unsat") << text;
  if (answer == "sat") {
    const std::string valued = substitute(text, outcome.out.substr(end + 1));
    EXPECT_EQ(decide_by_z3(valued), z3::sat) << valued;
  }
  return answer;
}

TEST(SolveForeign, RandomScriptsAreAnsweredAsByZ3)
{
  Random random(61);
  SCOPED_TRACE(random);
  RandomTheories theories(random);
  int num_sat = 0;
  int num_unsat = 0;
  for (int i = 0; i < 150; ++i) {
    const std::string answer =
        check_solution(theories.make(1 + static_cast<std::size_t>(i) % 7), std::nullopt);
    num_sat += answer == "sat" ? 1 : 0;
    num_unsat += answer == "unsat" ? 1 : 0;
    if (HasFailure()) return;
  }
  EXPECT_GT(num_sat, 30);
  EXPECT_GT(num_unsat, 5);
}

TEST(SolveForeign, SolverProcessesAnswerRandomScripts)
{
  Random random(62);
  SCOPED_TRACE(random);
  RandomTheories theories(random);
  for (int i = 0; i < 15; ++i) {
    const std::string text = theories.make(1 + static_cast<std::size_t>(i) % 4);
    if (!kZ3Program.empty()) check_solution(text, kZ3Program + " -in");
    if (!kCvc5Program.empty())
      check_solution(text, kCvc5Program + " --lang smt2 --arrays-exp --produce-models");
    if (HasFailure()) return;
  }
}

TEST(SolveForeign, QuantifiersAreAnsweredAsByZ3)
{
  Random random(63);
  SCOPED_TRACE(random);
  RandomTheories theories(random);
  for (int i = 0; i < 40; ++i) {
    const std::string text = theories.make(1 + static_cast<std::size_t>(i) % 3, true);
    const SubcommandRun outcome = run(commands::run_simplify, commands::SimplifyOptions{"-", "-", {}}, text);
    ASSERT_EQ(outcome.status, 0) << outcome.err << text;
    EXPECT_EQ(decide_by_z3(outcome.out), decide_by_z3(text)) << text << outcome.out;
    SolveOptions options;
    options.file = "-";
    const SubcommandRun solved = run(commands::run_solve, options, text);
    EXPECT_EQ(solved.status, 0) << solved.err << text;
    EXPECT_EQ(solved.out, decide_by_z3(text) == z3::sat ? "sat\n" : "unsat\n") << text;
    if (HasFailure()) return;
  }
}

/// A folder of files with a table of their answers: the one that LUMO_THEORIES names, or one next to the checkout.
std::filesystem::path find_theories()
{
  const char* chosen = std::getenv("LUMO_THEORIES");  // NOLINT(concurrency-mt-unsafe)
  return chosen != nullptr ? std::filesystem::path(chosen)
                           : std::filesystem::path(LUMO_SOURCE_DIR) / "../shared/data/theories";
}

TEST(SolveForeign, FilesHaveTheirKnownAnswers)
{
  const std::filesystem::path folder = find_theories();
  std::ifstream table(folder / "index.tsv");
  if (!table) GTEST_SKIP() << "there is no folder of files with theories";
  std::string line;
  std::getline(table, line);  // the heads of the columns
  while (std::getline(table, line)) {
    std::istringstream fields(line);
    std::string file;
    std::string logic;
    std::string answer;
    fields >> file >> logic >> answer;
    SolveOptions options;
    options.file = (folder / file).string();
    options.method.seconds = 60;
    const SubcommandRun outcome = run(commands::run_solve, options);
    if (outcome.out.starts_with("unknown")) continue;
    EXPECT_EQ(outcome.out, answer + '\n') << file << '\n' << outcome.err;
    EXPECT_EQ(outcome.status, 0) << file << '\n' << outcome.err;
  }
}

}  // namespace
}  // namespace lumo::test
