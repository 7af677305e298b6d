// Conversations, text in and text out, whoever solves them and whether or not anything is eliminated.

#include "lumo/commands/run_shell.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/commands/shell_run.h"

namespace lumo::test {
namespace {

struct TalkRow
{
  std::string text;
  std::string answers;
};

void expect_answers(const std::vector<TalkRow>& rows, int status)
{
  const bool has_z3 = !std::string(LUMO_Z3_PROGRAM).empty();
  std::vector<ShellMethod> methods = {{}, {{}, false, {}}};
  if (has_z3) methods.push_back({LUMO_Z3_PROGRAM " -in", true, {}});
  for (const TalkRow& row : rows) {
    for (const ShellMethod& method : methods) {
      SCOPED_TRACE(method.solver.value_or("built in") + (method.eliminates ? "" : ", all of it"));
      const SubcommandRun outcome = run_shell_on(row.text, method);
      EXPECT_EQ(outcome.out, row.answers) << row.text;
      EXPECT_EQ(outcome.err, "") << row.text;
      EXPECT_EQ(outcome.status, status) << row.text;
    }
  }
}

TEST(RunShell, AnswersQueriesBetweenPushesAndPops)
{
  expect_answers(
      {
          {"", ""},
          {"(check-sat)", "sat\n"},
          {"(assert false)(check-sat)(push 1)(check-sat)(pop 1)(check-sat)", "unsat\nunsat\nunsat\n"},
          {"(push 1)(assert false)(check-sat)(pop 1)(check-sat)", "unsat\nsat\n"},
          {"(declare-const x (_ BitVec 8))(assert (bvult x #x02))(check-sat)\n"
           "(push 1)(assert (bvugt x #x00))(check-sat)(get-value (x))\n"
           "(push 1)(assert (= x #x00))(check-sat)(pop 2)\n"
           "(push 1)(assert (distinct x #x01))(check-sat)(get-value (x (bvadd x #x03)))(pop 1)",
           "sat\nsat\n((x #x01))\nunsat\nsat\n((x #x00)\n ((bvadd x #x03) #x03))\n"},
          // x goes at the first query and comes back at the second.
          {"(declare-const x (_ BitVec 4))(declare-const y (_ BitVec 4))(assert (= (bvadd x y) "
           "#x5))(check-sat)\n"
           "(push 1)(assert (= x #x2))(check-sat)(get-value (y))(pop 1)\n"
           "(push 1)(assert (= y #x4))(check-sat)(get-value (x))(assert (= x #x2))(check-sat)(pop "
           "1)(check-sat)",
           "sat\nsat\n((y #x3))\nsat\n((x #x1))\nunsat\nsat\n"},
          {"(push 3)(declare-const b Bool)(assert b)(pop 0)(check-sat)(pop 2)(check-sat)(pop 1)",
           "sat\nsat\n"},
      },
      commands::kAnswered);
}

TEST(RunShell, AnswersQueriesWithAssumptions)
{
  expect_answers(
      {
          {"(declare-const a Bool)(declare-const b Bool)(assert (or a b))(check-sat-assuming (a))\n"
           "(check-sat-assuming ((not a)))(get-value (b))(check-sat-assuming ((not a) (not b)))(check-sat)\n"
           "(check-sat-assuming ())",
           "sat\nsat\n((b true))\nunsat\nsat\nsat\n"},
      },
      commands::kAnswered);
  expect_answers(
      {
          {"(declare-const x (_ BitVec 4))(check-sat-assuming ((bvult x #x1) (bvult #x0 x)))\n"
           "(check-sat-assuming ((= x #x7)))(get-value (x))(push 1)(assert (= x #x8))(check-sat)\n"
           "(check-sat-assuming ((= x #x7)))(get-value (x))(pop 1)(check-sat-assuming (true false))",
           "unsat\nsat\n((x #x7))\nsat\nunsat\n"
           "(error \"<stdin>:3:33: this can be asked only after the answer sat\")\nunsat\n"},
      },
      commands::kRefused);
  expect_answers(
      {{"(set-option :produce-unsat-assumptions true)(declare-const a Bool)(declare-const |b c| Bool)\n"
        "(declare-const x (_ BitVec 4))(assert (=> a (= x #x1)))\n"
        "(check-sat-assuming (|b c| a (= x #x2)))(get-unsat-assumptions)\n"
        "(check-sat-assuming (|b c| false))(get-unsat-assumptions)\n"
        "(assert (not |b c|))(check-sat-assuming (a |b c|))(get-unsat-assumptions)\n"
        "(assert false)(check-sat-assuming (a))(get-unsat-assumptions)",
        "unsat\n(a (= x #x2))\nunsat\n(false)\nunsat\n(|b c|)\nunsat\n()\n"}},
      commands::kAnswered);
}

TEST(RunShell, NamesTheAssertionsOfACore)
{
  expect_answers(
      {{"(set-option :produce-unsat-cores true)(declare-const x (_ BitVec 4))(declare-const y (_ BitVec 4))\n"
        "(assert (! (bvult x y) :named |a b|))(assert (! (bvult y #x3) :named two))(push 1)\n"
        "(assert (! (bvult #x8 x) :named three))(check-sat)(get-unsat-core)(pop 1)(check-sat)\n"
        "(assert (! (bvult #x8 y) :named four))(check-sat)(get-unsat-core)\n"
        "(assert (! false :named five))(check-sat)(get-unsat-core)",
        "unsat\n(|a b| two three)\nsat\nunsat\n(two four)\nunsat\n(five)\n"},
       // Assertions without names are not listed.
       {"(set-option :produce-unsat-cores true)(declare-const a Bool)(assert a)\n"
        "(assert (! (not a) :named n))(check-sat)(get-unsat-core)",
        "unsat\n(n)\n"}},
      commands::kAnswered);
}

TEST(RunShell, PrintsModelsOfAllThatIsDeclared)
{
  expect_answers(
      {{"(declare-const x (_ BitVec 4))(declare-fun |y z| () Bool)(define-fun n () Bool (not |y z|))\n"
        "(declare-const unused (_ BitVec 3))(assert (and n (= x #x9)))(check-sat)(get-model)\n"
        "(declare-const late (_ BitVec 5))(get-value (late n unused))",
        "sat\n(\n  (define-fun x () (_ BitVec 4) #x9)\n  (define-fun |y z| () Bool false)\n"
        "  (define-fun unused () (_ BitVec 3) #b000)\n)\n((late #b00000)\n (n true)\n (unused #b000))\n"},
       // One name with two sorts, and names that lumo would choose.
       {"(push 1)(declare-const x Bool)(assert x)(check-sat)(get-model)(pop 1)\n"
        "(declare-const x (_ BitVec 4))(declare-const lumo!u!0 Bool)(assert (and lumo!u!0 (= x #x3)))\n"
        "(check-sat)(get-model)",
        "sat\n(\n  (define-fun x () Bool true)\n)\nsat\n(\n  (define-fun x () (_ BitVec 4) #x3)\n"
        "  (define-fun lumo!u!0 () Bool true)\n)\n"},
       {"(set-option :produce-assignments true)(declare-const a Bool)(assert (! (or (! a :named p) a) :named "
        "|q r|))\n"
        "(check-sat)(get-assignment)",
        "sat\n((p true)\n (|q r| true))\n"}},
      commands::kAnswered);
}

TEST(RunShell, AnswersOptionsAndInformation)
{
  expect_answers(
      {{"(set-option :print-success true)(set-logic QF_BV)(set-info :status sat)(set-option :produce-models "
        "true)\n"
        "(declare-const x Bool)(define-sort B () Bool)(define-fun f ((y B)) B y)(assert (f x))(push 1)(pop "
        "1)\n"
        "(check-sat)(reset-assertions)(echo \"a \"\"b\")(reset)(check-sat)(exit)(check-sat)",
        "success\nsuccess\nsuccess\nsuccess\nsuccess\nsuccess\nsuccess\nsuccess\nsuccess\nsuccess\n"
        "sat\nsuccess\n\"a \"\"b\"\nsuccess\nsat\n"},
       {"(get-option :print-success)(get-option :produce-models)(get-option :random-seed)(get-option "
        ":nonsense)\n"
        "(set-option :random-seed 5)(get-option :random-seed)(set-option :nonsense (a b))\n"
        "(set-option :regular-output-channel \"stdout\")(set-option :regular-output-channel \"file\")\n"
        "(check-sat)(get-proof)",
        "false\ntrue\n0\nunsupported\n5\nunsupported\nunsupported\nsat\nunsupported\n"},
       {"(get-info :name)(get-info :authors)(get-info :error-behavior)(push 2)(get-info "
        ":assertion-stack-levels)\n"
        "(get-info :all-statistics)",
        "(:name \"lumo\")\n(:authors \"the lumo authors\")\n(:error-behavior continued-execution)\n"
        "(:assertion-stack-levels 2)\nunsupported\n"},
       {"(set-option :produce-assertions true)(declare-const x Bool)(assert  (or x ; or not\n true) )(push "
        "1)\n"
        "(assert (! x :named n))(get-assertions)(pop 1)(get-assertions)(reset-assertions)(get-assertions)",
        "((or x ; or not\n true)\n (! x :named n))\n((or x ; or not\n true))\n()\n"},
       {"(set-option :global-declarations true)(push 1)(declare-const x Bool)(assert x)(pop 1)(assert (not "
        "x))\n"
        "(check-sat)(reset-assertions)(assert x)(check-sat)",
        "sat\nsat\n"}},
      commands::kAnswered);
}

TEST(RunShell, AnswersMistakesAndGoesOn)
{
  const std::string prefix = "(error \"<stdin>:1:";
  expect_answers(
      {
          {"(assert x)(check-sat)", prefix + "9: the symbol x is not declared\")\nsat\n"},
          {"foo (check-sat)",
           prefix + "1: the symbol foo was found, but a command in parentheses was expected\")\nsat\n"},
          {"(echo x)", prefix + "7: the symbol x was found, but a string was expected\")\n"},
          {"(pop 1)", prefix + "1: 1 level is popped, but 0 can be\")\n"},
          {"(frobnicate 1)", prefix + "1: the command frobnicate is not known to lumo\")\n"},
          {"(check-sat", prefix + "1: a parenthesis opens here, but the text ends before it is closed\")\n"},
          {"(get-value (true))",
           prefix + "1: this can be asked only after the answer sat, and before anything else "
                    "is asserted, pushed or popped\")\n"},
          {"(check-sat)(get-unsat-core)",
           "sat\n" + prefix + "12: this can be asked only if the option :produce-unsat-cores is true\")\n"},
          {"(set-option :produce-unsat-cores true)(check-sat)(get-unsat-core)",
           "sat\n" + prefix + "50: this can be asked only after the answer unsat\")\n"},
          {"(check-sat)(push 1)(get-model)",
           "sat\n" + prefix +
               "20: this can be asked only after the answer sat, and before "
               "anything else is asserted, pushed or popped\")\n"},
          {"(set-option :produce-models maybe)",
           prefix + "1: the option :produce-models was given maybe, but true or false was expected\")\n"},
          {"(set-option :timeout \"5\")",
           prefix + "1: the option :timeout was given \"\"5\"\", but a numeral was expected\")\n"},
          {"(push 1)(set-option :global-declarations true)",
           prefix +
               "9: the option :global-declarations was set after a declaration or a push, but it can only "
               "be set before\")\n"},
          {"(declare-const x Integer)",
           prefix +
               "18: the symbol Integer was found, but a declared sort or one of a theory was expected\")\n"},
          {"(check-sat)(get-info :reason-unknown)",
           "sat\n" + prefix + "12: this can be asked only after the answer unknown\")\n"},
      },
      commands::kRefused);
}

TEST(RunShell, RefusesWhatSolveRefuses)
{
  const SubcommandRun outcome = run_shell_on("(check-sat)", {{}, true, -1});
  EXPECT_EQ(outcome.status, commands::kFailed);
  EXPECT_EQ(outcome.err, "lumo: the time limit must be a number of seconds above 0\n");
  commands::ShellOptions options;
  options.file = "no-such-folder/no-such-file";
  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(commands::run_shell(options, in, out, err), commands::kFailed);
  EXPECT_EQ(err.str(), "no-such-folder/no-such-file: this cannot be read: No such file or directory\n");
}

}  // namespace
}  // namespace lumo::test
