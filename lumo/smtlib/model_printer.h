#ifndef LUMO_SMTLIB_MODEL_PRINTER_H
#define LUMO_SMTLIB_MODEL_PRINTER_H

#include <iosfwd>
#include <span>
#include <string>

#include "lumo/model/model_value.h"

namespace lumo::smtlib {

/// Prints a model in the form of SMT-LIB 2.6: a list of definitions, one line for each value in the given order. A name
/// that SMT-LIB 2 cannot spell is an `Exception`, and nothing is printed.
void print_model(std::ostream& out, std::span<const ModelValue> model);

/// The same, after other entries of the model, which are printed as they are.
void print_model(std::ostream& out, std::span<const ModelValue> model,
                 std::span<const std::string> definitions);

/// Prints one definition, `(define-fun x () (_ BitVec 8) #x07)`, on a line of its own.
void print_definition(std::ostream& out, const ModelValue& definition);

}  // namespace lumo::smtlib

#endif
