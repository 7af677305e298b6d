// The meaning of all operators at wide widths, judged by Z3's simplifier.

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/fold.h"
#include "tests/support/number.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"
#include "tests/support/z3_terms.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

class Judge
{
 public:
  /// The value of the application as a decimal number, true and false as 1 and 0.
  std::string compute(Kind kind, const SymbolCase& symbol, const std::vector<QNumber>& numbers)
  {
    std::vector<z3::expr> operands;
    for (std::size_t i = 0; i < numbers.size(); ++i)
      operands.push_back(make_value(numbers[i], symbol.argument_widths[i]));
    return tell(apply_in_z3(context_, kind, symbol.parameters, operands).simplify());
  }

 private:
  z3::expr make_value(const QNumber& number, unsigned long width)
  {
    if (width == 0) return context_.bool_val(number.sign() != 0);
    return context_.bv_val(number.to_string().c_str(), static_cast<unsigned>(width));
  }
  static std::string tell(const z3::expr& value)
  {
    if (value.is_true()) return "1";
    if (value.is_false()) return "0";
    return value.is_numeral() ? value.get_decimal_string(0) : "not a value: " + value.to_string();
  }

  z3::context context_;
};

// -----------------------------------------------------------------------------------------------------------
// operands

QNumber draw_pattern(Random& random, unsigned long width)
{
  mpz_t z;
  mpz_init(z);
  random.natural(z, width);
  QNumber number = BVNumber::from_integer(z);
  mpz_clear(z);
  return number;
}

/// Limits of operators among the patterns of one width, and a few random patterns.
std::vector<QNumber> make_patterns(Random& random, unsigned long width, unsigned long operand_width)
{
  if (width == 0) return {0, 1};
  const QNumber limit = BVNumber::pow2(width);
  const QNumber half = BVNumber::pow2(width - 1);
  const QNumber amount(static_cast<long>(operand_width));
  std::vector<QNumber> patterns = {0, 1, limit - 1, half, half - 1, amount - 1, amount, amount + 1};
  for (int i = 0; i < 4; ++i)
    patterns.push_back(draw_pattern(random, width));
  for (QNumber& pattern : patterns) {
    pattern = BVNumber::reduce(pattern, width);
    if (random.one_in(4)) pattern = in_big_form(pattern);
  }
  return patterns;
}

/// Operands of the symbol: for each of the first one all of the second; a third is drawn.
std::vector<std::vector<QNumber>> make_operands(Random& random, const SymbolCase& symbol, unsigned long w)
{
  const std::vector<unsigned long>& widths = symbol.argument_widths;
  std::vector<std::vector<QNumber>> tuples;
  for (const QNumber& first : make_patterns(random, widths[0], w)) {
    if (widths.size() == 1) {
      tuples.push_back({first});
      continue;
    }
    for (const QNumber& second : make_patterns(random, widths[1], w)) {
      tuples.push_back({first, second});
      if (widths.size() == 3) tuples.back().push_back(random.pick(make_patterns(random, widths[2], w)));
    }
  }
  return tuples;
}

class FoldAgainstZ3 : public testing::TestWithParam<OperatorCase>
{};

std::string describe(const SymbolCase& symbol, const std::vector<QNumber>& numbers)
{
  std::string text = symbol.name + " of";
  for (std::size_t i = 0; i < numbers.size(); ++i)
    text.append(" ").append(numbers[i].to_string()).append(numbered(":", symbol.argument_widths[i]));
  return text;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Terms, FoldAgainstZ3, testing::ValuesIn(get_operator_cases()), kLabelOf);

TEST_P(FoldAgainstZ3, AgreesAtWideWidths)
{
  Random random(static_cast<std::uint64_t>(GetParam().kind));
  SCOPED_TRACE(random);
  TermManager mgr;
  Judge judge;
  for (const unsigned long w : {8UL, 31UL, 32UL, 33UL, 62UL, 63UL, 64UL, 65UL, 127UL, 128UL, 1000UL}) {
    for (const SymbolCase& symbol : GetParam().symbols(w)) {
      const Symbol* s = GetParam().make(mgr, symbol.parameters);
      for (const std::vector<QNumber>& numbers : make_operands(random, symbol, w)) {
        std::array<const QNumber*, kMaxArity> args{};
        for (std::size_t i = 0; i < numbers.size(); ++i)
          args[i] = &numbers[i];
        ASSERT_EQ(fold(as_operator(s), args.data()).to_string(),
                  judge.compute(GetParam().kind, symbol, numbers))
            << describe(symbol, numbers);
      }
    }
  }
}

}  // namespace lumo::test
