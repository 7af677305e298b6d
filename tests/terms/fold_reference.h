#ifndef LUMO_TESTS_TERMS_FOLD_REFERENCE_H
#define LUMO_TESTS_TERMS_FOLD_REFERENCE_H

#include "lumo/terms/symbol.h"

namespace lumo::test {

/// The meaning of the 32 operators in machine words, written down from the definitions of the theory of
/// fixed-size bit-vectors; shares nothing with the library. Patterns and their results have at most 32 bits;
/// true is 1 and false is 0.
[[nodiscard]] unsigned long compute_reference(Kind kind, const Parameters& parameters,
                                              const unsigned long* args);

}  // namespace lumo::test

#endif
