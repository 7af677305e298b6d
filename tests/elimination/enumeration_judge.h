#ifndef LUMO_TESTS_ELIMINATION_ENUMERATION_JUDGE_H
#define LUMO_TESTS_ELIMINATION_ENUMERATION_JUDGE_H

#include <string>
#include <vector>

#include "lumo/elimination/eliminate.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

using Terms = std::vector<const Term*>;

/// All constants that occur in the terms, in the order in which they were made.
[[nodiscard]] Terms collect_constants(const TermManager& mgr, const Terms& terms);

[[nodiscard]] Terms join(const Terms& first, const Terms& second);

/// The number of assignments to the constants.
[[nodiscard]] unsigned long count_assignments(const Terms& constants);
/// A model that gives the constants the bits of a number, the first constant the lowest ones.
[[nodiscard]] ModelStore make_model(TermManager& mgr, const Terms& constants, unsigned long bits);
/// The values of the constants, for a message.
[[nodiscard]] std::string describe(ModelStore& model, const Terms& constants);
/// Whether the model makes all terms true.
[[nodiscard]] bool holds(TermManager& mgr, const Terms& terms, ModelStore& model);

/// Tries every assignment to small assertions and their rest. Returns an empty text if the elimination is correct,
/// and otherwise the violated property:
///
/// - under every assignment to the constants of the assertions, with the values of their definitions for fresh
///   constants, the rest and the facts hold if and only if the assertions do;
/// - under the same assignments, each kept term has the value of its form;
/// - every model of the rest, with any values for the constants of the forms, is extended to one of the assertions,
///   in which each kept term has the value that its form had before.
[[nodiscard]] std::string judge_by_enumeration(TermManager& mgr, const Terms& assertions,
                                               const Elimination& elimination, const Terms& kept = {});

}  // namespace lumo::test

#endif
