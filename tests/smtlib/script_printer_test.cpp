#include "lumo/smtlib/script_printer.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/characters.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "tests/support/notation.h"
#include "tests/support/numbered.h"
#include "tests/support/random_formula.h"
#include "tests/support/refusal.h"

namespace lumo::smtlib {
namespace {

using test::parse_term;
using Terms = std::vector<const Term*>;

std::string print_lines(const Terms& constants, const Terms& assertions, bool wants_model = false)
{
  std::ostringstream out;
  print_script(out, constants, assertions, wants_model);
  return out.str();
}

/// The commands for assertions that stand in the script, without declarations
std::string print_assertions(TermManager& mgr, const std::vector<std::string>& assertions)
{
  Terms terms;
  for (const std::string& assertion : assertions)
    terms.push_back(parse_term(mgr, assertion));
  const std::string text = print_lines({}, terms);
  const std::size_t first = std::min(text.find("(assert"), text.find("(check-sat)"));
  return text.substr(first, text.find("(check-sat)") - first);
}

TEST(ScriptPrinter, PrintsACompleteScript)
{
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  const Term* quoted = mgr.make_constant("a \"b\"", mgr.make_bool_type());
  EXPECT_EQ(print_lines({}, {}), "(set-logic QF_BV)\n(check-sat)\n");
  EXPECT_EQ(print_lines({x, quoted}, {parse_term(mgr, "(bvult y8 #x0f)"), quoted}, true),
            "(set-option :produce-models true)\n"
            "(set-logic QF_BV)\n"
            "(declare-fun x8 () (_ BitVec 8))\n"
            "(declare-fun |a \"b\"| () Bool)\n"
            "(declare-fun y8 () (_ BitVec 8))\n"
            "(assert (bvult y8 #x0f))\n"
            "(assert |a \"b\"|)\n"
            "(check-sat)\n"
            "(get-model)\n");
}

TEST(ScriptPrinter, BindsWhatAnAssertionSharesWithItself)
{
  TermManager mgr;
  EXPECT_EQ(print_assertions(mgr, {"(= (bvmul (bvadd x8 y8) (bvnot x8)) (bvudiv (bvadd x8 y8) (bvnot x8)))"}),
            "(assert\n"
            "(let ((s!1 (bvadd x8 y8))\n"
            "      (s!2 (bvnot x8)))\n"
            "(= (bvmul s!1 s!2) (bvudiv s!1 s!2))))\n");
  EXPECT_EQ(print_assertions(
                mgr, {"(or (bvult (bvneg (bvnot x8)) (bvnot x8)) (bvult (bvneg (bvnot x8)) (bvnot x8)))"}),
            "(assert\n"
            "(let ((s!1 (bvnot x8)))\n"
            "(let ((s!2 (bvult (bvneg s!1) s!1)))\n"
            "(or s!2 s!2))))\n");
}

TEST(ScriptPrinter, PutsAssertionsTogetherThatShareAnApplication)
{
  TermManager mgr;
  EXPECT_EQ(print_assertions(mgr, {"p", "(= (bvnot x8) y8)", "(bvult z8 x8)", "q", "(bvult (bvneg z8) y8)",
                                   "(bvult (bvnot x8) #x05)", "(not (bvult (bvneg z8) y8))", "p"}),
            "(assert p)\n"
            "(assert\n"
            "(let ((s!1 (bvnot x8)))\n"
            "(and\n"
            "  (= s!1 y8)\n"
            "  (bvult s!1 #x05))))\n"
            "(assert (bvult z8 x8))\n"
            "(assert q)\n"
            "(assert\n"
            "(let ((s!2 (bvult (bvneg z8) y8)))\n"
            "(and\n"
            "  s!2\n"
            "  (not s!2))))\n"
            "(assert p)\n");
}

TEST(ScriptPrinter, TakesNamesThatNoConstantHas)
{
  TermManager mgr;
  const Term* shared = parse_term(mgr, "(bvult (bvnot x8) (bvnot x8))");
  const Terms constants = {parse_term(mgr, "x8"), mgr.make_constant("s!1", mgr.make_bool_type()),
                           mgr.make_constant("s!!!", mgr.make_bool_type()),
                           mgr.make_constant("s", mgr.make_bool_type())};
  EXPECT_NE(print_lines(constants, {shared}).find("(let ((s!!!!1 (bvnot x8)))"), std::string::npos);
  // A constant that occurs without being given counts, too.
  const Term* capturing = mgr.make_term(mgr.make_and_symbol(), {shared, constants[1]});
  EXPECT_NE(print_lines({}, {capturing}).find("(let ((s!!1 (bvnot x8)))"), std::string::npos);
}

TEST(ScriptPrinter, RefusesNamesWithoutASpelling)
{
  TermManager mgr;
  std::ostringstream out;
  const Terms assertions = {mgr.make_constant("a\\b", mgr.make_bool_type())};
  EXPECT_EQ(test::get_refusal([&] { print_script(out, {}, assertions, true); }),
            "the name a\\b contains a bar, a backslash or a control character, but SMT-LIB 2 has no symbol "
            "with one");
  EXPECT_EQ(out.str(), "");
}

TEST(ScriptPrinter, KeepsNamesOfEveryCharacterThatHasASpelling)
{
  TermManager mgr;
  const DataType* sort = mgr.make_bool_type();
  std::string all;
  Terms constants;
  Terms assertions;
  for (int code = 0; code < 256; ++code) {
    const char c = static_cast<char>(code);
    if (!is_quotable_character(c)) continue;
    all += c;
    constants.push_back(mgr.make_constant(std::string("q") + c, sort));
  }
  for (char c = ' '; c <= '~'; ++c)
    EXPECT_EQ(all.find(c) == std::string::npos, c == '|' || c == '\\') << c;
  constants.push_back(mgr.make_constant(all, sort));
  for (const Term* constant : constants)
    assertions.push_back(mgr.make_term(mgr.make_not_symbol(), {constant}));

  const std::string text = print_lines(constants, assertions);
  const Script same = read_script(mgr, text);
  EXPECT_EQ(same.constants, constants);
  EXPECT_EQ(same.get_asserted_terms(), assertions);
  TermManager other;
  const Script again = read_script(other, text);
  EXPECT_EQ(print_lines(again.constants, again.get_asserted_terms()), text);
}

/// Assertions that the text has put together, apart again
void split(TermManager& mgr, const Term* t, std::size_t num_parts, Terms& parts)
{
  if (num_parts > 1) {
    ASSERT_TRUE(mgr.is_and(t->get_symbol()));
    split(mgr, t->get_arg(0), num_parts - 1, parts);
    t = t->get_arg(1);
  }
  parts.push_back(t);
}

TEST(ScriptPrinter, KeepsTheMeaningOfRandomAssertions)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 300; ++round) {
    TermManager mgr;
    const test::RandomFormula formula = test::make_random_formula(mgr, random, {});
    // One conjunction, so that the text keeps the order
    Terms conjunction{mgr.make_true()};
    for (const Term* assertion : formula.assertions)
      conjunction[0] = mgr.make_term(mgr.make_and_symbol(), {conjunction[0], assertion});
    const std::string text = print_lines(formula.constants, conjunction);
    SCOPED_TRACE(text);
    const Script script = read_script(mgr, text);
    ASSERT_EQ(script.constants, formula.constants);
    ASSERT_EQ(script.get_asserted_terms(), conjunction);

    const Script apart = read_script(mgr, print_lines(formula.constants, formula.assertions));
    Terms expected = formula.assertions;
    Terms found;
    std::size_t num_left = expected.size() - apart.assertions.size() + 1;
    for (const Term* assertion : apart.get_asserted_terms()) {
      if (std::find(expected.begin(), expected.end(), assertion) != expected.end()) {
        found.push_back(assertion);
        continue;
      }
      std::size_t num_parts = 1;
      for (const Term* t = assertion;
           std::find(expected.begin(), expected.end(), t) == expected.end() && num_parts < num_left;
           t = t->get_arg(0))
        ++num_parts;
      ASSERT_NO_FATAL_FAILURE(split(mgr, assertion, num_parts, found));
      num_left -= num_parts - 1;
    }
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(found, expected);
  }
}

TEST(ScriptPrinter, PrintsAMillionNestedApplications)
{
  constexpr std::size_t kDepth = 1'000'000;
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  const Term* t = x;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_term(mgr.make_bv_add_symbol(8), {t, x});
  const Terms assertions{mgr.make_term(mgr.make_bv_ult_symbol(8), {x, t})};
  const std::string text = print_lines({x}, assertions);
  EXPECT_LT(text.size(), 12 * kDepth);
  EXPECT_EQ(read_script(mgr, text).get_asserted_terms(), assertions);
}

TEST(ScriptPrinter, BindsWhatLiesDeep)
{
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  const Term* t = x;
  for (std::size_t i = 0; i < 1000; ++i)
    t = mgr.make_term(mgr.make_bv_not_symbol(8), {t});
  const Symbol* less = mgr.make_bv_ult_symbol(8);
  EXPECT_NE(print_lines({}, {mgr.make_term(less, {x, t})}).find("(assert\n(let ((s!1 (bvnot"),
            std::string::npos);
  EXPECT_EQ(print_lines({}, {mgr.make_term(less, {x, t->get_arg(0)})}).find("let"), std::string::npos);
}

TEST(ScriptPrinter, PrintsAGraphWhoseTreeIsExponential)
{
  constexpr std::size_t kDepth = 100'000;
  TermManager mgr;
  const Term* x = parse_term(mgr, "x8");
  Terms assertions;
  const Term* t = x;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_term(mgr.make_bv_mul_symbol(8), {t, t});
  assertions.push_back(mgr.make_term(mgr.make_bv_ult_symbol(8), {x, t}));
  const std::string text = print_lines({x}, assertions);
  EXPECT_LT(text.size(), 45 * kDepth);
  EXPECT_EQ(read_script(mgr, text).get_asserted_terms(), assertions);
}

TEST(ScriptPrinter, BindsSideBySideWhatDoesNotDependOnEachOther)
{
  constexpr std::size_t kWidth = 50'000;
  TermManager mgr;
  const DataType* sort = mgr.make_bv_type(8);
  Terms constants{mgr.make_constant("x", sort)};
  Terms assertions{mgr.make_true()};
  for (std::size_t i = 0; i < kWidth; ++i) {
    constants.push_back(mgr.make_constant(test::numbered("y", i), sort));
    const Term* product = mgr.make_term(mgr.make_bv_mul_symbol(8), {constants[0], constants.back()});
    const Term* less = mgr.make_term(mgr.make_bv_ult_symbol(8), {product, product});
    assertions[0] = mgr.make_term(mgr.make_and_symbol(), {assertions[0], less});
  }
  const std::string text = print_lines(constants, assertions);
  // One layer for the products, and few that cut the conjunction
  std::size_t num_layers = 0;
  for (std::size_t i = text.find("(let "); i != std::string::npos; i = text.find("(let ", i + 1))
    ++num_layers;
  EXPECT_LT(num_layers, kWidth / 500);
  EXPECT_EQ(read_script(mgr, text).get_asserted_terms(), assertions);
}

TEST(ScriptPrinter, PrintsManyAssertionsThatAreLinked)
{
  constexpr std::size_t kLinks = 100'000;
  TermManager mgr;
  const DataType* sort = mgr.make_bv_type(8);
  Terms constants{mgr.make_constant("x", sort)};
  Terms assertions;
  const Term* last = constants[0];
  for (std::size_t i = 0; i < kLinks; ++i) {
    constants.push_back(mgr.make_constant(test::numbered("y", i), sort));
    const Term* next = mgr.make_term(mgr.make_bv_not_symbol(8), {constants.back()});
    assertions.push_back(mgr.make_term(mgr.make_bv_ult_symbol(8), {last, next}));
    last = next;
  }
  const Script script = read_script(mgr, print_lines(constants, assertions));
  ASSERT_EQ(script.assertions.size(), 1U);
  const Term* t = script.assertions[0].term;
  for (std::size_t i = kLinks; i-- > 1; t = t->get_arg(0))
    ASSERT_EQ(t->get_arg(1), assertions[i]);
  EXPECT_EQ(t, assertions[0]);
}

}  // namespace
}  // namespace lumo::smtlib
