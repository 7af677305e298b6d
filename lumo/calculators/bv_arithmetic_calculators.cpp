// The calculators of bit-vector arithmetic.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

namespace {

/// lhs - rhs, a numeral if both are
const Term* make_difference(TermManager* mgr, unsigned long w, const Term* lhs, const Term* rhs)
{
  const auto args = make_arguments<termsimpl::BVSubSimpl>(lhs, rhs);
  return termsimpl::BVSubSimpl()(mgr, mgr->make_bv_sub_symbol(w), args);
}

/// lhs + rhs, a numeral if both are
const Term* make_sum(TermManager* mgr, unsigned long w, const Term* lhs, const Term* rhs)
{
  const auto args = make_arguments<termsimpl::BVAddSimpl>(lhs, rhs);
  return termsimpl::BVAddSimpl()(mgr, mgr->make_bv_add_symbol(w), args);
}

}  // namespace

Refusal BVAddAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) return "should have been handled at the normalization step";

  if (!a_is_number && !b_is_number) {
    const Selection selection = select_free_constant(mgr, a, b);
    if (selection.refusal) return selection.refusal;
    push_definition(defs, a, mgr->make_bv_number(v, w));
    push_definition(defs, b, mgr->make_bv_number(0, w));
    return {};
  }
  const Term* x = a_is_number ? b : a;
  const Term* c = a_is_number ? a : b;
  push_definition(defs, x, make_difference(mgr, w, value, c));
  return {};
}

Refusal BVSubAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) return "term was not free";

  if (!a_is_number && !b_is_number) {
    const Selection selection = select_free_constant(mgr, a, b);
    if (selection.refusal) return selection.refusal;
    // After an exchange, a is the subtrahend, and 0 - (2^w - v) = v modulo 2^w.
    push_definition(defs, a, mgr->make_bv_number(selection.swapped ? BVNumber::pow2(w) - v : v, w));
    push_definition(defs, b, mgr->make_bv_number(0, w));
    return {};
  }
  if (b_is_number) {
    push_definition(defs, a, make_sum(mgr, w, b, value));
  } else {
    push_definition(defs, b, make_difference(mgr, w, a, value));
  }
  return {};
}

Refusal BVMulAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const auto a_number = find_numeral(mgr, a);
  const auto b_number = find_numeral(mgr, b);

  if (a_number && b_number) return "should have been handled at the normalization step";

  if (!a_number && !b_number) {
    const Selection selection = select_free_constant(mgr, a, b);
    if (selection.refusal) return selection.refusal;
    push_definition(defs, a, mgr->make_bv_number(v, w));
    push_definition(defs, b, mgr->make_bv_number(1, w));
    return {};
  }
  const Term* x = a_number ? b : a;
  const QNumber& c = a_number ? *a_number : *b_number;

  if (!BVNumber::is_bit_set(c, 0)) return "We cannot find a value for this atom!";

  const QNumber m = BVNumber::pow2(w);
  QNumber p = calculate_modular_inverse(c, m);
  p *= v;
  QNumber quotient;
  p.divmod(m, quotient, p);

  push_definition(defs, x, mgr->make_bv_number(p, w));
  return {};
}

Refusal BVUdivAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                             DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number != b_is_number) return "Cannot find a value, should be free!";
  if (a_is_number) return "should have been handled at the normalization step";
  const Selection selection = select_free_constant(mgr, a, b);
  if (selection.refusal) return selection.refusal;
  if (selection.swapped) return "Cannot find a value, should be free!";

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(1, w));
  return {};
}

Refusal BVSdivAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                             DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  const auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) return "should have been handled at the normalization step";
  if (a_is_number || b_is_number) return "Cannot find a value, should be free!";

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(1, w));
  return {};
}

Refusal BVUremAdHocCalculator::try_calculate(TermManager* /*mgr*/, const Term* /*t*/, const Term* /*value*/,
                                             DefinitionStack& /*defs*/)
{
  return "Should not be called is never free!";
}

Refusal BVSremAdHocCalculator::try_calculate(TermManager* /*mgr*/, const Term* /*t*/, const Term* /*value*/,
                                             DefinitionStack& /*defs*/)
{
  return "Should not be called is never free!";
}

}  // namespace lumo::adhoccalculator
