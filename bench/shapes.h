#ifndef LUMO_BENCH_SHAPES_H
#define LUMO_BENCH_SHAPES_H

#include <array>
#include <cstddef>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::bench {

struct Formula
{
  std::vector<const Term*> constants;  ///< in the order in which they were made
  std::vector<const Term*> assertions;
};

/// Asserted terms of about n applications whose graph has a shape that is hard for some method of
/// eliminating; all of them can be eliminated as a whole, and all have a model.
struct Shape
{
  const char* name;
  Formula (*make)(TermManager& mgr, std::size_t n);
};

/// One chain of applications of several operators, with a constant each: layer upon layer becomes free.
[[nodiscard]] Formula make_deep(TermManager& mgr, std::size_t n);
/// One conjunction of equations, each with a constant of its own.
[[nodiscard]] Formula make_wide(TermManager& mgr, std::size_t n);
/// Assertions f_i = f_(i+1) + x_i: each becomes true through x_i, and then f_(i+1) is free in the next one.
[[nodiscard]] Formula make_link(TermManager& mgr, std::size_t n);
/// One constant under layers of complement and multiplication by 5.
[[nodiscard]] Formula make_spine(TermManager& mgr, std::size_t n);
/// Every layer contains the one below twice, so the tree of the graph is exponential in n.
[[nodiscard]] Formula make_shared(TermManager& mgr, std::size_t n);

inline constexpr std::array<Shape, 5> kShapes = {{
    {"deep", make_deep},
    {"wide", make_wide},
    {"link", make_link},
    {"spine", make_spine},
    {"shared", make_shared},
}};

/// The number of distinct applications in the assertions.
[[nodiscard]] std::size_t count_applications(const Formula& formula);

}  // namespace lumo::bench

#endif
