#ifndef LUMO_SMTLIB_CONJUNCTS_H
#define LUMO_SMTLIB_CONJUNCTS_H

#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// The conjuncts of some assertions, from left to right; none of them is a conjunction. A conjunction that occurs
/// several times is split once.
[[nodiscard]] std::vector<const Term*> list_conjuncts(std::span<const Term* const> assertions);

}  // namespace lumo::smtlib

#endif
