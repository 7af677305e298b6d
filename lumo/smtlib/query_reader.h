#ifndef LUMO_SMTLIB_QUERY_READER_H
#define LUMO_SMTLIB_QUERY_READER_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads what one query of a text is about, a text with any number of levels and queries: the constants that are declared
/// at the query, and what is asserted there, its assumptions last. Queries count from 1; without a number it is the last
/// one. The manager should be new. What comes after the query is not read.
///
/// An InputError if the text is wrong up to the query, or if a constant at the query had another sort on a level that was
/// popped before; an `Exception` if the text makes fewer queries, or none.
[[nodiscard]] Script read_query(TermManager& mgr, std::string_view text, std::optional<std::size_t> number);

}  // namespace lumo::smtlib

#endif
