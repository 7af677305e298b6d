#ifndef LUMO_TESTS_SMTLIB_RANDOM_TRAIL_H
#define LUMO_TESTS_SMTLIB_RANDOM_TRAIL_H

#include <cstddef>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/terms/term_manager.h"
#include "tests/support/random.h"

namespace lumo::test {

/// A trail, and all its constants that come from a script.
struct RandomTrail
{
  std::vector<const Term*> constants;
  Trail trail;
};

/// Draws a trail over all operators whose steps share terms with themselves and with others, contain constants of
/// earlier and of later steps, and have constants with names of all kinds. It only has the form of a trail: no
/// elimination would make it.
[[nodiscard]] RandomTrail make_random_trail(TermManager& mgr, Random& random, std::size_t max_steps);

}  // namespace lumo::test

#endif
