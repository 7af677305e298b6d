#ifndef LUMO_TESTS_SMTLIB_RANDOM_SCRIPT_H
#define LUMO_TESTS_SMTLIB_RANDOM_SCRIPT_H

#include <string>

#include "tests/support/random.h"

namespace lumo::test {

/// Draws the text of a valid script: declarations, assertions and one query over all operators of the language that
/// Z3's parser knows as well, with definitions with and without parameters, definitions of sorts, lets, names,
/// annotations, qualified and quoted symbols, literals of all kinds, comments and white space.
[[nodiscard]] std::string make_random_script(Random& random);

}  // namespace lumo::test

#endif
