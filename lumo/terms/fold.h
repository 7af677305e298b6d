#ifndef LUMO_TERMS_FOLD_H
#define LUMO_TERMS_FOLD_H

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// The value of s applied to values, with the operator's SMT-LIB 2 meaning, including division by
/// zero.
///
/// Values are numbers: a bit-vector of width w is its pattern in [0, 2^w - 1], false is 0 and true is 1. args
/// points to as many values as s takes, each within the range of its sort. The result is within the range of its
/// sort, too.
[[nodiscard]] QNumber fold(const OperatorSymbol& s, const QNumber* const* args);

/// The number of a value as `fold` takes it, or null if the term is not a value. The number lives as long as the
/// term.
[[nodiscard]] const QNumber* find_value_number(const TermManager& mgr, const Term* t);
/// Whether t denotes a value: a numeral, true or false.
[[nodiscard]] bool is_value(const TermManager& mgr, const Term* t);
/// Stores the number of a value as `fold` takes it. If the term is not a value, returns false and leaves `out`
/// unchanged.
bool get_value_number(const TermManager& mgr, const Term* t, QNumber& out);
/// The term of the value that `fold` represents as the number, for the given sort.
[[nodiscard]] const Term* make_value(TermManager& mgr, const QNumber& number, const DataType* type);

}  // namespace lumo

#endif
