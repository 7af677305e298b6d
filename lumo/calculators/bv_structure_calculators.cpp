// The calculators of operators that move bits: concatenation, extraction, extensions, shifts.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

namespace {

/// Both extensions: 0 and 1 have the same pattern at every width; every other value is refused.
Refusal solve_extension(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);
  const Term* x = t->get_arg(0);
  const unsigned long w = read_width(mgr, x);

  // The temporary number is also destroyed if an exception is thrown, in branches that no test takes.
  if (v.sign() != 0 && v != QNumber(1)) return "not free!";  // GCOVR_EXCL_BR_LINE

  push_definition(defs, x, mgr->make_bv_number(v, w));
  return {};
}

/// Both logical shifts: a shift by zero changes nothing.
Refusal solve_logical_shift(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) return "should have been handled at the normalization step";
  if (a_is_number || b_is_number) return "Cannot find a value, should be free!";

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(0, w));
  return {};
}

}  // namespace

Refusal BVConcatAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                               DefinitionStack& defs)
{
  unsigned long hw = 0;
  unsigned long lw = 0;
  mgr->is_bv_concat(t->get_symbol(), &hw, &lw);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number != b_is_number) return "Cannot find a value, should be free!";
  if (a_is_number) return "should have been handled at the normalization step";
  const Selection selection = select_free_constant(mgr, a, b);
  if (selection.refusal) return selection.refusal;
  if (selection.swapped) return "Cannot find a value, should be free!";

  const unsigned long total = hw + lw;
  const auto args = make_arguments<termsimpl::BVSelectSimpl>(value);
  termsimpl::BVSelectSimpl select;
  const Term* high = select(mgr, mgr->make_bv_extract_symbol(total - 1, lw, total), args);
  const Term* low = select(mgr, mgr->make_bv_extract_symbol(lw - 1, 0, total), args);

  push_definition(defs, a, high);
  push_definition(defs, b, low);
  return {};
}

Refusal BVSelectAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                               DefinitionStack& defs)
{
  unsigned long msb = 0;
  unsigned long lsb = 0;
  unsigned long w = 0;
  mgr->is_bv_extract(t->get_symbol(), &msb, &lsb, &w);
  const Term* x = t->get_arg(0);

  if (is_numeral(mgr, x)) return "should have been handled at the normalization step";

  // Start with the value, add zeros below it, then zeros above both; r is cur bits wide.
  unsigned long cur = msb + 1 - lsb;
  const QNumber& v = read_number(mgr, value);
  const Term* r = mgr->make_bv_number(v, cur);
  if (lsb != 0) {
    const auto args = make_arguments<termsimpl::BVConcatSimpl>(r, mgr->make_bv_number(0, lsb));
    r = termsimpl::BVConcatSimpl()(mgr, mgr->make_bv_concat_symbol(cur, lsb), args);
    cur += lsb;
  }
  if (cur < w) {
    const auto args = make_arguments<termsimpl::BVZextSimpl>(r);
    r = termsimpl::BVZextSimpl()(mgr, mgr->make_bv_zero_extend_symbol(w - cur, cur), args);
  }

  push_definition(defs, x, r);
  return {};
}

Refusal BVZextAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                             DefinitionStack& defs)
{
  return solve_extension(mgr, t, value, defs);
}

Refusal BVSextAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                             DefinitionStack& defs)
{
  return solve_extension(mgr, t, value, defs);
}

Refusal BVLslAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  return solve_logical_shift(mgr, t, value, defs);
}

Refusal BVLsrAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  return solve_logical_shift(mgr, t, value, defs);
}

Refusal BVAsrAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number != b_is_number) return "Cannot find a value, should be free!";
  if (a_is_number) return "should have been handled at the normalization step";
  const Selection selection = select_free_constant(mgr, a, b);
  if (selection.refusal) return selection.refusal;
  if (selection.swapped) return "non-free term";

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(0, w));
  return {};
}

}  // namespace lumo::adhoccalculator
