#include "lumo/smtlib/model_reader.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/model_printer.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/characters.h"
#include "tests/support/small_stack.h"

namespace lumo::test {
namespace {

/// The constants x of 8 bits, y of 3 bits, p, and one whose name needs bars.
class ModelText : public testing::Test
{
 protected:
  std::vector<ModelValue> read(const std::string& text) { return smtlib::read_model(mgr_, constants_, text); }
  /// The values of a model's text.
  std::string tell(const std::string& text)
  {
    std::string told;
    for (const ModelValue& definition : read(text)) {
      told += definition.constant->get_symbol()->get_name() + "=" +
              definition.value->get_symbol()->get_name() + " ";
    }
    return told;
  }
  /// The refusal of a text: `line:column: sentence`.
  std::string refuse(const std::string& text)
  {
    try {
      read(text);
    } catch (const smtlib::InputError& e) {
      return smtlib::make_located_message("model", e).substr(6);
    }
    return "(not refused)";
  }

  TermManager mgr_;
  std::vector<const Term*> constants_ = {
      mgr_.make_constant("x", mgr_.make_bv_type(8)),
      mgr_.make_constant("y", mgr_.make_bv_type(3)),
      mgr_.make_constant("p", mgr_.make_bool_type()),
      mgr_.make_constant("a b", mgr_.make_bv_type(8)),
  };
};

TEST_F(ModelText, ReadsTheFormOfTheStandard)
{
  EXPECT_EQ(tell("(\n  (define-fun p () Bool\n    true)\n  (define-fun x () (_ BitVec 8)\n    #x0a)\n)\n"),
            "p=true x=#x0a ");
}

TEST_F(ModelText, ReadsWhatSolversWriteAroundTheDefinitions)
{
  const std::string definitions = "(define-fun y () (_ BitVec 3) #b101)(define-fun p () Bool false)";
  for (const std::string& text : {
           "(" + definitions + ")",
           "(model " + definitions + ")",
           "sat\n(" + definitions + ")\n",
           "; comment\n\n\n  sat ; comment\n(model\n" + definitions + "\n)\n; comment\n",
           "success\nsuccess\nsat\n(" + definitions + ")\nsuccess\n",
           definitions,
           "sat\r\n" + definitions + "\r\n",
       })
  {
    EXPECT_EQ(tell(text), "y=#b101 p=false ") << text;
  }
}

TEST_F(ModelText, ReadsModelsWithoutValues)
{
  for (const std::string text : {"()", "(model)", "sat\n(\n)\n"})
    EXPECT_EQ(tell(text), "") << text;
}

TEST_F(ModelText, ReadsEachKindOfLiteral)
{
  for (const std::string literal : {"#b10101010", "#xaa", "#xAA", "(_ bv170 8)", "( _ bv0170 8 )"})
    EXPECT_EQ(tell("((define-fun x () (_ BitVec 8) " + literal + "))"), "x=#xaa ") << literal;
}

TEST_F(ModelText, TakesQuotedAndPlainSpellingsOfANameAlike)
{
  EXPECT_EQ(tell("((define-fun |x| () (_ BitVec 8) #x01) (define-fun |a b| () (_ BitVec 8) #x02))"),
            "x=#x01 a b=#x02 ");
}

TEST_F(ModelText, ReadsNamesThatSolversPrintWithoutTheirBars)
{
  constants_ = {mgr_.make_constant("", mgr_.make_bool_type()),
                mgr_.make_constant("let", mgr_.make_bool_type())};
  EXPECT_EQ(tell("((define-fun  () Bool true) (define-fun let () Bool false))"), "=true let=false ");
}

TEST_F(ModelText, PassesOverWhatIsNoneOfTheConstants)
{
  EXPECT_EQ(tell("((define-fun f ((a (_ BitVec 8)) (b U)) Int (ite (= a #x00) (- 5) (let ((z 1.5)) z)))\n"
                 "(declare-fun U!val!0 () U)\n(forall ((u U)) (or (= u U!val!0)))\n"
                 "(declare-datatypes ((L 0)) (((nil))))\n"
                 "(define-fun |) ; \"| () String \")\")\n"
                 "(define-fun x () (_ BitVec 8) #x01))"),
            "x=#x01 ");
}

TEST_F(ModelText, RefusesOtherAnswers)
{
  EXPECT_EQ(refuse("\nunsat\n"), "2:1: the answer unsat was found, but a model was expected");
  EXPECT_EQ(refuse("unknown\n(error \"no model\")"),
            "1:1: the answer unknown was found, but a model was expected");
  EXPECT_EQ(refuse("sat\n (error \"line 3: no \"\"model\"\"\")"),
            "2:2: the error \"line 3: no \"\"model\"\"\" was found, but a model was expected");
  EXPECT_EQ(refuse("(error)"), "1:1: an error was found, but a model was expected");
}

TEST_F(ModelText, RefusesValuesOfOtherSorts)
{
  struct Row
  {
    std::string definition;
    std::string message;
  };
  const Row rows[] = {
      {"x () (_ BitVec 8) #x001",
       "the literal #x001 was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) #b1",
       "the literal #b1 was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) 7", "the numeral 7 was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) true",
       "the symbol true was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) (_ bv7 9)", "the numeral 9 was found, but the width 8 was expected"},
      {"x () (_ BitVec 8) (_ bv 8)",
       "the symbol bv was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) (_ bv-7 8)",
       "the symbol bv-7 was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) (bvneg #x01)",
       "the symbol bvneg was found, but a literal of the sort (_ BitVec 8) was expected"},
      {"x () (_ BitVec 8) (_ bv7 8 9)", "the numeral 9 was found, but the end of the literal was expected"},
      {"x () (_ BitVec 9) #x01",
       "the sort (_ BitVec 9) was found, but (_ BitVec 8), the sort of the constant x, was expected"},
      {"p () (_ BitVec 8) #x01",
       "the sort (_ BitVec 8) was found, but Bool, the sort of the constant p, was expected"},
      {"x () Int 7", "the symbol Int was found, but the sort Bool or (_ BitVec w) was expected"},
      {"p () Bool #b1", "the literal #b1 was found, but true or false was expected"},
      {"p () Bool |true|", "the symbol |true| was found, but true or false was expected"},
      {"p () Bool (not q)", "an opening parenthesis was found, but true or false was expected"},
      {"p ((q Bool)) Bool q",
       "an opening parenthesis was found, but an empty list of parameters was expected"},
      {"p Bool true", "the symbol Bool was found, but a list of parameters was expected"},
      {"p () Bool true false", "the symbol false was found, but the end of the definition was expected"},
  };
  for (const Row& row : rows) {
    const std::string refusal = refuse("((define-fun " + row.definition + "))");
    EXPECT_EQ(refusal.substr(refusal.find(' ') + 1), row.message) << row.definition;
  }
}

TEST_F(ModelText, NamesThePlaceOfAWrongSort)
{
  EXPECT_EQ(refuse("(\n  (define-fun x ()\n    (_ BitVec 9) #b1))").substr(0, 5), "3:5: ");
}

TEST_F(ModelText, RefusesASecondDefinition)
{
  EXPECT_EQ(refuse("((define-fun p () Bool true)\n(define-fun |p| () Bool true))"),
            "2:13: the symbol |p| is defined here, but it has a value already");
}

TEST_F(ModelText, RefusesOtherTexts)
{
  struct Row
  {
    std::string text;
    std::string refusal;
  };
  const Row rows[] = {
      {"", "1:1: the end of the text was found, but a model was expected"},
      {"sat", "1:4: the end of the text was found, but a model was expected"},
      {"sat sat ()", "1:5: the symbol sat was found, but a model was expected"},
      {"Segmentation fault", "1:1: the symbol Segmentation was found, but a model was expected"},
      {"(", "1:2: the end of the text was found, but a definition or the end of the model was expected"},
      {"(x #x00)", "1:2: the symbol x was found, but define-fun was expected"},
      {"((x #x00))", "1:3: the symbol x was found, but define-fun was expected"},
      {"(|model|)", "1:2: the symbol |model| was found, but define-fun was expected"},
      {"(model x)", "1:8: the symbol x was found, but a definition or the end of the model was expected"},
      {"((define-fun p () Bool true)",
       "1:29: the end of the text was found, but a definition or the end of the model was expected"},
      {"() ()", "1:4: an opening parenthesis was found, but the end of the text was expected"},
      {"(define-fun p () Bool true) x", "1:29: the symbol x was found, but the end of the text was expected"},
      {"((define-fun f () Bool (and true)",
       "1:2: a parenthesis opens here, but the text ends before it is closed"},
      {"((define-fun 7 () Bool true))", "1:14: the numeral 7 was found, but a name was expected"},
      {"((define-fun p () Bool \x01))",
       "1:24: the byte 0x01 was found, but a symbol, a literal or a parenthesis was expected"},
  };
  for (const Row& row : rows)
    EXPECT_EQ(refuse(row.text), row.refusal) << row.text;
}

TEST_F(ModelText, ReadsWideValues)
{
  constexpr unsigned long kWidth = 1'000'000;
  constants_ = {mgr_.make_constant("w", mgr_.make_bv_type(kWidth))};
  const Term* const expected = mgr_.make_bv_number(-1, kWidth);
  const std::string start = "((define-fun w () (_ BitVec 1000000) ";
  EXPECT_EQ(read(start + "#b" + std::string(kWidth, '1') + "))").at(0).value, expected);
  EXPECT_EQ(read(start + "#x" + std::string(kWidth / 4, 'f') + "))").at(0).value, expected);
  QNumber most;
  mgr_.is_number(expected->get_symbol(), &most);
  EXPECT_EQ(read(start + "(_ bv" + most.to_string() + " 1000000)))").at(0).value, expected);
}

TEST_F(ModelText, PassesOverDeepBodies)
{
  constexpr std::size_t kDepth = 1'000'000;
  std::string text = "((define-fun f () Bool ";
  for (std::size_t i = 0; i < kDepth; ++i)
    text += "(not ";
  text += "p" + std::string(kDepth, ')') + ")(define-fun p () Bool true))";
  run_on_small_stack([&] { EXPECT_EQ(tell(text), "p=true "); });
}

TEST_F(ModelText, PrintsTheFormOfTheStandard)
{
  std::ostringstream out;
  smtlib::print_model(out, std::vector<ModelValue>{{constants_[3], mgr_.make_bv_number(10, 8)},
                                                   {constants_[2], mgr_.make_true()},
                                                   {constants_[1], mgr_.make_bv_number(5, 3)}});
  EXPECT_EQ(out.str(),
            "(\n  (define-fun |a b| () (_ BitVec 8) #x0a)\n  (define-fun p () Bool true)\n"
            "  (define-fun y () (_ BitVec 3) #b101)\n)\n");
  EXPECT_EQ(tell(out.str()), "a b=#x0a p=true y=#b101 ");
}

TEST_F(ModelText, PrintsAnEmptyModel)
{
  std::ostringstream out;
  smtlib::print_model(out, {});
  EXPECT_EQ(out.str(), "(\n)\n");
}

TEST_F(ModelText, PrintsNothingIfANameHasNoSpelling)
{
  std::ostringstream out;
  const Term* const odd = mgr_.make_constant("a|b", mgr_.make_bool_type());
  const std::vector<ModelValue> model = {{constants_[2], mgr_.make_true()}, {odd, mgr_.make_true()}};
  EXPECT_THROW(smtlib::print_model(out, model), Exception);
  EXPECT_EQ(out.str(), "");
}

TEST_F(ModelText, KeepsNamesOfAllCharacters)
{
  constants_.clear();
  std::string every_character;
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    if (!is_quotable_character(c)) continue;
    every_character += c;
    constants_.push_back(mgr_.make_constant(std::string("1") + c, mgr_.make_bv_type(8)));
  }
  constants_.push_back(mgr_.make_constant(every_character, mgr_.make_bv_type(8)));
  constants_.push_back(mgr_.make_constant("", mgr_.make_bv_type(8)));
  std::vector<ModelValue> model;
  for (const Term* constant : constants_)
    model.push_back({constant, mgr_.make_bv_number(static_cast<int>(model.size()), 8)});

  std::ostringstream out;
  smtlib::print_model(out, model);
  const std::vector<ModelValue> found = read(out.str());
  ASSERT_EQ(found.size(), model.size());
  for (std::size_t i = 0; i < model.size(); ++i) {
    EXPECT_EQ(found[i].constant, model[i].constant);
    EXPECT_EQ(found[i].value, model[i].value);
  }
}

}  // namespace
}  // namespace lumo::test
