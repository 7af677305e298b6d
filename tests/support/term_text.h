#ifndef LUMO_TESTS_SUPPORT_TERM_TEXT_H
#define LUMO_TESTS_SUPPORT_TERM_TEXT_H

#include <string>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// A small term as SMT-LIB 2 text, without sharing.
[[nodiscard]] std::string make_term_text(const Term* t);

}  // namespace lumo::test

#endif
