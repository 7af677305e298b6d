#ifndef LUMO_ELIMINATION_EXTEND_H
#define LUMO_ELIMINATION_EXTEND_H

#include <cstddef>
#include <span>

#include "lumo/elimination/trail.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// Makes a model of the assertions from a model of what remained of them: walks the trail from the newest step
/// to the oldest and gives the free arguments of each application values that make it what the model says.
/// Constants that the model does not mention count as 0 or false. What a calculator refuses is an `Exception`,
/// which no trail of `eliminate` brings about.
void extend(TermManager& mgr, const Trail& trail, ModelStore& model);

/// The place of the first assertion that is not true under the model, or their number if all are.
[[nodiscard]] std::size_t find_violated(TermManager& mgr, std::span<const Term* const> assertions,
                                        ModelStore& model);

}  // namespace lumo

#endif
