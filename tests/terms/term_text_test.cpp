// The text of terms: small cases in full, random ones compared by Z3, and the size of large ones.

#include "lumo/terms/term_text.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "lumo/terms/term_walk.h"
#include "tests/support/random.h"
#include "tests/support/refusal.h"
#include "tests/support/small_stack.h"
#include "tests/support/z3_terms.h"

namespace lumo::test {
namespace {

class TermText : public testing::Test
{
 protected:
  const Term* byte(const std::string& name) { return mgr_.make_constant(name, mgr_.make_bv_type(8)); }
  const Term* add(const Term* a, const Term* b) { return mgr_.make_term(mgr_.make_bv_add_symbol(8), {a, b}); }

  TermManager mgr_;
};

TEST_F(TermText, OfLeaves)
{
  EXPECT_EQ(make_term_text(byte("x")), "x");
  EXPECT_EQ(make_term_text(mgr_.make_bv_number(10, 8)), "#x0a");
  EXPECT_EQ(make_term_text(mgr_.make_bv_number(5, 3)), "#b101");
  EXPECT_EQ(make_term_text(mgr_.make_true()), "true");
}

TEST_F(TermText, QuotesNamesWhereSmtLibMust)
{
  for (const char* name : {"a b", "", "let", "1st", "x(y)", "\xc3\xa4"})
    EXPECT_EQ(make_term_text(byte(name)), "|" + std::string(name) + "|");
  for (const char* name : {"x", "x!0", "a.b", "~!@$%^&*_-+=<>.?/", "lets"})
    EXPECT_EQ(make_term_text(byte(name)), name);
}

TEST_F(TermText, OfApplicationsThatAreNotShared)
{
  const Term* t = add(byte("x"), mgr_.make_bv_number(1, 8));
  const Term* low = mgr_.make_term(mgr_.make_bv_extract_symbol(3, 0, 8), {t});
  EXPECT_EQ(make_term_text(low), "((_ extract 3 0) (bvadd x #x01))");
}

TEST_F(TermText, BindsSharedApplicationsInLayers)
{
  const Term* a = add(byte("x"), byte("y"));
  const Term* b = add(byte("y"), byte("x"));
  const Term* c = add(a, b);
  EXPECT_EQ(make_term_text(add(add(c, a), add(c, b))),
            "(let ((s!1 (bvadd x y)) (s!2 (bvadd y x))) (let ((s!3 (bvadd s!1 s!2))) "
            "(bvadd (bvadd s!3 s!1) (bvadd s!3 s!2))))");
  EXPECT_EQ(make_term_text(add(a, a)), "(let ((s!1 (bvadd x y))) (bvadd s!1 s!1))");
}

TEST_F(TermText, BoundNamesAreNoConstants)
{
  const Term* a = add(byte("s!!1"), byte("s!"));
  EXPECT_EQ(make_term_text(add(a, a)), "(let ((s!!!1 (bvadd s!!1 s!))) (bvadd s!!!1 s!!!1))");
}

TEST_F(TermText, GoesToAStreamToo)
{
  std::ostringstream out;
  print_term(out, add(byte("x"), byte("y")));
  EXPECT_EQ(out.str(), "(bvadd x y)");
}

TEST_F(TermText, RefusesNullAndNamesWithoutSpelling)
{
  EXPECT_EQ(get_refusal([] { (void)make_term_text(nullptr); }),
            "a null pointer was to be printed, but a term was expected");
  const Term* t = add(byte("x"), byte("a|b"));
  std::ostringstream out;
  EXPECT_EQ(get_refusal([&] { print_term(out, t); }),
            "a constant's name contains a bar, a backslash or a control character, but SMT-LIB 2 has no "
            "symbol with "
            "one: a|b");
  EXPECT_EQ(out.str(), "");
}

TEST_F(TermText, IsLinearForGraphsOfExponentialTrees)
{
  const Term* t = byte("x");
  for (int i = 0; i < 1000; ++i)
    t = add(t, t);
  EXPECT_LT(make_term_text(t).size(), 1000U * 40);
}

TEST_F(TermText, OfAMillionLevelsNeedsNoRecursionAndNestsLittle)
{
  run_on_small_stack([this] {
    const Term* t = byte("x");
    for (int i = 0; i < 1000000; ++i)
      t = add(t, byte("y"));
    const std::string text = make_term_text(t);
    EXPECT_LT(text.size(), 20U * 1000000);
    std::size_t depth = 0;
    std::size_t deepest = 0;
    for (const char c : text) {
      if (c == '(') deepest = std::max(deepest, ++depth);
      if (c == ')') --depth;
    }
    EXPECT_EQ(depth, 0U);
    EXPECT_LT(deepest, 5000U);
  });
}

TEST_F(TermText, SaysToZ3WhatTheTermIs)
{
  Random random;
  SCOPED_TRACE(random);
  for (int round = 0; round < 200; ++round) {
    TermManager mgr;
    const DataType* nibble = mgr.make_bv_type(4);
    std::vector<const Term*> bits{mgr.make_constant("s!1", mgr.make_bool_type()), mgr.make_true()};
    std::vector<const Term*> words{mgr.make_constant("a b", nibble), mgr.make_constant("x", nibble),
                                   mgr.make_bv_number(9, 4)};
    const auto bit = [&] { return bits[random.index(bits.size())]; };
    const auto word = [&] { return words[random.index(words.size())]; };
    for (int i = 0; i < 30; ++i) {
      words.push_back(mgr.make_term(mgr.make_bv_sub_symbol(4), {word(), word()}));
      words.push_back(mgr.make_term(mgr.make_ite_symbol(nibble), {bit(), word(), word()}));
      const Term* wide = mgr.make_term(mgr.make_bv_sign_extend_symbol(3, 4), {word()});
      words.push_back(mgr.make_term(mgr.make_bv_extract_symbol(5, 2, 7), {wide}));
      bits.push_back(mgr.make_term(mgr.make_bv_slt_symbol(4), {word(), word()}));
      bits.push_back(mgr.make_term(mgr.make_iff_symbol(), {bit(), bit()}));
      bits.push_back(mgr.make_term(mgr.make_eq_symbol(nibble), {word(), word()}));
    }
    const Term* t = bits.back();
    z3::context z3;
    const std::string declarations =
        "(declare-fun |s!1| () Bool)(declare-fun |a b| () (_ BitVec 4))(declare-fun x () (_ BitVec 4))";
    const z3::expr_vector read =
        z3.parse_string((declarations + "(assert " + make_term_text(t) + ")").c_str());
    ASSERT_EQ(read.size(), 1U);
    z3::solver solver(z3);
    Z3Terms terms(mgr, z3);
    solver.add(read[0] != terms.make(t));
    ASSERT_EQ(solver.check(), z3::unsat) << make_term_text(t);
  }
}

}  // namespace
}  // namespace lumo::test
