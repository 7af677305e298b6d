#include "lumo/smtlib/script_printer.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/characters.h"
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

/// The commands for assertions in the script, without declarations
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
  // A constant that occurs in a term but is not given counts, too.
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

/// The conjuncts of some terms, in the order in which they were made, each once
Terms list_distinct_conjuncts(const TermManager& mgr, Terms terms)
{
  Terms conjuncts;
  while (!terms.empty()) {
    const Term* t = terms.back();
    terms.pop_back();
    if (mgr.is_and(t->get_symbol())) {
      terms.insert(terms.end(), {t->get_arg(0), t->get_arg(1)});
    } else {
      conjuncts.push_back(t);
    }
  }
  std::sort(conjuncts.begin(), conjuncts.end(),
            [](const Term* lhs, const Term* rhs) { return lhs->get_id() < rhs->get_id(); });
  conjuncts.erase(std::unique(conjuncts.begin(), conjuncts.end()), conjuncts.end());
  return conjuncts;
}

TEST(ScriptPrinter, KeepsTheMeaningOfRandomAssertions)
{
  test::Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 300; ++round) {
    TermManager mgr;
    const test::RandomFormula formula = test::make_random_formula(mgr, random, {});
    // One assertion that is not a conjunction, so the text keeps its form
    const Term* conjunction = mgr.make_true();
    for (const Term* assertion : formula.assertions)
      conjunction = mgr.make_term(mgr.make_and_symbol(), {conjunction, assertion});
    const Terms negation{mgr.make_term(mgr.make_not_symbol(), {conjunction})};
    const std::string text = print_lines(formula.constants, negation);
    SCOPED_TRACE(text);
    const Script script = read_script(mgr, text);
    ASSERT_EQ(script.constants, formula.constants);
    ASSERT_EQ(script.get_asserted_terms(), negation);

    const Script apart = read_script(mgr, print_lines(formula.constants, formula.assertions));
    ASSERT_EQ(apart.constants, formula.constants);
    ASSERT_EQ(list_distinct_conjuncts(mgr, apart.get_asserted_terms()),
              list_distinct_conjuncts(mgr, formula.assertions));
  }
}

/// The first is the assertion in the script; the second is the assertion that a reader makes from it.
TEST(ScriptPrinter, PrintsChainsOfAssociativeOperatorsFlat)
{
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"(or (or p q) r)", "(assert (or p q r))\n"},
      {"(or p (or q r))", "(assert (or p (or q r)))\n"},
      {"(or (or (or p q) (or r s)) (not (or q r)))", "(assert (or p q (or r s) (not (or q r))))\n"},
      {"(not (and (and p q) (and r s)))", "(assert (not (and p q (and r s))))\n"},
      {"(= (bvadd (bvadd x8 y8) (bvadd z8 x8)) #x00)", "(assert (= (bvadd x8 y8 (bvadd z8 x8)) #x00))\n"},
      {"(= (bvmul (bvmul (bvadd x8 y8) y8) x8) #x00)", "(assert (= (bvmul (bvadd x8 y8) y8 x8) #x00))\n"},
      {"(= (bvand (bvand x8 y8) x8) (bvor (bvor x8 y8) x8))",
       "(assert (= (bvand x8 y8 x8) (bvor x8 y8 x8)))\n"},
      {"(= (bvxor (bvxor x8 y8) x8) (bvsub (bvsub x8 y8) x8))",
       "(assert (= (bvxor x8 y8 x8) (bvsub (bvsub x8 y8) x8)))\n"},
      {"(= (concat (concat x8 y4) x2) (concat x4 (concat x8 x2)))",
       "(assert (= (concat x8 y4 x2) (concat x4 (concat x8 x2))))\n"},
      {"(= (= p q) r)", "(assert (= (= p q) r))\n"},
      // A term that is used twice is bound, so it begins its own chain.
      {"(bvult (bvadd (bvadd x8 y8) z8) (bvadd x8 y8))",
       "(assert\n(let ((s!1 (bvadd x8 y8)))\n(bvult (bvadd s!1 z8) s!1)))\n"},
      {"(bvult (bvadd (bvadd (bvadd x8 y8) z8) x8) (bvneg (bvadd (bvadd x8 y8) z8)))",
       "(assert\n(let ((s!1 (bvadd x8 y8 z8)))\n(bvult (bvadd s!1 x8) (bvneg s!1))))\n"},
      {"(or (or p q) (or p q))", "(assert\n(let ((s!1 (or p q)))\n(or s!1 s!1)))\n"},
  };
  for (const auto& [assertion, text] : rows) {
    TermManager mgr;
    EXPECT_EQ(print_assertions(mgr, {assertion}), text);
    const Terms terms{parse_term(mgr, assertion)};
    EXPECT_EQ(read_script(mgr, print_lines({}, terms)).get_asserted_terms(), terms);
  }
}

TEST(ScriptPrinter, AssertsConjunctsOneByOne)
{
  TermManager mgr;
  EXPECT_EQ(print_assertions(mgr, {"(and (and p (not q)) (and (or p q) r))", "s"}),
            "(assert p)\n(assert (not q))\n(assert (or p q))\n(assert r)\n(assert s)\n");
  // A conjunction that also occurs elsewhere shares its parts with the assertions that they have become.
  EXPECT_EQ(print_assertions(mgr, {"(and (not p) q)", "(or (and (not p) q) r)"}),
            "(assert\n(let ((s!1 (not p)))\n(and\n  s!1\n  (or (and s!1 q) r))))\n(assert q)\n");
  // The tree of this conjunction has 2^100 leaves.
  const Term* t = parse_term(mgr, "(not p)");
  for (int i = 0; i < 100; ++i)
    t = mgr.make_term(mgr.make_and_symbol(), {t, t});
  const std::string text = print_lines({}, {t});
  EXPECT_NE(text.find("(assert\n(let ((s!1 (not p)))\n(and\n  s!1\n  s!1)))\n(check-sat)"), std::string::npos)
      << text;
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
  assertions[0] = mgr.make_term(mgr.make_not_symbol(), assertions);
  const std::string text = print_lines(constants, assertions);
  // One layer for the products; the conjunction is flat
  std::size_t num_layers = 0;
  for (std::size_t i = text.find("(let "); i != std::string::npos; i = text.find("(let ", i + 1))
    ++num_layers;
  EXPECT_EQ(num_layers, 1U);
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
