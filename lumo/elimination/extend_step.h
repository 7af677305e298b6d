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

/// Processes one step of `extend`: gives the free arguments of its application values. `defs` is empty before and
/// after it. Throws the exceptions of `extend`.
void extend_by(TermManager& mgr, const Step& step, ModelStore& model, ModelStore::DefinitionStack& defs);

}  // namespace lumo

#pragma GCC visibility pop

#endif
