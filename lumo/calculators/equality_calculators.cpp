// The calculators of equality, with a Boolean and with a one-bit result.

#include <vector>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"
#include "lumo/terms/termsimpl.h"

namespace lumo::adhoccalculator {

namespace {

/// n + 1, which differs from the numeral n at every width
const Term* make_successor(TermManager* mgr, const Term* n, unsigned long w)
{
  const std::vector<const Term*> args{n, mgr->make_bv_number(1, w)};
  return termsimpl::BVAddSimpl()(mgr, mgr->make_bv_add_symbol(w), args);
}

/// Makes t's two arguments equal, or different.
void solve_equality(TermManager* mgr, const Term* t, bool equal, ModelStore::DefinitionStack& defs)
{
  auto [a, b, a_is_number, b_is_number] = read_operands(mgr, t);
  const unsigned long w = read_width(mgr, a);

  if (a_is_number && b_is_number) throw AdHocCalculator::error("term was not free");

  if (!a_is_number && !b_is_number) {
    find_free_constant(mgr, a, b);
    push_definition(defs, a, mgr->make_bv_number(QNumber(equal ? 0 : 1), w));
    push_definition(defs, b, mgr->make_bv_number(QNumber(0), w));
    return;
  }
  const Term* x = b_is_number ? a : b;
  const Term* n = b_is_number ? b : a;
  push_definition(defs, x, equal ? n : make_successor(mgr, n, w));
}

}  // namespace

void EqAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                   ModelStore::DefinitionStack& defs)
{
  const bool want = value->get_symbol() == mgr->get_true_symbol();

  solve_equality(mgr, t, want, defs);
}

void BVCompAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       ModelStore::DefinitionStack& defs)
{
  const QNumber& v = read_number(mgr, value);

  const bool one = v == QNumber(1);
  // The temporary number is also destroyed for exceptions, in branches that no test takes.
  if (!one && v != QNumber(0)) {  // GCOVR_EXCL_BR_LINE
    throw error("unexpected value from comp");
  }

  solve_equality(mgr, t, one, defs);
}

}  // namespace lumo::adhoccalculator
