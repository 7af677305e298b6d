#include "lumo/terms/term_walk.h"

#include <algorithm>

namespace lumo {

std::vector<const Term*> collect_terms(std::span<const Term* const> roots)
{
  std::size_t num_ids = 0;
  for (const Term* root : roots)
    num_ids = std::max(num_ids, root->get_id() + 1);

  // Arguments have smaller ids than what they are in, so a list by id is in order, too.
  std::vector<const Term*> by_id(num_ids);
  std::vector<const Term*> stack;
  const auto meet = [&](const Term* t) {
    if (by_id[t->get_id()] != nullptr) return;
    by_id[t->get_id()] = t;
    stack.push_back(t);
  };
  for (const Term* root : roots)
    meet(root);
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      meet(t->get_arg(i));
  }
  std::erase(by_id, nullptr);
  return by_id;
}

std::vector<const Term*> collect_constants(std::span<const Term* const> roots)
{
  std::vector<const Term*> terms = collect_terms(roots);
  std::erase_if(terms, [](const Term* t) { return t->get_symbol()->get_kind() != Kind::kConstant; });
  return terms;
}

GraphSize measure_graph(std::span<const Term* const> assertions)
{
  GraphSize size;
  size.assertions = assertions.size();
  for (const Term* t : collect_terms(assertions)) {
    const Kind kind = t->get_symbol()->get_kind();
    ++size.terms;
    if (is_operator(kind)) ++size.applications;
    if (kind == Kind::kConstant) ++size.constants;
  }
  return size;
}

}  // namespace lumo
