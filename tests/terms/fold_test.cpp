// The meaning of all operators: every operand at narrow widths, and the well-known corner cases.

#include "lumo/terms/fold.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/number.h"
#include "tests/terms/fold_reference.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

using Words = std::array<unsigned long, kMaxArity>;

/// Calls the action with every tuple of patterns of these widths, where width 0 stands for Bool.
template <class Action>
void for_each_tuple(const std::vector<unsigned long>& widths, Action action)
{
  const auto count = [](unsigned long w) { return 1UL << (w == 0 ? 1 : w); };
  Words words{};
  for (;;) {
    action(words);
    std::size_t i = 0;
    while (i < widths.size() && ++words[i] == count(widths[i]))
      words[i++] = 0;
    if (i == widths.size()) return;
  }
}

QNumber fold_numbers(const Symbol* s, const std::vector<QNumber>& numbers)
{
  std::vector<const QNumber*> args;
  args.reserve(numbers.size());
  for (const QNumber& number : numbers)
    args.push_back(&number);
  return fold(as_operator(s), args.data());
}

/// The words as numbers; number i has the big form if bit i of `forms` is set.
std::vector<QNumber> as_numbers(const Words& words, std::size_t count, unsigned forms)
{
  std::vector<QNumber> numbers;
  for (std::size_t i = 0; i < count; ++i) {
    const QNumber number(static_cast<long>(words[i]));
    numbers.push_back(((forms >> i) & 1) != 0 ? in_big_form(number) : number);
  }
  return numbers;
}

class Fold : public testing::TestWithParam<OperatorCase>
{};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Terms, Fold, testing::ValuesIn(get_operator_cases()), kLabelOf);

TEST_P(Fold, AgreesWithMachineWordsOnAllNarrowOperandsInBothForms)
{
  TermManager mgr;
  for (unsigned long w = 1; w <= 4; ++w) {
    for (const SymbolCase& symbol : GetParam().symbols(w)) {
      const Symbol* s = GetParam().make(mgr, symbol.parameters);
      const std::size_t arity = symbol.argument_widths.size();
      for_each_tuple(symbol.argument_widths, [&](const Words& words) {
        const QNumber expected(
            static_cast<long>(compute_reference(GetParam().kind, symbol.parameters, words.data())));
        for (unsigned forms = 0; forms < 1U << arity; ++forms) {
          ASSERT_EQ(fold_numbers(s, as_numbers(words, arity, forms)), expected)
              << symbol << " of " << words[0] << ' ' << words[1] << ' ' << words[2] << ", forms " << forms;
        }
      });
    }
  }
}

TEST_P(Fold, TakesOneNumberForSeveralArguments)
{
  TermManager mgr;
  for (const SymbolCase& symbol : GetParam().symbols(3)) {
    const std::vector<unsigned long>& widths = symbol.argument_widths;
    if (std::any_of(widths.begin(), widths.end(), [&](unsigned long w) { return w != widths[0]; })) continue;
    const Symbol* s = GetParam().make(mgr, symbol.parameters);
    const unsigned long last = widths[0] == 0 ? 1 : 7;
    for (unsigned long word = 0; word <= last; ++word) {
      const Words words = {word, word, word};
      const QNumber expected(
          static_cast<long>(compute_reference(GetParam().kind, symbol.parameters, words.data())));
      for (const unsigned forms : {0U, 1U}) {
        const QNumber number = as_numbers(words, 1, forms)[0];
        const QNumber* args[] = {&number, &number, &number};
        EXPECT_EQ(fold(as_operator(s), args), expected) << symbol << " of " << number;
      }
    }
  }
}

// -----------------------------------------------------------------------------------------------------------
// corners, at widths on both sides of the word

namespace {

class FoldCorner : public testing::TestWithParam<unsigned long>
{
 protected:
  QNumber fold_bv(const Symbol* (TermManager::*make)(unsigned long), const QNumber& a, const QNumber& b)
  {
    return fold_numbers((mgr_.*make)(w_), {a, b});
  }

  TermManager mgr_;
  const unsigned long w_ = GetParam();
  const QNumber zero_;
  const QNumber one_{1};
  const QNumber ones_ = BVNumber::pow2(w_) - QNumber(1);         ///< -1
  const QNumber lowest_ = BVNumber::pow2(w_ - 1);                ///< the lowest signed value
  const QNumber highest_ = BVNumber::pow2(w_ - 1) - QNumber(1);  ///< the highest signed value
};

using M = TermManager;

}  // namespace

INSTANTIATE_TEST_SUITE_P(Widths, FoldCorner,
                         testing::Values(2, 8, 31, 32, 33, 61, 62, 63, 64, 65, 127, 128, 1000, 100000));

TEST_P(FoldCorner, DivisionByZero)
{
  for (const QNumber& a : {zero_, one_, ones_, lowest_, highest_}) {
    const bool is_negative = a >= lowest_;
    EXPECT_TRUE(fold_bv(&M::make_bv_udiv_symbol, a, zero_) == ones_);
    EXPECT_TRUE(fold_bv(&M::make_bv_urem_symbol, a, zero_) == a);
    EXPECT_TRUE(fold_bv(&M::make_bv_sdiv_symbol, a, zero_) == (is_negative ? one_ : ones_));
    EXPECT_TRUE(fold_bv(&M::make_bv_srem_symbol, a, zero_) == a);
  }
}

TEST_P(FoldCorner, DivisionOfTheLowestByMinusOne)
{
  EXPECT_TRUE(fold_bv(&M::make_bv_sdiv_symbol, lowest_, ones_) == lowest_);
  EXPECT_TRUE(fold_bv(&M::make_bv_srem_symbol, lowest_, ones_) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_sdiv_symbol, lowest_, lowest_) == one_);
  EXPECT_TRUE(fold_bv(&M::make_bv_sdiv_symbol, highest_, lowest_) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_srem_symbol, highest_, lowest_) == highest_);
  EXPECT_TRUE(fold_bv(&M::make_bv_udiv_symbol, lowest_, ones_) == zero_);
}

TEST_P(FoldCorner, NegationHasTwoFixedPoints)
{
  EXPECT_TRUE(fold_numbers(mgr_.make_bv_neg_symbol(w_), {zero_}) == zero_);
  EXPECT_TRUE(fold_numbers(mgr_.make_bv_neg_symbol(w_), {lowest_}) == lowest_);
  EXPECT_TRUE(fold_numbers(mgr_.make_bv_neg_symbol(w_), {one_}) == ones_);
}

TEST_P(FoldCorner, ShiftsByAboutTheWidth)
{
  const QNumber last(static_cast<long>(w_ - 1));
  EXPECT_TRUE(fold_bv(&M::make_bv_lsl_symbol, ones_, last) == lowest_);
  EXPECT_TRUE(fold_bv(&M::make_bv_lsr_symbol, ones_, last) == one_);
  EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, lowest_, last) == ones_);
  EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, highest_, last) == zero_);
  for (const unsigned long amount : {w_, w_ + 1}) {
    const QNumber k(static_cast<long>(amount));
    if (k > ones_) continue;  // at the narrowest width no pattern is that large
    EXPECT_TRUE(fold_bv(&M::make_bv_lsl_symbol, ones_, k) == zero_);
    EXPECT_TRUE(fold_bv(&M::make_bv_lsr_symbol, ones_, k) == zero_);
    EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, lowest_, k) == ones_);
    EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, highest_, k) == zero_);
  }
}

TEST_P(FoldCorner, ShiftsByHugeAmounts)
{
  for (const QNumber& k : {ones_, lowest_, in_big_form(ones_)}) {
    if (k < QNumber(static_cast<long>(w_))) continue;
    EXPECT_TRUE(fold_bv(&M::make_bv_lsl_symbol, ones_, k) == zero_);
    EXPECT_TRUE(fold_bv(&M::make_bv_lsr_symbol, ones_, k) == zero_);
    EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, ones_, k) == ones_);
    EXPECT_TRUE(fold_bv(&M::make_bv_asr_symbol, highest_, k) == zero_);
  }
}

TEST_P(FoldCorner, SignedOrderTurnsAtTheLowest)
{
  EXPECT_TRUE(fold_bv(&M::make_bv_slt_symbol, lowest_, highest_) == one_);
  EXPECT_TRUE(fold_bv(&M::make_bv_ult_symbol, lowest_, highest_) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_sle_symbol, ones_, zero_) == one_);
  EXPECT_TRUE(fold_bv(&M::make_bv_ule_symbol, ones_, zero_) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_slt_symbol, lowest_, in_big_form(lowest_)) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_sle_symbol, lowest_, in_big_form(lowest_)) == one_);
}

TEST_P(FoldCorner, ArithmeticWraps)
{
  EXPECT_TRUE(fold_bv(&M::make_bv_add_symbol, ones_, one_) == zero_);
  EXPECT_TRUE(fold_bv(&M::make_bv_sub_symbol, zero_, one_) == ones_);
  EXPECT_TRUE(fold_bv(&M::make_bv_mul_symbol, ones_, ones_) == one_);
  EXPECT_TRUE(fold_bv(&M::make_bv_mul_symbol, lowest_, lowest_) == zero_);
}

TEST_P(FoldCorner, RotationsByAnyAmountWrap)
{
  const unsigned long huge = ~0UL - ~0UL % w_;  // the largest multiple of the width
  for (const unsigned long full : {0UL, w_, 7 * w_, huge}) {
    EXPECT_TRUE(fold_numbers(mgr_.make_bv_rotate_left_symbol(full, w_), {highest_}) == highest_);
    EXPECT_TRUE(fold_numbers(mgr_.make_bv_rotate_right_symbol(full, w_), {highest_}) == highest_);
  }
  EXPECT_TRUE(fold_numbers(mgr_.make_bv_rotate_left_symbol(huge - w_ + 1, w_), {lowest_}) == one_);
  EXPECT_TRUE(fold_numbers(mgr_.make_bv_rotate_right_symbol(huge - w_ + 1, w_), {one_}) == lowest_);
}

TEST_P(FoldCorner, ExtensionsKeepTheSignedAndTheUnsignedValue)
{
  for (const unsigned long k : {0UL, 1UL, 64UL}) {
    const QNumber all = BVNumber::pow2(w_ + k) - one_;
    EXPECT_TRUE(fold_numbers(mgr_.make_bv_sign_extend_symbol(k, w_), {ones_}) == all);
    EXPECT_TRUE(fold_numbers(mgr_.make_bv_zero_extend_symbol(k, w_), {ones_}) == ones_);
    EXPECT_TRUE(fold_numbers(mgr_.make_bv_sign_extend_symbol(k, w_), {highest_}) == highest_);
  }
}

// -----------------------------------------------------------------------------------------------------------
// terms that are values

TEST(Values, AreNumeralsTrueAndFalse)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  EXPECT_TRUE(is_value(mgr, mgr.make_true()));
  EXPECT_TRUE(is_value(mgr, mgr.make_false()));
  EXPECT_TRUE(is_value(mgr, mgr.make_bv_number(5, 8)));
  EXPECT_FALSE(is_value(mgr, x));
  EXPECT_FALSE(is_value(mgr, mgr.make_term(mgr.make_bv_not_symbol(8), {mgr.make_bv_number(5, 8)})));
}

TEST(Values, AreReadAsNumbers)
{
  TermManager mgr;
  QNumber out(77);
  EXPECT_FALSE(get_value_number(mgr, mgr.make_constant("x", mgr.make_bool_type()), out));
  EXPECT_EQ(out, QNumber(77));
  EXPECT_TRUE(get_value_number(mgr, mgr.make_true(), out));
  EXPECT_EQ(out, QNumber(1));
  EXPECT_TRUE(get_value_number(mgr, mgr.make_false(), out));
  EXPECT_EQ(out, QNumber(0));
  EXPECT_TRUE(get_value_number(mgr, mgr.make_bv_number(-1, 100), out));
  EXPECT_EQ(out, BVNumber::pow2(100) - QNumber(1));
}

TEST(Values, AreMadeFromNumbers)
{
  TermManager mgr;
  EXPECT_EQ(make_value(mgr, QNumber(1), mgr.make_bool_type()), mgr.make_true());
  EXPECT_EQ(make_value(mgr, QNumber(0), mgr.make_bool_type()), mgr.make_false());
  EXPECT_EQ(make_value(mgr, in_big_form(QNumber(1)), mgr.make_bool_type()), mgr.make_true());
  EXPECT_EQ(make_value(mgr, in_big_form(QNumber(0)), mgr.make_bool_type()), mgr.make_false());
  EXPECT_EQ(make_value(mgr, QNumber(1), mgr.make_bv_type(1)), mgr.make_bv_number(1, 1));
  EXPECT_EQ(make_value(mgr, QNumber(5), mgr.make_bv_type(8)), mgr.make_bv_number(5, 8));
}

}  // namespace lumo::test
