#ifndef LUMO_SMTLIB_LITERALS_H
#define LUMO_SMTLIB_LITERALS_H

#include <string_view>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// The bit-vector of width w whose value is written with these digits, of base 2, 10 or 16; GMP reads them
/// in less than quadratic time. Higher bits than the width has fall away.
[[nodiscard]] const Term* make_numeral(TermManager& mgr, std::string_view digits, int base, unsigned long w);

}  // namespace lumo::smtlib

#endif
