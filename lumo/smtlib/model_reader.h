#ifndef LUMO_SMTLIB_MODEL_READER_H
#define LUMO_SMTLIB_MODEL_READER_H

#include <span>
#include <string_view>
#include <vector>

#include "lumo/model/model_value.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads what a solver printed for `(get-model)`: definitions `(define-fun x () S v)` in a list, with or
/// without the word `model` at its head, or one after the other; `sat` and `success` may stand before. A value
/// is a literal, `(_ bvN w)`, true or false.
///
/// Values come in the text's order. Constants may be missing from the text; what it defines beside them, and
/// what it declares, is passed over, whatever it is. Any other text is an InputError: another answer, an
/// error that the solver reports, a second definition of a constant, a value of another sort.
[[nodiscard]] std::vector<ModelValue> read_model(TermManager& mgr, std::span<const Term* const> constants,
                                                 std::string_view text);

}  // namespace lumo::smtlib

#endif
