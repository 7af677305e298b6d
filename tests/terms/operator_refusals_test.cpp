// Operator symbols with invalid parameters.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/refusal.h"
#include "tests/terms/operator_cases.h"

namespace lumo::test {

namespace {

/// A request with these parameters is refused with this text.
struct Refusal
{
  Kind kind;
  Parameters parameters;
  std::string text;
};

constexpr unsigned long kHuge = ~0UL;
const std::string kWidthRange = ", but widths are 1 to 4294967295";

const OperatorCase& get_case(Kind kind) { return get_operator_cases()[static_cast<std::size_t>(kind)]; }

/// Requests first with every refused row, then once with valid parameters.
void expect_refusals(const std::vector<Refusal>& rows)
{
  for (const Refusal& row : rows) {
    const OperatorCase& op = get_case(row.kind);
    TermManager mgr;
    for (int round = 0; round < 2; ++round)
      expect_refusal(
          mgr, [&] { op.make(mgr, row.parameters); }, row.text);
    const SymbolCase good = op.symbols(8).back();
    const Symbol* s = op.make(mgr, good.parameters);
    EXPECT_EQ(s->get_name(), good.name);
    expect_refusal(
        mgr, [&] { op.make(mgr, row.parameters); }, row.text);
    EXPECT_EQ(op.make(mgr, good.parameters), s);
  }
}

/// Rows for one operand width: 0 and too wide ones.
std::vector<Refusal> make_width_rows(Kind kind, std::size_t position, Parameters parameters,
                                     const std::string& operand)
{
  std::vector<Refusal> rows;
  for (const unsigned long w : {0UL, 4294967296UL, kHuge}) {
    parameters[position] = w;
    std::string text(get_case(kind).smtlib_name);
    text += " was requested for ";
    text += operand;
    text += " of width ";
    text += std::to_string(w);
    text += kWidthRange;
    rows.push_back({kind, parameters, text});
  }
  return rows;
}

}  // namespace

TEST(OperatorRefusals, OperandsOfImpossibleWidth)
{
  using K = Kind;
  for (const Kind kind : {K::kBvNot,  K::kBvNeg, K::kBvAnd, K::kBvOr,  K::kBvXor,  K::kBvLsl,  K::kBvLsr,
                          K::kBvAsr,  K::kBvAdd, K::kBvSub, K::kBvMul, K::kBvUdiv, K::kBvSdiv, K::kBvUrem,
                          K::kBvSrem, K::kBvUlt, K::kBvUle, K::kBvSlt, K::kBvSle,  K::kBvComp})
  {
    expect_refusals(make_width_rows(kind, 0, {}, "operands"));
  }
  for (const Kind kind : {K::kBvRotateLeft, K::kBvRotateRight, K::kBvZeroExtend, K::kBvSignExtend})
    expect_refusals(make_width_rows(kind, 1, {3, 0, 0}, "an operand"));
  expect_refusals(make_width_rows(K::kBvExtract, 2, {7, 4, 0}, "an operand"));
  expect_refusals(make_width_rows(K::kBvConcat, 0, {0, 8, 0}, "a first operand"));
  expect_refusals(make_width_rows(K::kBvConcat, 1, {8, 0, 0}, "a second operand"));
}

TEST(OperatorRefusals, ResultsThatAreTooWide)
{
  const std::string limit = " bits, but together they may be at most 4294967295";
  expect_refusals({
      {Kind::kBvConcat, {4294967295, 1}, "concat was requested with 4294967295 and 1" + limit},
      {Kind::kBvConcat, {1, 4294967295}, "concat was requested with 1 and 4294967295" + limit},
      {Kind::kBvConcat,
       {4294967295, 4294967295},
       "concat was requested with 4294967295 and 4294967295" + limit},
      {Kind::kBvZeroExtend, {4294967295, 1}, "zero_extend was requested with 4294967295 and 1" + limit},
      {Kind::kBvZeroExtend, {1, 4294967295}, "zero_extend was requested with 1 and 4294967295" + limit},
      {Kind::kBvZeroExtend, {kHuge, 8}, "zero_extend was requested with 18446744073709551615 and 8" + limit},
      {Kind::kBvSignExtend, {4294967288, 8}, "sign_extend was requested with 4294967288 and 8" + limit},
      {Kind::kBvSignExtend, {kHuge, 1}, "sign_extend was requested with 18446744073709551615 and 1" + limit},
  });
}

TEST(OperatorRefusals, BitsThatAreNotThere)
{
  const auto text = [](const std::string& bits, const std::string& w, const std::string& reason) {
    return "extract was requested for bits " + bits + " of an operand of width " + w +
           ", but the first bit must " + reason;
  };
  expect_refusals({
      {Kind::kBvExtract, {3, 4, 8}, text("3 down to 4", "8", "not be below the second")},
      {Kind::kBvExtract, {0, 7, 8}, text("0 down to 7", "8", "not be below the second")},
      {Kind::kBvExtract, {8, 0, 8}, text("8 down to 0", "8", "be below 8")},
      {Kind::kBvExtract, {1, 1, 1}, text("1 down to 1", "1", "be below 1")},
      {Kind::kBvExtract, {kHuge, 0, 8}, text("18446744073709551615 down to 0", "8", "be below 8")},
      {Kind::kBvExtract,
       {0, kHuge, 8},
       text("0 down to 18446744073709551615", "8", "not be below the second")},
      {Kind::kBvExtract, {8, 9, 8}, text("8 down to 9", "8", "not be below the second")},
      {Kind::kBvExtract,
       {kHuge, kHuge, 4294967295},
       text("18446744073709551615 down to 18446744073709551615", "4294967295", "be below 4294967295")},
  });
}

TEST(OperatorRefusals, EqualityOfBooleans)
{
  expect_refusals({{Kind::kEq,
                    {0},
                    "an equality symbol for sort Bool was requested, but a bit-vector sort was expected: "
                    "equality of Booleans is iff"}});
}

TEST(OperatorRefusals, NullSorts)
{
  TermManager mgr;
  const std::string text = "a sort was expected, but a null pointer was given";
  expect_refusal(
      mgr, [&] { mgr.make_ite_symbol(nullptr); }, text);
  expect_refusal(
      mgr, [&] { mgr.make_eq_symbol(nullptr); }, text);
  EXPECT_EQ(mgr.make_eq_symbol(mgr.make_bv_type(8))->get_name(), "=");
}

TEST(OperatorLimits, AreNotRefused)
{
  TermManager mgr;
  constexpr unsigned long widest_width = TermManager::kMaxWidth;
  static_assert(widest_width == 4294967295);
  const DataType* widest = mgr.make_bv_type(widest_width);
  EXPECT_EQ(mgr.make_bv_add_symbol(widest_width)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_concat_symbol(widest_width - 1, 1)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_concat_symbol(1, widest_width - 1)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_zero_extend_symbol(widest_width - 8, 8)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_sign_extend_symbol(0, widest_width)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_extract_symbol(widest_width - 1, 0, widest_width)->get_output_type(), widest);
  EXPECT_EQ(mgr.make_bv_extract_symbol(widest_width - 1, widest_width - 1, widest_width)->get_output_type(),
            mgr.make_bv_type(1));
  EXPECT_EQ(mgr.make_bv_rotate_left_symbol(kHuge, 8)->get_name(), "(_ rotate_left 18446744073709551615)");
}

}  // namespace lumo::test
