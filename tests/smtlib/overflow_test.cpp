// The overflow predicates, judged by machine words at narrow widths and by Z3's functions at others.

#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/operators.h"
#include "tests/smtlib/z3_judge.h"

namespace lumo::test {
namespace {

struct Row
{
  std::string_view name;
  std::size_t num_args;
  bool is_signed;
  long (*compute)(long a, long b);  ///< the exact result
};

constexpr std::array<Row, 8> kRows = {{
    {"bvnego", 1, true, [](long a, long /*b*/) { return -a; }},
    {"bvuaddo", 2, false, [](long a, long b) { return a + b; }},
    {"bvsaddo", 2, true, [](long a, long b) { return a + b; }},
    {"bvumulo", 2, false, [](long a, long b) { return a * b; }},
    {"bvsmulo", 2, true, [](long a, long b) { return a * b; }},
    {"bvusubo", 2, false, [](long a, long b) { return a - b; }},
    {"bvssubo", 2, true, [](long a, long b) { return a - b; }},
    // A division by 0 has a result of the width by definition.
    {"bvsdivo", 2, true, [](long a, long b) { return b == 0 ? 0 : a / b; }},
}};

class Overflow : public testing::TestWithParam<Row>
{};

TEST_P(Overflow, IsThatOfTheExactResultAtWidthsOneToFive)
{
  const Row& row = GetParam();
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

/// The negation of what Z3's interface has, whose predicates say that nothing overflows.
z3::expr make_overflow(std::string_view name, const z3::expr& a, const z3::expr& b)
{
  if (name == "bvnego") return !z3::bvneg_no_overflow(a);
  if (name == "bvuaddo") return !z3::bvadd_no_overflow(a, b, false);
  if (name == "bvsaddo") return !(z3::bvadd_no_overflow(a, b, true) && z3::bvadd_no_underflow(a, b));
  if (name == "bvumulo") return !z3::bvmul_no_overflow(a, b, false);
  if (name == "bvsmulo") return !(z3::bvmul_no_overflow(a, b, true) && z3::bvmul_no_underflow(a, b));
  if (name == "bvusubo") return !z3::bvsub_no_underflow(a, b, false);
  if (name == "bvssubo") return !(z3::bvsub_no_overflow(a, b) && z3::bvsub_no_underflow(a, b, true));
  return !z3::bvsdiv_no_overflow(a, b);
}

TEST_P(Overflow, IsWhatZ3SaysAtOtherWidths)
{
  const Row& row = GetParam();
  Random random;
  SCOPED_TRACE(random);
  for (const unsigned long w : {8UL, 31UL, 32UL, 33UL, 63UL, 64UL, 65UL, 128UL}) {
    TermManager mgr;
    ModelStore model(&mgr);
    z3::context z3;
    for (int i = 0; i < 30; ++i) {
      std::array<const Term*, 2> args{};
      for (const Term*& arg : args)
        arg = make_random_value(mgr, mgr.make_bv_type(w), random);
      const auto make = [&](const Term* t) {
        QNumber number;
        mgr.is_number(t->get_symbol(), &number);
        return z3.bv_val(number.to_string().c_str(), static_cast<unsigned>(w));
      };
      const Term* t =
          smtlib::find_operator(row.name)->build(mgr, {}, smtlib::Arguments(args).first(row.num_args));
      const z3::expr expected = make_overflow(row.name, make(args[0]), make(args[1])).simplify();
      ASSERT_TRUE(expected.is_true() || expected.is_false()) << expected;
      EXPECT_EQ(model.get_value(t) == mgr.make_true(), expected.is_true())
          << args[0]->get_symbol()->get_name() << " and " << args[1]->get_symbol()->get_name();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Language, Overflow, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace lumo::test
