// The calculators of bitwise operators and rotations.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

Refusal BVNotAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (is_numeral(mgr, x)) return "Term was not free!";

  const unsigned long w = read_width(mgr, value);
  const auto args = make_arguments<termsimpl::BVNotSimpl>(value);
  const Term* inverse = termsimpl::BVNotSimpl()(mgr, mgr->make_bv_not_symbol(w), args);

  push_definition(defs, x, inverse);
  return {};
}

Refusal BVNegAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (is_numeral(mgr, x)) return "Is not free!";

  const unsigned long w = read_width(mgr, value);
  const auto args = make_arguments<termsimpl::BVNegSimpl>(value);
  const Term* inverse = termsimpl::BVNegSimpl()(mgr, mgr->make_bv_neg_symbol(w), args);

  push_definition(defs, x, inverse);
  return {};
}

Refusal BVRolAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (is_numeral(mgr, x)) return "Is not free!";

  unsigned long k = 0;
  unsigned long w = 0;
  mgr->is_bv_rotate_left(t->get_symbol(), &k, &w);
  const auto args = make_arguments<termsimpl::BVRorSimpl>(value);
  const Term* inverse = termsimpl::BVRorSimpl()(mgr, mgr->make_bv_rotate_right_symbol(k, w), args);

  push_definition(defs, x, inverse);
  return {};
}

Refusal BVRorAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  unsigned long k = 0;
  unsigned long w = 0;
  mgr->is_bv_rotate_right(t->get_symbol(), &k, &w);
  const Term* x = t->get_arg(0);

  if (is_numeral(mgr, x)) return "Is not free!";

  const auto args = make_arguments<termsimpl::BVRolSimpl>(value);
  const Term* inverse = termsimpl::BVRolSimpl()(mgr, mgr->make_bv_rotate_left_symbol(k, w), args);

  push_definition(defs, x, inverse);
  return {};
}

Refusal BVAndAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);
  const unsigned long w = read_width(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (is_numeral(mgr, a) || is_numeral(mgr, b)) return "This atom is not unconstraint!";

  const Term* n = mgr->make_bv_number(v, w);

  push_definition(defs, a, n);
  push_definition(defs, b, n);
  return {};
}

Refusal BVOrAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                           DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);
  const unsigned long w = read_width(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (is_numeral(mgr, a) || is_numeral(mgr, b)) return "This atom is not unconstrained!";

  const Term* n = mgr->make_bv_number(v, w);
  const Selection selection = select_free_constant(mgr, a, b);
  if (selection.refusal) return selection.refusal;

  push_definition(defs, a, n);
  push_definition(defs, b, mgr->make_bv_number(QNumber(0), w));
  return {};
}

Refusal BVXorAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
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
  const Term* x = b_is_number ? a : b;
  const Term* n = b_is_number ? b : a;
  const auto args = make_arguments<termsimpl::BVXorSimpl>(value, n);
  push_definition(defs, x, termsimpl::BVXorSimpl()(mgr, mgr->make_bv_xor_symbol(w), args));
  return {};
}

}  // namespace lumo::adhoccalculator
