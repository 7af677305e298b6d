// The calculators of the Boolean operators and of if-then-else.

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/helpers.h"

namespace lumo::adhoccalculator {

namespace {

/// Whether a term is true or false; anything else counts as free.
bool is_truth_value(TermManager* mgr, const Term* t)
{
  return t->get_symbol() == mgr->get_true_symbol() || t->get_symbol() == mgr->get_false_symbol();
}

bool is_true(TermManager* mgr, const Term* t) { return t->get_symbol() == mgr->get_true_symbol(); }

const Term* make_truth_value(TermManager* mgr, bool b) { return b ? mgr->make_true() : mgr->make_false(); }

/// Both arguments take the value: and(v, v) = or(v, v) = v.
Refusal solve_and_or(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);

  if (is_truth_value(mgr, a) || is_truth_value(mgr, b)) return "This atom is not unconstrained!";

  const Term* v = make_truth_value(mgr, want);

  push_definition(defs, a, v);
  push_definition(defs, b, v);
  return {};
}

}  // namespace

Refusal NotAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                          DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* x = t->get_arg(0);

  if (is_truth_value(mgr, x)) return "Term is not free!\n";

  push_definition(defs, x, make_truth_value(mgr, !want));
  return {};
}

Refusal AndAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                          DefinitionStack& defs)
{
  return solve_and_or(mgr, t, value, defs);
}

Refusal OrAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                         DefinitionStack& defs)
{
  return solve_and_or(mgr, t, value, defs);
}

Refusal IffAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                          DefinitionStack& defs)
{
  const bool want = is_true(mgr, value);
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const bool a_is_free = !is_truth_value(mgr, a);
  const bool b_is_free = !is_truth_value(mgr, b);

  if (!a_is_free && !b_is_free) return "This Term is not unconstraint!";

  if (!b_is_free) {
    push_definition(defs, a, make_truth_value(mgr, is_true(mgr, b) == want));
    return {};
  }
  if (!a_is_free) {
    push_definition(defs, b, make_truth_value(mgr, is_true(mgr, a) == want));
    return {};
  }
  push_definition(defs, a, mgr->make_true());
  push_definition(defs, b, make_truth_value(mgr, want));
  return {};
}

Refusal IteAdHocCalculator::try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                          DefinitionStack& defs)
{
  const Term* c = t->get_arg(0);
  const Term* th = t->get_arg(1);
  const Term* el = t->get_arg(2);

  // False is tested before true here, unlike in the other Boolean calculators.
  if (c->get_symbol() == mgr->get_false_symbol() || c->get_symbol() == mgr->get_true_symbol()) {
    // A numeral is also refused in the branch that the condition does not select.
    if (is_numeral(mgr, th) || is_numeral(mgr, el)) return "We cannot find a value for this atom!";

    push_definition(defs, th, value);
    push_definition(defs, el, value);
    return {};
  }
  const bool th_is_number = is_numeral(mgr, th);
  const bool el_is_number = is_numeral(mgr, el);

  if (th_is_number && el_is_number) return "We cannot find a value for this atom!";

  push_definition(defs, c, make_truth_value(mgr, !th_is_number));
  if (!th_is_number) push_definition(defs, th, value);
  if (!el_is_number) push_definition(defs, el, value);
  return {};
}

}  // namespace lumo::adhoccalculator
