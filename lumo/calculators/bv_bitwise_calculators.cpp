// The calculators of bitwise operators and rotations.

#include <vector>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

void BVNotAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (mgr->is_number(x->get_symbol(), nullptr)) throw error("Term was not free!");

  const unsigned long w = read_width(mgr, value);
  const std::vector<const Term*> args{value};
  const Term* inverse = termsimpl::BVNotSimpl()(mgr, mgr->make_bv_not_symbol(w), args);

  push_definition(defs, x, inverse);
}

void BVNegAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (mgr->is_number(x->get_symbol(), nullptr)) throw error("Is not free!");

  const unsigned long w = read_width(mgr, value);
  const std::vector<const Term*> args{value};
  const Term* inverse = termsimpl::BVNegSimpl()(mgr, mgr->make_bv_neg_symbol(w), args);

  push_definition(defs, x, inverse);
}

void BVRolAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const Term* x = t->get_arg(0);

  if (mgr->is_number(x->get_symbol(), nullptr)) throw error("Is not free!");

  unsigned long k = 0;
  unsigned long w = 0;
  mgr->is_bv_rotate_left(t->get_symbol(), &k, &w);
  const std::vector<const Term*> args{value};
  const Term* inverse = termsimpl::BVRorSimpl()(mgr, mgr->make_bv_rotate_right_symbol(k, w), args);

  push_definition(defs, x, inverse);
}

void BVRorAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  unsigned long k = 0;
  unsigned long w = 0;
  mgr->is_bv_rotate_right(t->get_symbol(), &k, &w);
  const Term* x = t->get_arg(0);

  if (mgr->is_number(x->get_symbol(), nullptr)) throw error("Is not free!");

  const std::vector<const Term*> args{value};
  const Term* inverse = termsimpl::BVRolSimpl()(mgr, mgr->make_bv_rotate_left_symbol(k, w), args);

  push_definition(defs, x, inverse);
}

void BVAndAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      ModelStore::DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);
  const unsigned long w = read_width(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (mgr->is_number(a->get_symbol(), nullptr) || mgr->is_number(b->get_symbol(), nullptr)) {
    throw error("This atom is not unconstraint!");
  }

  const Term* n = mgr->make_bv_number(v, w);

  push_definition(defs, a, n);
  push_definition(defs, b, n);
}

void BVOrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                     ModelStore::DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);
  const unsigned long w = read_width(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (mgr->is_number(a->get_symbol(), nullptr) || mgr->is_number(b->get_symbol(), nullptr)) {
    throw error("This atom is not unconstrained!");
  }

  const Term* n = mgr->make_bv_number(v, w);
  find_free_constant(mgr, a, b);

  push_definition(defs, a, n);
  push_definition(defs, b, mgr->make_bv_number(QNumber(0), w));
}

void BVXorAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
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
  const Term* x = b_is_number ? a : b;
  const Term* n = b_is_number ? b : a;
  const std::vector<const Term*> args{value, n};
  push_definition(defs, x, termsimpl::BVXorSimpl()(mgr, mgr->make_bv_xor_symbol(w), args));
}

}  // namespace lumo::adhoccalculator
