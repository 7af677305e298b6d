// The overflow predicates, judged by machine words at narrow widths and by exact integers of GMP at others.

#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/operators.h"
#include "tests/smtlib/z3_judge.h"
#include "tests/support/gmp_number.h"

namespace lumo::test {
namespace {

struct Predicate
{
  std::string_view name;
  std::size_t num_args;
  bool is_signed;
  long (*compute)(long a, long b);  ///< the exact result
};

constexpr std::array<Predicate, 8> kRows = {{
    {"bvnego", 1, true, [](long a, long /*b*/) { return -a; }},
    {"bvuaddo", 2, false, [](long a, long b) { return a + b; }},
    {"bvsaddo", 2, true, [](long a, long b) { return a + b; }},
    {"bvumulo", 2, false, [](long a, long b) { return a * b; }},
    {"bvsmulo", 2, true, [](long a, long b) { return a * b; }},
    {"bvusubo", 2, false, [](long a, long b) { return a - b; }},
    {"bvssubo", 2, true, [](long a, long b) { return a - b; }},
    // By definition, the result of a division by 0 fits the width.
    {"bvsdivo", 2, true, [](long a, long b) { return b == 0 ? 0 : a / b; }},
}};

class Overflow : public testing::TestWithParam<Predicate>
{};

TEST_P(Overflow, IsThatOfTheExactResultAtWidthsOneToFive)
{
  const Predicate& row = GetParam();
  const smtlib::Operator& op = *smtlib::find_operator(row.name);
  for (unsigned long w = 1; w <= 5; ++w) {
    TermManager mgr;
    ModelStore model(&mgr);
    const long size = 1L << w;
    const long least = row.is_signed ? -size / 2 : 0;
    const long greatest = row.is_signed ? size / 2 - 1 : size - 1;
    for (long a = least; a <= greatest; ++a) {
      for (long b = least; b <= greatest; ++b) {
        const std::array<const Term*, 2> args = {mgr.make_bv_number(a, w), mgr.make_bv_number(b, w)};
        const Term* t = op.build(mgr, {}, smtlib::Arguments(args).first(row.num_args));
        const long exact = row.compute(a, b);
        const bool overflows = exact < least || exact > greatest;
        EXPECT_EQ(model.get_value(t) == mgr.make_true(), overflows) << a << " and " << b << " of width " << w;
      }
    }
  }
}

/// The number of a pattern of width w
void make_number(mpz_t number, const TermManager& mgr, const Term* t, unsigned long w, bool is_signed)
{
  QNumber pattern;
  mgr.is_number(t->get_symbol(), &pattern);
  pattern.get_numerator(number);
  if (!is_signed || mpz_tstbit(number, w - 1) == 0) return;
  Integer size;
  mpz_setbit(size, w);
  mpz_sub(number, number, size);
}

void compute_exactly(mpz_t result, std::string_view name, const Integer& a, const Integer& b)
{
  if (name == "bvnego") {
    mpz_neg(result, a);
  } else if (name.substr(3) == "addo") {
    mpz_add(result, a, b);
  } else if (name.substr(3) == "subo") {
    mpz_sub(result, a, b);
  } else if (name.substr(3) == "mulo") {
    mpz_mul(result, a, b);
  } else if (b.sign() != 0) {
    mpz_tdiv_q(result, a, b);
  }
}

/// Whether the number lies in the range of the patterns of width w.
bool has_place(const mpz_t number, unsigned long w, bool is_signed)
{
  if (!is_signed) return mpz_sgn(number) >= 0 && mpz_sizeinbase(number, 2) <= w;
  Integer moved;
  mpz_setbit(moved, w - 1);
  mpz_add(moved, moved, number);
  return moved.sign() >= 0 && mpz_sizeinbase(moved, 2) <= w;
}

TEST_P(Overflow, IsThatOfTheExactResultAtWideWidths)
{
  const Predicate& row = GetParam();
  const smtlib::Operator& op = *smtlib::find_operator(row.name);
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long w : {8UL, 31UL, 32UL, 33UL, 63UL, 64UL, 65UL, 128UL, 1000UL}) {
    TermManager mgr;
    ModelStore model(&mgr);
    for (int i = 0; i < 100; ++i) {
      std::array<const Term*, 2> args{};
      for (const Term*& arg : args)
        arg = make_random_value(mgr, mgr.make_bv_type(w), random);
      Integer a;
      Integer b;
      Integer exact;
      make_number(a, mgr, args[0], w, row.is_signed);
      make_number(b, mgr, args[1], w, row.is_signed);
      compute_exactly(exact, row.name, a, b);
      const Term* t = op.build(mgr, {}, smtlib::Arguments(args).first(row.num_args));
      EXPECT_EQ(model.get_value(t) == mgr.make_true(), !has_place(exact, w, row.is_signed))
          << args[0]->get_symbol()->get_name() << " and " << args[1]->get_symbol()->get_name();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Language, Overflow, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Predicate>& row) {
                           return std::string(row.param.name);
                         });

}  // namespace
}  // namespace lumo::test
