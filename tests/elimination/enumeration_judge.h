#ifndef LUMO_TESTS_ELIMINATION_ENUMERATION_JUDGE_H
#define LUMO_TESTS_ELIMINATION_ENUMERATION_JUDGE_H

#include <string>
#include <vector>

#include "lumo/elimination/eliminate.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

namespace lumo::test {

using Terms = std::vector<const Term*>;

/// All constants that occur in the terms, in the order of their making.
[[nodiscard]] Terms collect_constants(const TermManager& mgr, const Terms& terms);

[[nodiscard]] Terms join(const Terms& first, const Terms& second);

/// How many assignments to the constants there are.
[[nodiscard]] unsigned long count_assignments(const Terms& constants);
/// A model that gives the constants the bits of a number, the first constant the lowest ones.
[[nodiscard]] ModelStore make_model(TermManager& mgr, const Terms& constants, unsigned long bits);
/// The values of the constants, for a message.
[[nodiscard]] std::string describe(ModelStore& model, const Terms& constants);
/// Whether the model makes all terms true.
[[nodiscard]] bool holds(TermManager& mgr, const Terms& terms, ModelStore& model);

/// Tries every assignment to small assertions and their rest; empty if the elimination is right, else what is
/// wrong with it:
///
/// - under every assignment to the constants of the assertions, with fresh constants as their definitions say,
///   the rest and the facts hold if and only if the assertions do;
/// - under the same assignments, each kept term has the value of its form;
/// - every model of the rest, with any values for the constants of the forms, is extended to one of the assertions,
///   in which each kept term has the value that its form had before.
[[nodiscard]] std::string judge_by_enumeration(TermManager& mgr, const Terms& assertions,
                                               const Elimination& elimination, const Terms& kept = {});

}  // namespace lumo::test

#endif
