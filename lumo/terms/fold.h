#ifndef LUMO_TERMS_FOLD_H
#define LUMO_TERMS_FOLD_H

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// The value of s applied to values, with the meaning that SMT-LIB 2 gives to the operator, division by zero
/// included.
///
/// Values are numbers: a bit-vector of width w is its pattern in [0, 2^w - 1], false is 0 and true is 1. args
/// points to as many of them as s takes, each within the range of its sort; so is the result.
[[nodiscard]] QNumber fold(const OperatorSymbol& s, const QNumber* const* args);

/// The number of a value as `fold` takes it, or null if the term is not a value. It lives as long as the term.
[[nodiscard]] const QNumber* find_value_number(const TermManager& mgr, const Term* t);
/// Whether t denotes a value: a numeral, true or false.
[[nodiscard]] bool is_value(const TermManager& mgr, const Term* t);
/// Stores the number of a value as `fold` takes it. If the term is not a value, returns false and leaves `out`
/// unchanged.
bool get_value_number(const TermManager& mgr, const Term* t, QNumber& out);
/// The value of the given sort that `fold` would return as the number.
[[nodiscard]] const Term* make_value(TermManager& mgr, const QNumber& number, const DataType* type);

}  // namespace lumo

#endif
