// The calculators of bit-vector arithmetic.

#include <vector>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

namespace {

/// lhs - rhs, a numeral if both are
const Term* make_difference(TermManager* mgr, unsigned long w, const Term* lhs, const Term* rhs)
{
  return termsimpl::BVSubSimpl()(mgr, mgr->make_bv_sub_symbol(w), std::vector<const Term*>{lhs, rhs});
}

/// lhs + rhs, a numeral if both are
const Term* make_sum(TermManager* mgr, unsigned long w, const Term* lhs, const Term* rhs)
{
  return termsimpl::BVAddSimpl()(mgr, mgr->make_bv_add_symbol(w), std::vector<const Term*>{lhs, rhs});
}

}  // namespace

void BVAddAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) throw error("should have been handled at the normalization step");

  if (!a_is_number && !b_is_number) {
    find_free_constant(mgr, a, b);
    push_definition(defs, a, mgr->make_bv_number(v, w));
    push_definition(defs, b, mgr->make_bv_number(0, w));
    return;
  }
  const Term* x = a_is_number ? b : a;
  const Term* c = a_is_number ? a : b;
  push_definition(defs, x, make_difference(mgr, w, value, c));
}

void BVSubAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) throw error("term was not free");

  if (!a_is_number && !b_is_number) {
    // After an exchange a is the subtrahend, and 0 - (2^w - v) is v again.
    const bool swapped = find_free_constant(mgr, a, b);
    push_definition(defs, a, mgr->make_bv_number(swapped ? BVNumber::pow2(w) - v : v, w));
    push_definition(defs, b, mgr->make_bv_number(0, w));
    return;
  }
  if (b_is_number) {
    push_definition(defs, a, make_sum(mgr, w, b, value));
  } else {
    push_definition(defs, b, make_difference(mgr, w, a, value));
  }
}

void BVMulAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  QNumber a_number;
  const bool a_is_number = mgr->is_number(a->get_symbol(), &a_number);
  QNumber b_number;
  const bool b_is_number = mgr->is_number(b->get_symbol(), &b_number);

  if (a_is_number && b_is_number) throw error("should have been handled at the normalization step");

  if (!a_is_number && !b_is_number) {
    find_free_constant(mgr, a, b);
    push_definition(defs, a, mgr->make_bv_number(v, w));
    push_definition(defs, b, mgr->make_bv_number(1, w));
    return;
  }
  const Term* x = a_is_number ? b : a;
  const QNumber& c = a_is_number ? a_number : b_number;

  if (!BVNumber::is_bit_set(c, 0)) throw error("We cannot find a value for this atom!");

  const QNumber m = BVNumber::pow2(w);
  QNumber p = calculate_modular_inverse(c, m);
  p *= v;
  QNumber quotient;
  p.divmod(m, quotient, p);

  push_definition(defs, x, mgr->make_bv_number(p, w));
}

void BVUdivAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       ModelStore::DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number != b_is_number) throw error("Cannot find a value, should be free!");
  if (a_is_number) throw error("should have been handled at the normalization step");
  const bool swapped = find_free_constant(mgr, a, b);
  if (swapped) throw error("Cannot find a value, should be free!");

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(1, w));
}

void BVSdivAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       ModelStore::DefinitionStack& defs)
{
  const unsigned long w = read_width(mgr, t);
  const QNumber& v = read_number(mgr, value);
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);

  if (a_is_number && b_is_number) throw error("should have been handled at the normalization step");
  if (a_is_number || b_is_number) throw error("Cannot find a value, should be free!");

  push_definition(defs, a, mgr->make_bv_number(v, w));
  push_definition(defs, b, mgr->make_bv_number(1, w));
}

void BVUremAdHocCalculator::operator()(TermManager* /*mgr*/, const Term* /*t*/, const Term* /*value*/,
                                       ModelStore::DefinitionStack& /*defs*/)
{
  throw error("Should not be called is never free!");
}

void BVSremAdHocCalculator::operator()(TermManager* /*mgr*/, const Term* /*t*/, const Term* /*value*/,
                                       ModelStore::DefinitionStack& /*defs*/)
{
  throw error("Should not be called is never free!");
}

}  // namespace lumo::adhoccalculator
