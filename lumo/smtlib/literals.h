#ifndef LUMO_SMTLIB_LITERALS_H
#define LUMO_SMTLIB_LITERALS_H

#include <string_view>

#include "lumo/smtlib/lexer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// The bit-vector of width w whose value is written with these digits, of base 2, 10 or 16, in linear time for
/// the bases 2 and 16 and in less than quadratic time for 10. Bits above the width are dropped.
[[nodiscard]] const Term* make_numeral(TermManager& mgr, std::string_view digits, int base, unsigned long w);

/// The bit-vector that a hexadecimal or binary token denotes: its width follows from the number of digits. An
/// `Exception` if the width is too large.
[[nodiscard]] const Term* make_literal(TermManager& mgr, const Token& token);

/// Whether the symbol is `bv` with decimal digits after it, as in `(_ bv13 32)`.
[[nodiscard]] bool is_decimal_literal_name(std::string_view symbol);
/// The bit-vector `(_ bvN w)` of that symbol and width; null if the value does not fit w bits.
[[nodiscard]] const Term* make_decimal_literal(TermManager& mgr, std::string_view symbol, unsigned long w);

}  // namespace lumo::smtlib

#endif
