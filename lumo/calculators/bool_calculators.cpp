// The calculators of the Boolean operators and of if-then-else.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"

namespace lumo::adhoccalculator {

namespace {

/// Whether s is true or false; anything else counts as free.
bool is_truth_value(const TermManager* mgr, const Symbol* s)
{
  return s == mgr->get_true_symbol() || s == mgr->get_false_symbol();
}

bool is_true(const TermManager* mgr, const Term* t) { return t->get_symbol() == mgr->get_true_symbol(); }

const Term* make_truth_value(TermManager* mgr, bool b) { return b ? mgr->make_true() : mgr->make_false(); }

/// Both arguments take the value: and(v, v) = or(v, v) = v.
void solve_and_or(TermManager* mgr, const Term* t, const Term* value, ModelStore::DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (is_truth_value(mgr, a->get_symbol()) || is_truth_value(mgr, b->get_symbol())) {
    throw AdHocCalculator::error("This atom is not unconstrained!");
  }

  const Term* v = make_truth_value(mgr, want);

  push_definition(defs, a, v);
  push_definition(defs, b, v);
}

}  // namespace

void NotAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                    ModelStore::DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* x = t->get_arg(0);

  if (is_truth_value(mgr, x->get_symbol())) throw error("Term is not free!\n");

  push_definition(defs, x, make_truth_value(mgr, !want));
}

void AndAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                    ModelStore::DefinitionStack& defs)
{
  solve_and_or(mgr, t, value, defs);
}

void OrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                   ModelStore::DefinitionStack& defs)
{
  solve_and_or(mgr, t, value, defs);
}

void IffAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                    ModelStore::DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const bool a_is_free = !is_truth_value(mgr, a->get_symbol());
  const bool b_is_free = !is_truth_value(mgr, b->get_symbol());

  if (!a_is_free && !b_is_free) throw error("This Term is not unconstraint!");

  if (!b_is_free) {
    push_definition(defs, a, make_truth_value(mgr, is_true(mgr, b) == want));
    return;
  }
  if (!a_is_free) {
    push_definition(defs, b, make_truth_value(mgr, is_true(mgr, a) == want));
    return;
  }
  push_definition(defs, a, mgr->make_true());
  push_definition(defs, b, make_truth_value(mgr, want));
}

void IteAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                    ModelStore::DefinitionStack& defs)
{
  const Term* c = t->get_arg(0);
  const Term* th = t->get_arg(1);
  const Term* el = t->get_arg(2);
  const bool c_is_free = !is_truth_value(mgr, c->get_symbol());
  const bool th_is_number = mgr->is_number(th->get_symbol(), nullptr);
  const bool el_is_number = mgr->is_number(el->get_symbol(), nullptr);

  // A fixed condition does not excuse a numeral in the branch that it leaves out: the refusal is intended.
  const bool is_refused = c_is_free ? th_is_number && el_is_number : th_is_number || el_is_number;
  if (is_refused) throw error("We cannot find a value for this atom!");

  if (c_is_free) push_definition(defs, c, make_truth_value(mgr, !th_is_number));
  if (!th_is_number) push_definition(defs, th, value);
  if (!el_is_number) push_definition(defs, el, value);
}

}  // namespace lumo::adhoccalculator
