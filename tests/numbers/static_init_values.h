#ifndef LUMO_TESTS_NUMBERS_STATIC_INIT_VALUES_H
#define LUMO_TESTS_NUMBERS_STATIC_INIT_VALUES_H

#include "lumo/numbers/qnumber.h"

namespace lumo::test {

/// Whether GMP's initialisation had allocated the limbs of each scratch integer before any other static
/// of this program was initialised.
extern const bool kScratchIsReadyEarly;
/// 2^200/3 + 2^201/7, computed while statics are initialised.
extern const QNumber kEarlySum;
/// Whether 2^200/3 < 2^200/7 + 2^199, likewise.
extern const bool kEarlyOrder;

}  // namespace lumo::test

#endif
