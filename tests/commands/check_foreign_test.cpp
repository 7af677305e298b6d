// Models of arrays, functions and declared sorts, judged without a solver. The verdicts follow by hand.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/commands/run_check.h"
#include "tests/commands/subcommand_run.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

const std::string kForeignDeclarations =
    "(set-logic QF_AUFBV)\n"
    "(declare-sort S 0)\n"
    "(declare-fun a () (Array (_ BitVec 2) (_ BitVec 4)))\n"
    "(declare-fun b () (Array (_ BitVec 2) (_ BitVec 4)))\n"
    "(declare-fun f ((_ BitVec 4) Bool) (_ BitVec 4))\n"
    "(declare-fun h (S) S)\n"
    "(declare-fun s () S)\n"
    "(declare-fun x () (_ BitVec 4))\n";

SubcommandRun check_foreign(const std::string& assertion, const std::string& model)
{
  const TemporaryFolder folder;
  return run(commands::run_check, commands::CheckOptions{"-", folder.write("model", model)},
             kForeignDeclarations + "(assert " + assertion + ")\n(check-sat)\n");
}

struct Judgement
{
  std::string assertion;
  std::string model;
  std::string verdict;
};

const std::string kArray = "(Array (_ BitVec 2) (_ BitVec 4))";

std::string define(const std::string& name, const std::string& signature, const std::string& body)
{
  return "(define-fun " + name + ' ' + signature + ' ' + body + ")\n";
}

TEST(CheckForeign, JudgesArrays)
{
  const std::string zeros = "((as const " + kArray + ") #x0)";
  const std::string ones = "((as const " + kArray + ") #x1)";
  const auto define_a = [](const std::string& value) { return define("a", "() " + kArray, value); };
  const auto define_b = [](const std::string& value) { return define("b", "() " + kArray, value); };
  const std::string stored = "(store " + zeros + " #b01 #x5)";
  const std::string identity = "(lambda ((i (_ BitVec 2))) (concat #b00 i))";
  const std::string all = "(store (store (store (store " + ones + " #b00 #x0) #b01 #x5) #b10 #x0) #b11 #x0)";
  for (const Judgement& row : std::vector<Judgement>{
           {"(= (select a #b01) #x5)", define_a(stored), "valid"},
           {"(= (select a #b10) #x5)", define_a(stored), "invalid"},
           {"(= a b)", define_a(stored) + define_b(zeros), "invalid"},
           {"(= a b)", define_a(stored) + define_b("(store " + zeros + " #b01 #x5)"), "valid"},
           {"(= a b)", define_a(stored) + define_b(all), "valid"},
           {"(= a b)", define_a(zeros) + define_b("(store " + ones + " #b01 #x0)"), "invalid"},
           {"(= (store a #b01 #x0) b)", define_a(stored) + define_b(zeros), "valid"},
           {"(distinct a b (store b #b11 #x2))", define_a(stored) + define_b(zeros), "valid"},
           {"(distinct a b (store a #b01 #x0))", define_a(stored) + define_b(zeros), "invalid"},
           {"(= (select (ite (= x #x1) a b) #b11) #x1)", define_a(zeros) + define_b(ones), "valid"},
           {"(= (select a #b11) #x3)", define_a(identity), "valid"},
           {"(= (select a #b11) #x2)", define_a(identity), "invalid"},
           {"(= (select a #b11) #x0)", define_b(ones), "valid"},
           {"(= (select a #b10) #x7)",
            define_a("(_ as-array k!0)") +
                define("k!0", "((i (_ BitVec 2))) (_ BitVec 4)", "(ite (= i #b10) #x7 #x0)"),
            "valid"},
       })
  {
    EXPECT_EQ(check_foreign(row.assertion, "(" + row.model + ")").out, row.verdict + "\n")
        << row.assertion << row.model;
  }
}

TEST(CheckForeign, JudgesFunctionsAndDeclaredSorts)
{
  const auto define_f = [](const std::string& body) {
    return define("f", "((u (_ BitVec 4)) (v Bool)) (_ BitVec 4)", body);
  };
  const std::string cases = "(ite (and (= u #x1) v) #x7 (ite (and (not v) (= #x2 u)) #x3 #xf))";
  const std::string elements = "(declare-fun S!val!0 () S) (declare-fun S!val!1 () S)";
  const std::string next = define("h", "((e S)) S", "(ite (= e S!val!0) S!val!1 S!val!0)");
  const std::string cvc5 = define("h", "((e S)) S", "(ite (= e (as @S_0 S)) (as @S_1 S) (as @S_0 S))") +
                           define("s", "() S", "(as @S_0 S)");
  for (const Judgement& row : std::vector<Judgement>{
           {"(= (f #x1 true) #x7)", define_f(cases), "valid"},
           {"(= (f #x1 false) #x7)", define_f(cases), "invalid"},
           {"(= (f #x2 false) #x3)", define_f(cases), "valid"},
           {"(= (f #x9 true) #xf)", define_f(cases), "valid"},
           {"(= (f #x9 true) #x9)", define_f("(ite v u (bvnot u))"), "valid"},
           {"(= (f #x9 false) #x6)",
            define_f("(g!1 u v)") +
                define("g!1", "((u (_ BitVec 4)) (v Bool)) (_ BitVec 4)", "(ite v u (bvnot u))"),
            "valid"},
           {"(= (f x true) x)", "", "valid"},
           {"(= (f (bvadd x #x1) true) #x1)", define_f("u"), "valid"},
           {"(distinct s (h s))", elements + next + define("s", "() S", "S!val!0"), "valid"},
           {"(= s (h (h s)))", elements + next + define("s", "() S", "S!val!1"), "valid"},
           {"(= s (h s))", next + define("s", "() S", "S!val!1"), "invalid"},
           {"(distinct s (h s))", cvc5, "valid"},
           {"(= s (h s))", cvc5, "invalid"},
       })
  {
    EXPECT_EQ(check_foreign(row.assertion, "(" + row.model + ")").out, row.verdict + "\n")
        << row.assertion << row.model;
  }
}

TEST(CheckForeign, NamesWhatItDoesNotEvaluate)
{
  const SubcommandRun outcome =
      check_foreign("(or (fp.isNaN ((_ to_fp 2 2) x)) (exists ((y (_ BitVec 4))) (= y x)))", "()");
  EXPECT_EQ(outcome.status, commands::kRefused);
  EXPECT_EQ(outcome.out, "unknown\n");
  EXPECT_EQ(outcome.err,
            "<stdin>:9:1: the truth of this assertion under the model is not known; lumo does not evaluate\n"
            "  (_ to_fp 2 2)\n"
            "  (exists ((y (_ BitVec 4))) (= y x))\n");
}

TEST(CheckForeign, AFalseAssertionDecides)
{
  const SubcommandRun outcome =
      check_foreign("(exists ((y (_ BitVec 4))) (= y x)))(assert (= (f x true) #x3)", "()");
  EXPECT_EQ(outcome.status, commands::kRefused);
  EXPECT_EQ(outcome.out, "invalid\n");
  EXPECT_EQ(outcome.err,
            "<stdin>:9:45: this assertion is false under the model; the values of its constants are\n"
            "  x = #x0, which the model leaves out\n");
}

}  // namespace
}  // namespace lumo::test
