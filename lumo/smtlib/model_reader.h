#ifndef LUMO_SMTLIB_MODEL_READER_H
#define LUMO_SMTLIB_MODEL_READER_H

#include <span>
#include <string_view>
#include <vector>

#include "lumo/model/model_value.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads a solver's output for `(get-model)`: definitions `(define-fun x () S v)` in a list, with or without the
/// word `model` at its head, or without a list; `sat` and `success` may precede them. A value is a literal, `(_ bvN
/// w)`, true or false.
///
/// Values are returned in the text's order. The text may leave constants out. Definitions of other symbols, and
/// declarations, are skipped. Any other text is an InputError: another answer, an error that the solver reports, a
/// second definition of a constant, a value of another sort.
[[nodiscard]] std::vector<ModelValue> read_model(TermManager& mgr, std::span<const Term* const> constants,
                                                 std::string_view text);

}  // namespace lumo::smtlib

#endif
