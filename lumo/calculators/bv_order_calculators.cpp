// The calculators of the unsigned and signed order predicates.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"

namespace lumo::adhoccalculator {

namespace {

/// Never refuses.
Refusal push_number(TermManager* mgr, DefinitionStack& defs, const Term* x, const QNumber& number,
                    unsigned long w)
{
  push_definition(defs, x, mgr->make_bv_number(number, w));
  return {};
}

// The neighbours of a pattern c in each order; the extreme pattern of the order has none. In signed order, the
// neighbour of -1 or of 0 leaves the range of patterns; making the numeral reduces it to the width.

Refusal push_above(TermManager* mgr, DefinitionStack& defs, const Term* x, const QNumber& c, unsigned long w)
{
  if (c == minus_one(BVNumber::pow2(w))) return "We cannot find a value for this atom!";
  return push_number(mgr, defs, x, plus_one(c), w);
}

Refusal push_below(TermManager* mgr, DefinitionStack& defs, const Term* x, const QNumber& c, unsigned long w)
{
  if (c.sign() == 0) return "We cannot find a value for this atom!";
  return push_number(mgr, defs, x, minus_one(c), w);
}

/// The pattern 2^(w-1) of the least number in signed order. The width 0 comes from an application of another
/// operator and has no such pattern. Then -1 differs from every pattern and its successors, and the term layer
/// refuses to make a numeral of that width.
QNumber get_least_signed(unsigned long w) { return w != 0 ? BVNumber::pow2(w - 1) : QNumber(-1); }

Refusal push_above_signed(TermManager* mgr, DefinitionStack& defs, const Term* x, const QNumber& c,
                          unsigned long w)
{
  if (c == minus_one(get_least_signed(w))) return "We cannot find a value for this atom!";
  return push_number(mgr, defs, x, plus_one(c), w);
}

Refusal push_below_signed(TermManager* mgr, DefinitionStack& defs, const Term* x, const QNumber& c,
                          unsigned long w)
{
  if (c == get_least_signed(w)) return "We cannot find a value for this atom!";
  return push_number(mgr, defs, x, minus_one(c), w);
}

}  // namespace

Refusal BVUltAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_ult(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const auto a_number = find_numeral(mgr, a);
  const auto b_number = find_numeral(mgr, b);

  if (a_number && b_number) return "term was not free";

  if (a_number)
    return want ? push_above(mgr, defs, b, *a_number, w) : push_number(mgr, defs, b, *a_number, w);
  if (b_number)
    return want ? push_below(mgr, defs, a, *b_number, w) : push_number(mgr, defs, a, *b_number, w);
  push_definition(defs, a, mgr->make_bv_number(0, w));
  push_definition(defs, b, mgr->make_bv_number(want ? 1 : 0, w));
  return {};
}

Refusal BVUleAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_ule(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const auto a_number = find_numeral(mgr, a);
  const auto b_number = find_numeral(mgr, b);

  if (a_number && b_number) return "We cannot find a value for this atom!";

  if (a_number)
    return want ? push_number(mgr, defs, b, *a_number, w) : push_below(mgr, defs, b, *a_number, w);
  if (b_number)
    return want ? push_number(mgr, defs, a, *b_number, w) : push_above(mgr, defs, a, *b_number, w);
  push_definition(defs, a, mgr->make_bv_number(want ? 0 : 1, w));
  push_definition(defs, b, mgr->make_bv_number(0, w));
  return {};
}

Refusal BVSltAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_slt(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const auto a_number = find_numeral(mgr, a);
  const auto b_number = find_numeral(mgr, b);

  if (a_number && b_number) return "should have been handled at the normalization step";

  if (a_number)
    return want ? push_above_signed(mgr, defs, b, *a_number, w) : push_number(mgr, defs, b, *a_number, w);
  if (b_number)
    return want ? push_below_signed(mgr, defs, a, *b_number, w) : push_number(mgr, defs, a, *b_number, w);
  // In width 1, the pattern 1 is -1, the lesser of the two.
  const bool one_is_less = w == 1;
  push_definition(defs, a, mgr->make_bv_number(want && one_is_less ? 1 : 0, w));
  push_definition(defs, b, mgr->make_bv_number(want && !one_is_less ? 1 : 0, w));
  return {};
}

Refusal BVSleAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                            DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_sle(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const auto a_number = find_numeral(mgr, a);
  const auto b_number = find_numeral(mgr, b);

  if (a_number && b_number) return "should have been handled at the normalization step";

  if (a_number)
    return want ? push_number(mgr, defs, b, *a_number, w) : push_below_signed(mgr, defs, b, *a_number, w);
  if (b_number)
    return want ? push_number(mgr, defs, a, *b_number, w) : push_above_signed(mgr, defs, a, *b_number, w);
  // In width 1, the pattern 1 is -1, the lesser of the two.
  const bool one_is_less = w == 1;
  push_definition(defs, a, mgr->make_bv_number(!want && !one_is_less ? 1 : 0, w));
  push_definition(defs, b, mgr->make_bv_number(!want && one_is_less ? 1 : 0, w));
  return {};
}

}  // namespace lumo::adhoccalculator
