#ifndef LUMO_TERMS_NUMERAL_TEXT_H
#define LUMO_TERMS_NUMERAL_TEXT_H

#include <string>

#include "lumo/numbers/qnumber.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// The SMT-LIB 2 literal of a bit pattern in [0, 2^width - 1]: hexadecimal if the width is a multiple of
/// four, otherwise binary; with leading zeros.
[[nodiscard]] std::string make_numeral_text(const QNumber& pattern, unsigned long width);

}  // namespace lumo

#pragma GCC visibility pop

#endif
