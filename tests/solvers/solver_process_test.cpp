#include "lumo/solvers/solver_process.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/characters.h"
#include "tests/solvers/no_more_files.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

using solvers::Answer;
using solvers::Solution;
using solvers::SolverLimits;

/// Asks programs for a model of x <u y, constants of 8 bits.
class CommandSolver : public testing::Test
{
 protected:
  [[nodiscard]] const Term* make_constant(const std::string& name)
  {
    return mgr_.make_constant(name, mgr_.make_bv_type(8));
  }
  Solution solve(const std::string& command, const SolverLimits& limits = {})
  {
    return solvers::solve_with_process(mgr_, command, assertions_, limits);
  }
  Answer find_answer(const std::string& command, const SolverLimits& limits = {})
  {
    return solve(command, limits).answer;
  }
  /// The message about a solver that fails, after its name.
  std::string find_failure(const std::string& command)
  {
    try {
      solve(command);
    } catch (const solvers::SolverError& e) {
      const std::string start = "the solver \"" + smtlib::make_excerpt(command) + "\" ";
      EXPECT_EQ(std::string(e.what()).substr(0, start.size()), start);
      return std::string(e.what()).substr(start.size());
    }
    return "(no failure)";
  }
  /// Solves with a program and expects a model that makes all assertions true.
  void expect_model(const std::string& command)
  {
    const Solution solution = solve(command);
    ASSERT_EQ(solution.answer, Answer::kSat) << command;
    ModelStore model(&mgr_);
    ModelStore::DefinitionStack definitions;
    for (const ModelValue& definition : solution.model)
      definitions.emplace(definition.constant, definition.value, true);
    model.replay(definitions);
    for (const Term* assertion : assertions_)
      EXPECT_EQ(model.get_value(assertion), mgr_.make_true()) << command;
  }

  TermManager mgr_;
  std::vector<const Term*> assertions_ = {
      mgr_.make_term(mgr_.make_bv_ult_symbol(8), {make_constant("x"), make_constant("y")})};
};

TEST_F(CommandSolver, TakesAnswersAndModels)
{
  const Solution solution = solve("cat > /dev/null; echo sat; echo '((define-fun y () (_ BitVec 8) #x05))'");
  EXPECT_EQ(solution.answer, Answer::kSat);
  ASSERT_EQ(solution.model.size(), 1U);
  EXPECT_EQ(solution.model[0].constant, make_constant("y"));
  EXPECT_EQ(solution.model[0].value, mgr_.make_bv_number(5, 8));
}

TEST_F(CommandSolver, SendsACompleteScript)
{
  const TemporaryFolder folder;
  EXPECT_EQ(find_answer("cat > " + folder.get_file("script") + "; echo unsat"), Answer::kUnsat);
  const std::string script = folder.read("script");
  for (const std::string piece : {"(set-logic ", "(bvult x y)", "(check-sat)", "(get-model)"})
    EXPECT_NE(script.find(piece), std::string::npos) << script;
}

TEST_F(CommandSolver, PassesOverWhatIsNoAnswer)
{
  EXPECT_EQ(find_answer("echo; echo '; comment'; echo success; echo unsupported; echo '  unsat '"),
            Answer::kUnsat);
  EXPECT_EQ(find_answer("printf 'unsat\\r\\n'"), Answer::kUnsat);
  EXPECT_EQ(find_answer("printf unsat"), Answer::kUnsat);
}

TEST_F(CommandSolver, TakesNoHeedOfErrorsBehindAnAnswerWithoutModel)
{
  const std::string error = "echo '(error \"line 9 column 10: model is not available\")'; exit 1";
  EXPECT_EQ(find_answer("echo unsat; " + error), Answer::kUnsat);
  EXPECT_EQ(find_answer("echo unknown; " + error), Answer::kUnknown);
  EXPECT_EQ(find_answer("echo timeout; exit 1"), Answer::kUnknown);
}

TEST_F(CommandSolver, NeedsNoModelIfNoneIsWanted)
{
  EXPECT_EQ(find_answer("echo sat", {std::nullopt, false}), Answer::kSat);
}

TEST_F(CommandSolver, SaysUnknownWhenTheTimeIsOver)
{
  const Solution late = solve("sleep 1000 & wait", {0.2, true});
  EXPECT_EQ(late.answer, Answer::kUnknown);
  EXPECT_EQ(late.reason, "the time limit of 0.2 s was reached");
  EXPECT_EQ(find_answer("sleep 1000", {0.0, true}), Answer::kUnknown);
}

TEST_F(CommandSolver, SaysWhyTheAnswerIsUnknownIfTheSolverDoes)
{
  EXPECT_EQ(solve("echo unknown").reason, "");
  EXPECT_EQ(solve("echo unknown; echo '(error \"no model\")'; exit 1").reason, "");
  EXPECT_EQ(solve("echo timeout").reason, "the solver \"echo timeout\" reached a time limit of its own");
  const std::string command =
      "printf 'unknown\\n(error \"x\")\\n(:reason-unknown\\n \"a (hard) one\")\\nend\\n'";
  EXPECT_EQ(solve(command).reason, "the solver \"" + command + "\" said (:reason-unknown \"a (hard) one\")");
  EXPECT_EQ(solve("echo unsat; echo '(:reason-unknown \"x\")'").reason, "");
}

TEST_F(CommandSolver, QuotesWhatAFailingSolverSays)
{
  struct Row
  {
    std::string command;
    std::string failure;
  };
  const std::string no_model = "answered sat, but its model cannot be read at ";
  const Row rows[] = {
      {"echo '(error \"line 1: no such logic\")'; echo sat",
       "printed (error \"line 1: no such logic\") instead of an answer"},
      {"printf '\\n  (error \"one (line\\n  and \"\"another\"\"\")\\nsat\\n'",
       "printed (error \"one (line and \"\"another\"\"\") instead of an answer"},
      {"echo '(error \"no end'; echo more", "printed (error \"no end more instead of an answer"},
      {"echo hello; echo world; exit 3", "ended with status 3 and printed hello world instead of an answer"},
      {"echo 'sat?'", "ended with status 0 and printed sat? instead of an answer"},
      {"echo; echo no memory >&2; exit 5",
       "ended with status 5 and without an answer, and complained: no memory"},
      {"echo no >&2; echo '  memory' >&2; exit 5",
       "ended with status 5 and without an answer, and complained: no memory"},
      {"exit 0", "ended with status 0 and without an answer"},
      {"", "ended with status 0 and without an answer"},
      {"kill -SEGV $$", "was ended by signal 11"},
      {"echo oh >&2; kill -SEGV $$", "was ended by signal 11, and complained: oh"},
      {"echo unsat; kill -KILL $$", "was ended by signal 9, perhaps since memory ran out"},
      {"echo sat", "answered sat, but printed no model"},
      {"echo sat; echo '(error \"no model\")'",
       no_model +
           "line 2, column 1 of its output: the error \"no model\" was found, but a model was expected"},
      {"echo; echo ' sat'; echo; echo ' ((define-fun x () (_ BitVec 8) 5))'",
       no_model + "line 4, column 33 of its output: the numeral 5 was found, but a literal of the sort (_ "
                  "BitVec 8) was expected"},
      {"echo sat; echo '((define-fun x () (_ BitVec 8) #x05)'",
       no_model +
           "line 3, column 1 of its output: the end of the text was found, but a definition or the end "
           "of the model was expected"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(find_failure(row.command), row.failure);
}

TEST_F(CommandSolver, QuotesTheShellOnAMissingProgram)
{
  const std::string failure = find_failure("/nowhere/no-such-solver --option");
  EXPECT_EQ(failure.find("ended with status 127 and without an answer, and complained: "), 0U) << failure;
  EXPECT_NE(failure.find("no-such-solver"), std::string::npos) << failure;
}

TEST_F(CommandSolver, ShowsLongTextsCut)
{
  for (const std::string letter : {"n", "\\n\\n\\nx ", "longer than a word "}) {
    const std::string failure = find_failure("yes \"$(printf '" + letter + "')\" | head -c 100000");
    EXPECT_LT(failure.size(), 1000U) << letter;
    EXPECT_TRUE(failure.ends_with("... instead of an answer")) << failure;
  }
}

// -----------------------------------------------------------------------------------------------------------
// Programs

/// Each installed program, as a command that reads a script
class SolverProgram : public CommandSolver, public testing::WithParamInterface<const char*>
{
 protected:
  void SetUp() override
  {
    const std::string program = std::string(GetParam()) == "z3" ? LUMO_Z3_PROGRAM : LUMO_CVC5_PROGRAM;
    if (program.empty()) GTEST_SKIP() << GetParam() << " is not installed";
    command_ = program + (std::string(GetParam()) == "z3" ? " -in" : " --produce-models");
  }

  std::string command_;
};

std::string name_of_program(const testing::TestParamInfo<const char*>& program) { return program.param; }

INSTANTIATE_TEST_SUITE_P(Programs, SolverProgram, testing::Values("z3", "cvc5"), name_of_program);

TEST_P(SolverProgram, FindsModels)
{
  expect_model(command_);
  const Term* p = mgr_.make_constant("p", mgr_.make_bool_type());
  assertions_.push_back(mgr_.make_term(mgr_.make_not_symbol(), {p}));
  expect_model(command_);
}

TEST_P(SolverProgram, SaysUnsat)
{
  assertions_.push_back(mgr_.make_term(mgr_.make_bv_ult_symbol(8), {make_constant("y"), make_constant("x")}));
  EXPECT_EQ(find_answer(command_), Answer::kUnsat);
}

TEST_P(SolverProgram, SaysUnsatOfFalse)
{
  assertions_ = {mgr_.make_false()};
  EXPECT_EQ(find_answer(command_), Answer::kUnsat);
}

/// Without a newline, since cvc5 1.0 stops there if it reads its standard input.
TEST_P(SolverProgram, KeepsNamesApartWhateverTheirCharacters)
{
  std::vector<const Term*> constants;
  const auto add = [&](const std::string& name) { constants.push_back(make_constant(name)); };
  std::string every_character;
  for (int code = ' '; code < 0x7f; ++code) {
    const char c = static_cast<char>(code);
    if (!is_quotable_character(c)) continue;
    every_character += c;
    add(std::string("b") + c);
  }
  for (const char* name : {"let", "define-fun", "Bool!", "7", "a;b", "k!0", " x", "a(b)\"c\""})
    add(name);
  add(every_character);
  assertions_.clear();
  for (std::size_t i = 0; i < constants.size(); ++i) {
    const Term* value = mgr_.make_bv_number(i + 1, 8);
    assertions_.push_back(mgr_.make_term(mgr_.make_eq_symbol(mgr_.make_bv_type(8)), {constants[i], value}));
  }
  expect_model(command_);
}

TEST_P(SolverProgram, StopsWhenTheTimeIsOver)
{
  // A product of two numbers of 64 bits that has no small factor
  const DataType* sort = mgr_.make_bv_type(128);
  const Term* product = mgr_.make_constant("product", sort);
  std::vector<const Term*> factors;
  for (const char* name : {"u", "v"}) {
    const Term* half = mgr_.make_constant(name, mgr_.make_bv_type(64));
    factors.push_back(mgr_.make_term(mgr_.make_bv_zero_extend_symbol(64, 64), {half}));
    assertions_.push_back(mgr_.make_term(mgr_.make_bv_ult_symbol(64), {mgr_.make_bv_number(1, 64), half}));
  }
  const QNumber value = QNumber(0x6a09e667f3bcc9L) * QNumber(0x3c6ef372fe94f8L) + QNumber(7L);
  assertions_.push_back(
      mgr_.make_term(mgr_.make_eq_symbol(sort), {product, mgr_.make_bv_number(value, 128)}));
  assertions_.push_back(mgr_.make_term(mgr_.make_eq_symbol(sort),
                                       {product, mgr_.make_term(mgr_.make_bv_mul_symbol(128), factors)}));
  EXPECT_EQ(find_answer(command_, {0.3, true}), Answer::kUnknown);
}

TEST_F(CommandSolver, SaysWhyItCannotBeStarted)
{
  const NoMoreFiles guard;
  EXPECT_EQ(find_failure("echo unsat"),
            "was not started: no process can be made: no pipe: Too many open files");
}

}  // namespace
}  // namespace lumo::test
