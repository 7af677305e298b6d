#ifndef LUMO_ELIMINATION_EXTEND_H
#define LUMO_ELIMINATION_EXTEND_H

#include <cstddef>
#include <span>

#include "lumo/elimination/trail.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// Makes a model of the assertions from a model of the rest. Walks the trail from the newest step to the oldest,
/// and gives the free arguments of each application values that make it equal to the value of the step's constant.
/// Constants that the model does not define count as 0 or false.
///
/// Throws an `Exception` if the model belongs to another manager, if a step has a null pointer or a term of
/// another manager, or if a calculator refuses a step. With a trail of `eliminate`, the latter two do not occur.
/// The model then has the values of the newer steps.
void extend(TermManager& mgr, const Trail& trail, ModelStore& model);

/// The index of the first assertion that the values of constants do not make true, or their number if all are true.
/// Definitions of compound terms are ignored; `ModelStore::find_contradicted` finds those that are wrong.
///
/// Throws an `Exception` if the model belongs to another manager, or if an assertion is null, of another manager,
/// or not Boolean; assertions after the first violated one are not examined.
[[nodiscard]] std::size_t find_violated(TermManager& mgr, std::span<const Term* const> assertions,
                                        ModelStore& model);

}  // namespace lumo

#endif
