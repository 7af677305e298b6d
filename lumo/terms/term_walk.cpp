#include "lumo/terms/term_walk.h"

#include <algorithm>

#include "lumo/terms/term_table.h"

namespace lumo {

std::vector<const Term*> collect_terms(std::span<const Term* const> roots)
{
  TermTable<const Term*, 7> by_id;
  std::vector<const Term*> stack;
  std::size_t num_terms = 0;
  const auto meet = [&](const Term* t) {
    const Term*& entry = by_id[t->get_id()];
    if (entry != nullptr) return;
    entry = t;
    ++num_terms;
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
  // Arguments have smaller ids than the applications that contain them.
  std::vector<const Term*> terms;
  terms.reserve(num_terms);
  by_id.for_each_entry([&terms](const Term* t) {
    if (t != nullptr) terms.push_back(t);
  });
  return terms;
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
