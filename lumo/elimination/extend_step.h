#ifndef LUMO_ELIMINATION_EXTEND_STEP_H
#define LUMO_ELIMINATION_EXTEND_STEP_H

#include "lumo/elimination/trail.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Refuses a model of another manager with an `Exception`.
void check_manager(const TermManager& mgr, const ModelStore& model);

/// Takes one step back: gives the free arguments of its application values. `defs` is empty before and after it. What
/// is thrown is said at `extend`.
void extend_by(TermManager& mgr, const Step& step, ModelStore& model, ModelStore::DefinitionStack& defs);

}  // namespace lumo

#pragma GCC visibility pop

#endif
