#ifndef LUMO_SMTLIB_CONJUNCTS_H
#define LUMO_SMTLIB_CONJUNCTS_H

#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// The terms whose conjunction is that of some assertions, none of them a conjunction, from left to right. A
/// conjunction that occurs several times among them is taken apart once.
[[nodiscard]] std::vector<const Term*> list_conjuncts(std::span<const Term* const> assertions);

}  // namespace lumo::smtlib

#endif
