#include "lumo/commands/invert.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"
#include "tests/support/refusal.h"
#include "tests/support/term_text.h"

namespace lumo::commands {
namespace {

constexpr std::string_view kDeclarations =
    "(declare-const p Bool)(declare-const q Bool)(declare-const c Bool)\n"
    "(declare-const x (_ BitVec 8))(declare-const y (_ BitVec 8))(declare-const z (_ BitVec 8))\n";

smtlib::Script read_assertions(TermManager& mgr, const std::vector<std::string_view>& assertions)
{
  std::string text(kDeclarations);
  for (const std::string_view assertion : assertions)
    text += "(assert " + std::string(assertion) + ")\n";
  return smtlib::read_script(mgr, text);
}

std::string solve(TermManager& mgr, Inverter& inverter, const Term* assertion, std::size_t number)
{
  std::string text;
  for (const ModelValue& definition : inverter.solve(make_request(mgr, assertion), number)) {
    text += (text.empty() ? "" : " ") + definition.constant->get_symbol()->get_name() + "=" +
            definition.value->get_symbol()->get_name();
  }
  return text;
}

/// The result for each of the assertions of one file: definitions, or the text of the refusal.
std::vector<std::string> solve_all(const std::vector<std::string_view>& assertions)
{
  TermManager mgr;
  Inverter inverter(mgr);
  std::vector<std::string> answers;
  for (const smtlib::Assertion& assertion : read_assertions(mgr, assertions).assertions) {
    const std::size_t number = answers.size() + 1;
    try {
      answers.push_back(solve(mgr, inverter, assertion.term, number));
    } catch (const Exception& e) {
      answers.emplace_back(e.what());
    }
  }
  return answers;
}

TEST(Requests, FollowFromTheShapeOfTheAssertion)
{
  struct Row
  {
    std::string_view assertion;
    std::string_view term;
    std::string_view value;
  };
  const std::vector<Row> rows = {
      {"(= (bvadd x y) #x05)", "(bvadd x y)", "#x05"},
      {"(= #x05 (bvadd x y))", "(bvadd x y)", "#x05"},
      {"(= (and p q) false)", "(and p q)", "false"},
      {"(= true (not p))", "(not p)", "true"},
      {"(= x #x05)", "(= x #x05)", "true"},
      {"(= p true)", "(= p true)", "true"},
      {"(= #x05 #x05)", "(= #x05 #x05)", "true"},
      {"(= (bvadd x y) (bvmul x y))", "(= (bvadd x y) (bvmul x y))", "true"},
      {"(bvult x y)", "(bvult x y)", "true"},
      {"(not (bvult x y))", "(bvult x y)", "false"},
      {"(not (= (bvadd x y) #x05))", "(= (bvadd x y) #x05)", "false"},
      {"(not (not p))", "(not p)", "false"},
      {"(not p)", "(not p)", "true"},
      {"(not true)", "(not true)", "true"},
      {"(distinct x y)", "(= x y)", "false"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.assertion);
    TermManager mgr;
    const Request request = make_request(mgr, read_assertions(mgr, {row.assertion}).assertions[0].term);
    EXPECT_EQ(test::make_term_text(request.term), row.term);
    EXPECT_EQ(test::make_term_text(request.value), row.value);
  }
}

TEST(Requests, NeedAnOperator)
{
  TermManager mgr;
  const smtlib::Script script = read_assertions(mgr, {"p", "true"});
  EXPECT_EQ(test::get_refusal([&] { (void)make_request(mgr, script.assertions[0].term); }),
            "this is the constant p alone, but an application of an operator was expected");
  EXPECT_EQ(test::get_refusal([&] { (void)make_request(mgr, script.assertions[1].term); }),
            "this is the literal true alone, but an application of an operator was expected");
}

struct InversionRow
{
  std::vector<std::string_view> assertions;
  std::vector<std::string> answers;
};

void expect_answers(const std::vector<InversionRow>& rows)
{
  for (const InversionRow& row : rows)
    EXPECT_EQ(solve_all(row.assertions), row.answers) << row.assertions[0];
}

TEST(Inverter, DefinesInTheOrderOfTheCalculator)
{
  expect_answers({
      {{"(= (bvadd x y) #x05)"}, {"x=#x05 y=#x00"}},
      {{"(= (bvsub #x05 x) #x07)"}, {"x=#xfe"}},
      {{"(= p q)"}, {"p=true q=true"}},
      {{"(not (= p q))"}, {"p=true q=false"}},
      {{"(not p)"}, {"p=false"}},
      {{"(not (not p))"}, {"p=true"}},
      {{"(and p q)"}, {"p=true q=true"}},
      {{"(= (ite c x y) #x05)"}, {"c=true x=#x05 y=#x05"}},
      {{"(= (ite c #x01 y) #x05)"}, {"c=false y=#x05"}},
      {{"(ite c true q)"}, {"c=true q=true"}},
      {{"(= (ite c x x) #x05)"}, {"c=true x=#x05"}},
      {{"(= x #x05)"}, {"x=#x05"}},
      {{"(= (bvmul x #x03) #x0f)"}, {"x=#x05"}},
      {{"(= p p)"}, {"p=true"}},
  });
}

TEST(Inverter, PassesRefusalsOfCalculatorsOn)
{
  expect_answers({
      {{"(not true)"}, {"Term is not free!\n"}},
      {{"(and p true)"}, {"This atom is not unconstrained!"}},
      {{"(= (bvadd #x01 #x02) #x05)"}, {"should have been handled at the normalization step"}},
      {{"(= (ite c #x01 #x02) #x05)"}, {"We cannot find a value for this atom!"}},
      {{"(= (bvurem x y) #x05)"}, {"Should not be called is never free!"}},
      {{"(= (bvadd (bvadd x y) (bvmul x y)) #x05)"}, {"expected constant, but bvmul found instead"}},
  });
}

std::string refuse_compound(const std::string& name)
{
  return "an argument that is itself an application of " + name +
         " needs a value, but only constants can be defined";
}

TEST(Inverter, RefusesValuesForCompoundArguments)
{
  expect_answers({
      {{"(= (bvadd x (bvmul y z)) #x05)"}, {refuse_compound("bvmul")}},
      {{"(= (bvadd ((_ rotate_left 3) x) #x01) #x05)"}, {refuse_compound("(_ rotate_left 3)")}},
      {{"(and p q c)"}, {refuse_compound("and")}},
      {{"(=> p q)"}, {refuse_compound("not")}},
      {{"(= (ite (bvult x y) x z) #x05)"}, {refuse_compound("bvult")}},
      {{"(= (ite c (bvadd x y) z) #x05)"}, {refuse_compound("bvadd")}},
      {{"(= (ite c (bvadd x y) (bvadd x y)) #x05)"}, {refuse_compound("bvadd")}},
  });
}

TEST(Inverter, DropsCompoundBranchesThatAreNotSelected)
{
  expect_answers({
      {{"(= (ite c x (bvadd y z)) #x05)"}, {"c=true x=#x05"}},
      {{"(= (ite true x (bvadd y z)) #x05)"}, {"x=#x05"}},
      {{"(= (ite false (bvadd y z) x) #x05)"}, {"x=#x05"}},
      {{"(= (ite false x (bvadd y z)) #x05)"}, {refuse_compound("bvadd")}},
      // The branch would give a wrong value if it counted.
      {{"(= (ite c x (bvadd x #x01)) #x05)"}, {"c=true x=#x05"}},
  });
}

TEST(Inverter, RefusesDefinitionsThatMissTheValue)
{
  expect_answers({
      {{"(= (bvadd x x) #x06)"},
       {"the values that the calculator gives make the application #x0c, but #x06 was expected"}},
      {{"(not (= p p))"},
       {"the values that the calculator gives make the application true, but false was expected"}},
      {{"(= (ite c c q) false)"},
       {"the values that the calculator gives make the application true, but false was expected"}},
  });
}

TEST(Inverter, DefinesEachConstantOnce)
{
  expect_answers({
      {{"(= (bvadd x y) #x05)", "(= (bvsub x z) #x05)", "(= (bvadd x y) #x05)"},
       {"x=#x05 y=#x00", "z=#x00", ""}},
      {{"(= (bvadd x y) #x05)", "(= (bvadd z x) #x05)"},
       {"x=#x05 y=#x00", "the constant x needs the value #x00, but assertion 1 has given it #x05"}},
      {{"(not p)", "(not q)", "(or q c)"},
       {"p=false", "q=false", "the constant q needs the value true, but assertion 2 has given it false"}},
  });
}

TEST(Inverter, ForgetsRequestsThatItRefuses)
{
  expect_answers({
      // y keeps no value of the second request, x the one of the first.
      {{"(= (bvadd x #x01) #x05)", "(= (bvadd x y) #x09)", "(= (bvadd y #x01) #x07)",
        "(= (bvadd x #x00) #x04)"},
       {"x=#x04", "the constant x needs the value #x09, but assertion 1 has given it #x04", "y=#x06", ""}},
      {{"(= (bvadd x x) #x06)", "(= (bvadd x #x01) #x02)"},
       {"the values that the calculator gives make the application #x0c, but #x06 was expected", "x=#x01"}},
      {{"(= (bvadd x (bvmul y z)) #x05)", "(= (bvadd x y) #x09)"},
       {refuse_compound("bvmul"), "x=#x09 y=#x00"}},
  });
}

}  // namespace
}  // namespace lumo::commands
