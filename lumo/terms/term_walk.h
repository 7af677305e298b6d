#ifndef LUMO_TERMS_TERM_WALK_H
#define LUMO_TERMS_TERM_WALK_H

#include <cstddef>
#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo {

/// The roots and all their subterms, each distinct term once and after its arguments. The walk is iterative;
/// time and memory are linear in the number of distinct terms. Precondition: the roots are not null and have one
/// manager.
[[nodiscard]] std::vector<const Term*> collect_terms(std::span<const Term* const> roots);

/// The declared constants among them.
[[nodiscard]] std::vector<const Term*> collect_constants(std::span<const Term* const> roots);

/// The size of the graph of some assertions; each distinct term counts once.
struct GraphSize
{
  std::size_t assertions = 0;
  std::size_t terms = 0;
  std::size_t applications = 0;
  std::size_t constants = 0;
};

[[nodiscard]] GraphSize measure_graph(std::span<const Term* const> assertions);

}  // namespace lumo

#endif
