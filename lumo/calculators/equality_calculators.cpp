// The calculators of equality, with a Boolean and with a one-bit result.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

namespace {

/// n + 1, which differs from the numeral n at every width
const Term* make_successor(TermManager* mgr, const Term* n, unsigned long w)
{
  const auto args = make_arguments<termsimpl::BVAddSimpl>(n, mgr->make_bv_number(1, w));
  return termsimpl::BVAddSimpl()(mgr, mgr->make_bv_add_symbol(w), args);
}

/// Makes t's two arguments equal, or different.
Refusal solve_equality(TermManager* mgr, const Term* t, bool equal, DefinitionStack& defs)
{
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);
  const unsigned long w = read_width(mgr, a);

  if (a_is_number && b_is_number) return "term was not free";

  if (!a_is_number && !b_is_number) {
    const Selection selection = select_free_constant(mgr, a, b);
    if (selection.refusal) return selection.refusal;
    push_definition(defs, a, mgr->make_bv_number(QNumber(equal ? 0 : 1), w));
    push_definition(defs, b, mgr->make_bv_number(QNumber(0), w));
    return {};
  }
  const Term* x = b_is_number ? a : b;
  const Term* n = b_is_number ? b : a;
  push_definition(defs, x, equal ? n : make_successor(mgr, n, w));
  return {};
}

}  // namespace

Refusal EqAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                         DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();

  return solve_equality(mgr, t, want, defs);
}

Refusal BVCompAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                             DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);

  const bool is_zero = v == QNumber(0);
  // The temporary number is also destroyed if an exception is thrown, in branches that no test takes.
  if (!is_zero && QNumber(1) != v) return "unexpected value from comp";  // GCOVR_EXCL_BR_LINE

  return solve_equality(mgr, t, !is_zero, defs);
}

}  // namespace lumo::adhoccalculator
