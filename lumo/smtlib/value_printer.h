#ifndef LUMO_SMTLIB_VALUE_PRINTER_H
#define LUMO_SMTLIB_VALUE_PRINTER_H

#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// A text and a value: a numeral, true or false.
struct TextValue
{
  std::string_view text;
  const Term* value;
};

/// Prints the answer to `get-value`: pairs of a term as it was written and its value.
void print_values(std::ostream& out, std::span<const TextValue> values);
/// Prints the answer to `get-model`: definitions of constants that have these names. A name that SMT-LIB 2 cannot spell
/// is an `Exception`, and nothing is printed. Other entries of the model come first, as they are.
void print_named_model(std::ostream& out, std::span<const TextValue> values,
                       std::span<const std::string> definitions = {});

}  // namespace lumo::smtlib

#endif
