#include "lumo/smtlib/conjuncts.h"

#include <algorithm>

namespace lumo::smtlib {

namespace {

bool is_conjunction(const Term* t) { return t->get_symbol()->get_kind() == Kind::kAnd; }

/// Adds the conjuncts of one assertion.
void add_conjuncts(const Term* assertion, std::vector<bool>& is_apart, std::vector<const Term*>& conjuncts)
{
  std::vector<const Term*> waiting{assertion};
  while (!waiting.empty()) {
    const Term* t = waiting.back();
    waiting.pop_back();
    if (!is_conjunction(t)) {
      conjuncts.push_back(t);
    } else if (!is_apart[t->get_id()]) {
      is_apart[t->get_id()] = true;
      waiting.push_back(t->get_arg(1));
      waiting.push_back(t->get_arg(0));
    }
  }
}

}  // namespace

std::vector<const Term*> list_conjuncts(std::span<const Term* const> assertions)
{
  std::size_t num_ids = 0;
  for (const Term* assertion : assertions) {
    if (is_conjunction(assertion)) num_ids = std::max(num_ids, assertion->get_id() + 1);
  }
  std::vector<bool> is_apart(num_ids);
  std::vector<const Term*> conjuncts;
  for (const Term* assertion : assertions)
    add_conjuncts(assertion, is_apart, conjuncts);
  return conjuncts;
}

}  // namespace lumo::smtlib
