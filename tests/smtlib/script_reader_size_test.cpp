// Texts of a size at which recursion would exhaust the stack, and copies would exhaust the memory.

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "lumo/smtlib/script_reader.h"
#include "tests/support/numbered.h"

namespace lumo::smtlib {
namespace {

using test::numbered;

constexpr std::size_t kMillion = 1'000'000;

std::string repeat(std::string_view piece, std::size_t times)
{
  std::string text;
  text.reserve(piece.size() * times);
  for (std::size_t i = 0; i < times; ++i)
    text += piece;
  return text;
}

TEST(LargeTexts, NestAMillionApplications)
{
  TermManager mgr;
  const Script script =
      read_script(mgr, "(declare-const x (_ BitVec 8))(declare-const y (_ BitVec 8))(assert (= x " +
                           repeat("(bvadd ", kMillion) + "x" + repeat(" y)", kMillion) + "))");
  const Term* t = script.assertions.at(0).term->get_arg(1);
  std::size_t depth = 0;
  for (; t->get_num_args() != 0; t = t->get_arg(0))
    ++depth;
  EXPECT_EQ(depth, kMillion);
}

TEST(LargeTexts, HaveAHundredThousandArguments)
{
  TermManager mgr;
  const Script script = read_script(mgr, "(declare-const x (_ BitVec 8))(declare-const p Bool)(assert (and" +
                                             repeat(" p (not p)", 50'000) + "))(assert (= x (bvmul" +
                                             repeat(" x", 100'000) + ")))");
  const Term* t = script.assertions.at(0).term;
  std::size_t depth = 0;
  for (; mgr.is_and(t->get_symbol()); t = t->get_arg(0))
    ++depth;
  EXPECT_EQ(depth, 99'999U);
  depth = 0;
  for (t = script.assertions.at(1).term->get_arg(1); t->get_num_args() != 0; t = t->get_arg(0))
    ++depth;
  EXPECT_EQ(depth, 99'999U);
}

TEST(LargeTexts, HaveLiteralsOfAMillionBits)
{
  TermManager mgr;
  const unsigned long width = kMillion;
  const std::string hexadecimal = "#x" + repeat("f", width / 4);
  const std::string binary = "#b" + repeat("1", width);
  const Script script = read_script(mgr, "(declare-const x (_ BitVec 1000000))(assert (= x " + binary +
                                             "))(assert (= " + hexadecimal + " (_ bv12 1000000)))");
  EXPECT_EQ(script.assertions.at(0).term->get_arg(1), mgr.make_bv_number(-1, width));
  EXPECT_EQ(script.assertions.at(1).term->get_arg(0), mgr.make_bv_number(-1, width));
  EXPECT_EQ(script.assertions.at(1).term->get_arg(1), mgr.make_bv_number(12, width));
}

TEST(LargeTexts, DefineFiftyThousandNamesOneByTheOther)
{
  constexpr std::size_t kNames = 50'000;
  std::string text = "(declare-const x (_ BitVec 8))(define-fun v0 () (_ BitVec 8) x)\n";
  for (std::size_t i = 1; i <= kNames; ++i) {
    const std::string before = numbered("v", i - 1);
    text += numbered("(define-fun v", i) + " () (_ BitVec 8) (bvmul " + before + " " + before + "))\n";
  }
  TermManager mgr;
  const Script script = read_script(mgr, text + numbered("(assert (= x v", kNames) + "))");
  std::size_t depth = 0;
  for (const Term* t = script.assertions.at(0).term->get_arg(1); t->get_num_args() != 0; t = t->get_arg(0))
    ++depth;
  EXPECT_EQ(depth, kNames);
}

TEST(LargeTexts, RepeatAMillionTimes)
{
  TermManager mgr;
  const Script script = read_script(
      mgr, "(declare-const x (_ BitVec 1))(assert (= ((_ repeat 1000000) x) ((_ sign_extend 999999) x)))");
  const Term* t = script.assertions.at(0).term->get_arg(0);
  EXPECT_EQ(t->get_symbol()->get_output_type(), mgr.make_bv_type(kMillion));
  EXPECT_LT(mgr.get_num_terms(), 100U);
}

#ifndef __SANITIZE_ADDRESS__  // which takes minutes for it; a depth of a million is read with it, too
TEST(LargeTexts, NestTenMillionApplicationsInTheirLastArgument)
{
  constexpr std::size_t kDepth = 10 * kMillion;
  TermManager mgr;
  const Script script = read_script(
      mgr, "(declare-const p Bool)(assert " + repeat("(not ", kDepth) + "p" + repeat(")", kDepth) + ")");
  EXPECT_EQ(mgr.get_num_terms(), kDepth + 3);
  EXPECT_EQ(script.assertions.size(), 1U);
}
#endif

TEST(LargeTexts, NestAMillionLetsAndAnnotations)
{
  TermManager mgr;
  const Script script = read_script(mgr, "(declare-const p Bool)(assert " +
                                             repeat("(let ((p (! (not p) :note (p))))", kMillion) + "p" +
                                             repeat(")", kMillion) + ")");
  std::size_t depth = 0;
  for (const Term* t = script.assertions.at(0).term; t->get_num_args() != 0; t = t->get_arg(0))
    ++depth;
  EXPECT_EQ(depth, kMillion);
}

TEST(LargeTexts, BindAHundredThousandVariablesAtOnce)
{
  std::string text = "(declare-const p Bool)(assert (let (";
  for (std::size_t i = 0; i < 100'000; ++i)
    text += numbered("(v", i) + " (not p))";
  TermManager mgr;
  EXPECT_EQ(read_script(mgr, text + ") v99999))").assertions.at(0).term->get_arg(0),
            mgr.make_constant("p", mgr.make_bool_type()));
}

TEST(LargeTexts, HaveWidthsThatCostNothing)
{
  TermManager mgr;
  const Script script =
      read_script(mgr,
                  "(declare-const x (_ BitVec 4294967295))(declare-const y (_ BitVec 400000000))"
                  "(assert (= x (_ bv1 4294967295)))(assert (= y (_ bv2 400000000)))");
  EXPECT_EQ(script.constants.size(), 2U);
  EXPECT_EQ(script.assertions.at(0).term->get_arg(1), mgr.make_bv_number(1, 4294967295UL));
}

TEST(LargeTexts, HaveDecimalLiteralsOfAMillionDigits)
{
  TermManager mgr;
  const Script script = read_script(
      mgr, "(declare-const x (_ BitVec 4000000))(assert (= x (_ bv" + repeat("9", kMillion) + " 4000000)))");
  EXPECT_EQ(script.assertions.size(), 1U);
}

TEST(LargeTexts, NestAMillionSorts)
{
  TermManager mgr;
  const Script script = read_script(mgr, "(define-sort S (A) A)(declare-const x " + repeat("(S ", kMillion) +
                                             "Bool" + repeat(")", kMillion) + ")");
  EXPECT_EQ(script.constants.at(0)->get_symbol()->get_output_type(), mgr.make_bool_type());
}

}  // namespace
}  // namespace lumo::smtlib
