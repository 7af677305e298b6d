// The calculators of the unsigned and signed order predicates.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"

namespace lumo::adhoccalculator {

namespace {

void push_number(TermManager* mgr, ModelStore::DefinitionStack& defs, const Term* x, const QNumber& number,
                 unsigned long w)
{
  push_definition(defs, x, mgr->make_bv_number(number, w));
}

// The neighbours of a pattern c in either order; the extreme pattern of the order has none. The neighbour of
// -1 or of 0 in signed order leaves the range of patterns, and the numeral's reduction to the width brings it
// back.

void push_above(TermManager* mgr, ModelStore::DefinitionStack& defs, const Term* x, const QNumber& c,
                unsigned long w)
{
  if (c == minus_one(BVNumber::pow2(w)))
    throw AdHocCalculator::error("We cannot find a value for this atom!");
  push_number(mgr, defs, x, plus_one(c), w);
}

void push_below(TermManager* mgr, ModelStore::DefinitionStack& defs, const Term* x, const QNumber& c,
                unsigned long w)
{
  if (c.sign() == 0) throw AdHocCalculator::error("We cannot find a value for this atom!");
  push_number(mgr, defs, x, minus_one(c), w);
}

/// The pattern 2^(w-1) of the least number in signed order. An application of another operator comes with
/// the width 0, which has none: the term layer refuses it.
QNumber get_least_signed(TermManager* mgr, unsigned long w)
{
  mgr->make_bv_type(w);
  return BVNumber::pow2(w - 1);
}

void push_above_signed(TermManager* mgr, ModelStore::DefinitionStack& defs, const Term* x, const QNumber& c,
                       unsigned long w)
{
  if (c == minus_one(get_least_signed(mgr, w)))
    throw AdHocCalculator::error("We cannot find a value for this atom!");
  push_number(mgr, defs, x, plus_one(c), w);
}

void push_below_signed(TermManager* mgr, ModelStore::DefinitionStack& defs, const Term* x, const QNumber& c,
                       unsigned long w)
{
  if (c == get_least_signed(mgr, w)) throw AdHocCalculator::error("We cannot find a value for this atom!");
  push_number(mgr, defs, x, minus_one(c), w);
}

}  // namespace

void BVUltAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_ult(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  QNumber a_number;
  const bool a_is_number = mgr->is_number(a->get_symbol(), &a_number);
  QNumber b_number;
  const bool b_is_number = mgr->is_number(b->get_symbol(), &b_number);

  if (a_is_number && b_is_number) throw error("term was not free");

  if (a_is_number) {
    if (want) {
      push_above(mgr, defs, b, a_number, w);
    } else {
      push_number(mgr, defs, b, a_number, w);
    }
    return;
  }
  if (b_is_number) {
    if (want) {
      push_below(mgr, defs, a, b_number, w);
    } else {
      push_number(mgr, defs, a, b_number, w);
    }
    return;
  }
  push_definition(defs, a, mgr->make_bv_number(0, w));
  push_definition(defs, b, mgr->make_bv_number(want ? 1 : 0, w));
}

void BVUleAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_ule(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  QNumber a_number;
  const bool a_is_number = mgr->is_number(a->get_symbol(), &a_number);
  QNumber b_number;
  const bool b_is_number = mgr->is_number(b->get_symbol(), &b_number);

  if (a_is_number && b_is_number) throw error("We cannot find a value for this atom!");

  if (a_is_number) {
    if (want) {
      push_number(mgr, defs, b, a_number, w);
    } else {
      push_below(mgr, defs, b, a_number, w);
    }
    return;
  }
  if (b_is_number) {
    if (want) {
      push_number(mgr, defs, a, b_number, w);
    } else {
      push_above(mgr, defs, a, b_number, w);
    }
    return;
  }
  push_definition(defs, a, mgr->make_bv_number(want ? 0 : 1, w));
  push_definition(defs, b, mgr->make_bv_number(0, w));
}

void BVSltAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_slt(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  QNumber a_number;
  const bool a_is_number = mgr->is_number(a->get_symbol(), &a_number);
  QNumber b_number;
  const bool b_is_number = mgr->is_number(b->get_symbol(), &b_number);

  if (a_is_number && b_is_number) throw error("should have been handled at the normalization step");

  if (a_is_number) {
    if (want) {
      push_above_signed(mgr, defs, b, a_number, w);
    } else {
      push_number(mgr, defs, b, a_number, w);
    }
    return;
  }
  if (b_is_number) {
    if (want) {
      push_below_signed(mgr, defs, a, b_number, w);
    } else {
      push_number(mgr, defs, a, b_number, w);
    }
    return;
  }
  // In width 1 the pattern 1 is -1, the lesser of the two.
  const bool one_is_less = w == 1;
  push_definition(defs, a, mgr->make_bv_number(want && one_is_less ? 1 : 0, w));
  push_definition(defs, b, mgr->make_bv_number(want && !one_is_less ? 1 : 0, w));
}

void BVSleAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();
  unsigned long w = 0;
  mgr->is_bv_sle(t->get_symbol(), &w);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  QNumber a_number;
  const bool a_is_number = mgr->is_number(a->get_symbol(), &a_number);
  QNumber b_number;
  const bool b_is_number = mgr->is_number(b->get_symbol(), &b_number);

  if (a_is_number && b_is_number) throw error("should have been handled at the normalization step");

  if (a_is_number) {
    if (want) {
      push_number(mgr, defs, b, a_number, w);
    } else {
      push_below_signed(mgr, defs, b, a_number, w);
    }
    return;
  }
  if (b_is_number) {
    if (want) {
      push_number(mgr, defs, a, b_number, w);
    } else {
      push_above_signed(mgr, defs, a, b_number, w);
    }
    return;
  }
  // In width 1 the pattern 1 is -1, the lesser of the two.
  const bool one_is_less = w == 1;
  push_definition(defs, a, mgr->make_bv_number(!want && !one_is_less ? 1 : 0, w));
  push_definition(defs, b, mgr->make_bv_number(!want && one_is_less ? 1 : 0, w));
}

}  // namespace lumo::adhoccalculator
