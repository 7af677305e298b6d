#ifndef LUMO_COMMANDS_DOT_PRINTER_H
#define LUMO_COMMANDS_DOT_PRINTER_H

#include <iosfwd>
#include <span>

#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// Prints the graph of some assertions for Graphviz: one node for each distinct term, edges to its arguments from
/// left to right, and a node for each assertion. Time and memory are linear in the graph.
///
/// Marked terms are filled; those that are not in the graph are ignored.
void print_dot(std::ostream& out, std::span<const Term* const> assertions,
               std::span<const Term* const> marked);

}  // namespace lumo::commands

#endif
