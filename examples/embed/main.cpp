// A solver eliminated 3 * y, and its model gives that product a value. This program finds y.

#include <iostream>

#include "lumo/calculators/calculator_table.h"

namespace {

using lumo::ModelStore;
using lumo::Term;
using lumo::TermManager;

/// Prints the value of t's free argument y that makes t equal to the value, or the reason why there is none.
void solve(TermManager& mgr, const Term* t, const Term* value, const Term* y)
{
  std::cout << "3 * y = " << value->get_symbol()->get_name() << ": ";
  try {
    ModelStore::DefinitionStack definitions;
    lumo::find_calculator(mgr, t->get_symbol())->operator()(&mgr, t, value, definitions);

    ModelStore model(&mgr);
    model.replay(definitions);
    std::cout << "y = " << model.get_value(y)->get_symbol()->get_name() << ", and 3 * y is then "
              << model.get_value(t)->get_symbol()->get_name() << '\n';
  } catch (const lumo::adhoccalculator::AdHocCalculator::error& refusal) {
    std::cout << refusal.what() << '\n';
  }
}

}  // namespace

int main()
{
  TermManager mgr;
  const Term* y = mgr.make_constant("y", mgr.make_bv_type(8));
  const Term* product = mgr.make_term(mgr.make_bv_mul_symbol(8), {mgr.make_bv_number(3, 8), y});
  solve(mgr, product, mgr.make_bv_number(100, 8), y);
}
