// Definitions with parameters.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"
#include "tests/support/numbered.h"
#include "tests/support/term_text.h"

namespace lumo::smtlib {
namespace {

using test::numbered;

constexpr std::string_view kDeclarations =
    "(define-sort B () (_ BitVec 8))(declare-const x B)(declare-const y B)(declare-const p Bool)\n";

struct Expansion
{
  std::string_view text;
  std::string_view term;  ///< the last assertion
};

TEST(Functions, AreReplacedByTheirBodies)
{
  const std::vector<Expansion> rows = {
      {"(define-fun f ((a B) (b B)) Bool (bvult b a))(assert (f x y))", "(bvult y x)"},
      {"(define-fun f ((a B) (b B)) Bool (bvult b a))(assert (f x x))", "(bvult x x)"},
      {"(define-fun id ((a Bool)) Bool a)(assert (id (id p)))", "p"},
      {"(define-fun one ((a Bool)) Bool true)(assert (one p))", "true"},
      {"(define-fun f ((a B)) B (bvadd a x))(assert (= y (f (f y))))", "(= y (bvadd (bvadd y x) x))"},
      {"(define-fun f ((x B)) B (bvnot x))(assert (= x (f y)))", "(= x (bvnot y))"},
      {"(define-fun f ((x B)) B (let ((y x) (x y)) (bvsub x y)))(assert (= x (f #x01)))",
       "(= x (bvsub y #x01))"},
      {"(define-fun f ((a B) (b B)) B (bvsub a b))(define-fun g ((a B) (b B)) B (f b a))(assert (= x (g x "
       "y)))",
       "(= x (bvsub y x))"},
      {"(define-fun f ((a B)) B (bvmul a a))(define-fun g ((b Bool) (a B)) B (ite b (f (f a)) (f y)))"
       "(assert (= x (g p x)))",
       "(= x (ite p (bvmul (bvmul x x) (bvmul x x)) (bvmul y y)))"},
      {"(define-fun f ((a B)) B (bvneg a))(define-fun c () B (f x))(define-fun g ((a B)) B (bvand a c))"
       "(assert (= x (g c)))",
       "(= x (bvand (bvneg x) (bvneg x)))"},
      {"(define-fun |a b| ((|c d| Bool)) Bool (not |c d|))(assert (|a b| p))", "(not p)"},
      {"(define-fun f ((a Bool)) Bool (! (not a) :pattern (a)))(assert (f p))", "(not p)"},
      {"(define-fun f ((a B)) B ((_ rotate_left 1) a))(assert (= ((as f B) x) y))",
       "(= ((_ rotate_left 1) x) y)"},
      {"(define-fun f ((a Bool)) Bool (xor a a p))(assert (f true))", "(not (= (not (= true true)) p))"},
  };
  for (const Expansion& row : rows) {
    TermManager mgr;
    const Script script = read_script(mgr, std::string(kDeclarations) + std::string(row.text));
    EXPECT_EQ(test::make_term_text(script.assertions.back().term), row.term) << row.text;
  }
}

TEST(Functions, AreExpandedOnceForEachListOfArguments)
{
  TermManager mgr;
  const Script script = read_script(
      mgr, std::string(kDeclarations) +
               "(define-fun f ((a B)) B (bvmul a a))(assert (= (f x) (f x)))(assert (= (f x) (f y)))");
  const Term* square = script.assertions[0].term->get_arg(0);
  EXPECT_EQ(script.assertions[0].term->get_arg(1), square);
  EXPECT_EQ(script.assertions[1].term->get_arg(0), square);
  EXPECT_NE(script.assertions[1].term->get_arg(1), square);
}

/// A chain of definitions, each of which applies the previous one to its parameter in some form.
std::string make_chain(std::size_t length, std::string_view argument)
{
  std::string text = std::string(kDeclarations) + "(define-fun f0 ((a B)) B (bvmul a a))\n";
  for (std::size_t i = 1; i <= length; ++i) {
    text += numbered("(define-fun f", i) + numbered(" ((a B)) B (bvxor a (f", i - 1) + " " +
            std::string(argument) + ")))\n";
  }
  return text + numbered("(assert (= y (f", length) + " x)))";
}

TEST(Functions, MayFormLongChains)
{
  constexpr std::size_t kLength = 100'000;
  for (const std::string_view argument : {"a", "(bvadd a #x01)"}) {
    TermManager mgr;
    const Script script = read_script(mgr, make_chain(kLength, argument));
    std::size_t depth = 0;
    for (const Term* t = script.assertions[0].term->get_arg(1); t->get_num_args() == 2; t = t->get_arg(1))
      ++depth;
    EXPECT_GE(depth, kLength) << argument;
    // The terms of the definitions and of their expansions are a small multiple of the chain.
    EXPECT_LT(mgr.get_num_terms(), 8 * kLength) << argument;
  }
}

TEST(Functions, CostNothingUntilTheyAreApplied)
{
  // Expanded, the last one would be 2^60 applications.
  std::string text = std::string(kDeclarations) +
                     "(define-fun f0 ((a (_ BitVec 64))) (_ BitVec 64) (bvadd a #x0000000000000001))";
  for (std::size_t i = 1; i <= 60; ++i) {
    const std::string before = numbered("(f", i - 1) + " ";
    text += numbered("(define-fun f", i) + " ((a (_ BitVec 64))) (_ BitVec 64) " + before + before + "a)))\n";
  }
  TermManager mgr;
  EXPECT_TRUE(read_script(mgr, text).assertions.empty());
  EXPECT_LT(mgr.get_num_terms(), 1000U);
}

TEST(Functions, ThatShareClosedTermsAreReadInLinearTime)
{
  // Each definition mentions a large term without parameters, which is walked once.
  std::string text = std::string(kDeclarations) + "(define-fun c0 () B x)\n";
  constexpr std::size_t kSize = 30'000;
  for (std::size_t i = 1; i <= kSize; ++i)
    text += numbered("(define-fun c", i) + numbered(" () B (bvmul c", i - 1) + " y))\n";
  for (std::size_t i = 0; i < kSize; ++i)
    text += numbered("(define-fun f", i) + numbered(" ((a B)) B (bvadd a c", kSize) + "))\n";
  text += numbered("(assert (= x (f", kSize - 1) + " y)))";
  TermManager mgr;
  const Script script = read_script(mgr, text);
  EXPECT_EQ(script.assertions.size(), 1U);
}

}  // namespace
}  // namespace lumo::smtlib
