// Conversations with terms of other theories.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/command_splitter.h"
#include "tests/commands/shell_run.h"
#include "tests/support/process.h"
#include "tests/support/random.h"
#include "tests/support/random_theories.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

const std::string kForeignTalk = R"((set-option :produce-models true)
(set-logic QF_AUFBV)
(declare-const x (_ BitVec 4))
(declare-const y (_ BitVec 4))
(assert (bvult (bvadd x y) #x5))
(check-sat)
(declare-sort S 0)
(push 1)
(declare-fun f (S) (_ BitVec 4))
(declare-fun s () S)
(declare-const m (Array (_ BitVec 4) (_ BitVec 4)))
(define-fun g ((t S) (b (_ BitVec 4))) (_ BitVec 4) (bvadd (f t) (select m b)))
(assert (= (g s x) #x3))
(assert (= m (store m #x7 #x5)))
(check-sat)
(get-value ((g s x) (select m #x7) (= (f s) (f s))))
(push 1)
(assert (! (distinct (g s y) #x3) :named a))
(assert (= x y))
(check-sat)
(pop 2)
(declare-fun f (Bool) Bool)
(assert (not (f (= x #x1))))
(check-sat-assuming ((f (= x #x1)) (not (= x #x2))))
(check-sat-assuming ((f (= x #x2)) (= x #x1)))
(get-value (x))
(declare-fun wrong (T) Bool)
(declare-sort T 0)
(declare-fun right (T) Bool)
(check-sat)
)";

const std::string kForeignAnswers = R"(sat
sat
(((g s x) #x3)
 ((select m #x7) #x5)
 ((= (f s) (f s)) true))
unsat
unsat
sat
((x #x1))
(error "<stdin>:27:21: the symbol T was found, but a declared sort or one of a theory was expected")
sat
)";

std::vector<ShellMethod> list_foreign_solvers()
{
  std::vector<ShellMethod> solvers = {{}};
  if (!std::string(LUMO_Z3_PROGRAM).empty()) solvers.push_back({LUMO_Z3_PROGRAM " -in", true, {}});
  if (!std::string(LUMO_CVC5_PROGRAM).empty())
    solvers.push_back({LUMO_CVC5_PROGRAM " --lang smt2 --incremental --arrays-exp", true, {}});
  return solvers;
}

TEST(ShellForeign, AnswersBetweenPushesAndPops)
{
  for (const ShellMethod& method : list_foreign_solvers()) {
    const SubcommandRun outcome = run_shell_on(kForeignTalk, method);
    EXPECT_EQ(outcome.out, kForeignAnswers) << method.solver.value_or("Z3 within lumo");
    EXPECT_EQ(outcome.status, 1);
  }
}

/// Each assertion on a level of its own, and every second one is popped again.
std::string make_foreign_conversation(const std::string& script)
{
  smtlib::CommandSplitter splitter;
  splitter.add(script);
  splitter.finish();
  std::string text;
  int num_assertions = 0;
  for (auto command = splitter.take(); command; command = splitter.take()) {
    if (!command->text.starts_with("(assert")) {
      text += std::string(command->text) + '\n';
      continue;
    }
    text += "(push 1)\n" + std::string(command->text) + "\n(check-sat)\n";
    if (++num_assertions % 2 == 0) text += "(pop 1)\n";
  }
  return text;
}

TEST(ShellForeign, RandomConversationsAreAnsweredAsByZ3)
{
  if (std::string(LUMO_Z3_PROGRAM).empty()) GTEST_SKIP() << "there is no z3";
  Random random(71);
  SCOPED_TRACE(random);
  RandomTheories theories(random);
  const TemporaryFolder folder;
  const std::vector<ShellMethod> solvers = list_foreign_solvers();
  for (int i = 0; i < 30; ++i) {
    const std::string text = make_foreign_conversation(theories.make(5));
    const Outcome expected = run_program(LUMO_Z3_PROGRAM, {"-in"}, folder.get_path(), text);
    const SubcommandRun outcome = run_shell_on(text, solvers[static_cast<std::size_t>(i) % solvers.size()]);
    ASSERT_EQ(outcome.out, expected.out) << text;
  }
}

}  // namespace
}  // namespace lumo::test
