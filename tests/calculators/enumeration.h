#ifndef LUMO_TESTS_CALCULATORS_ENUMERATION_H
#define LUMO_TESTS_CALCULATORS_ENUMERATION_H

#include <functional>
#include <string>
#include <vector>

#include "tests/calculators/reference.h"

namespace lumo::test {

/// All parameters that an operator can have around the width w: every rotation amount up to 2w, every
/// extraction range, every second width of a concatenation up to three, up to three added bits. For ite, also
/// the sort Bool.
std::vector<Parameters> enumerate_parameters(Kind kind, unsigned long w);

/// All applications of s to arguments of every kind: a separate declared constant for each position, the
/// constant of position 0 in later positions, a compound term, and every value of the sort. Numerals are made
/// through the reference, so that it knows them.
void for_each_application(TermManager& mgr, Reference& reference, const Symbol* s,
                          const std::function<void(const Term*)>& visit);

/// Every value of the sort, and terms that are not proper values: a constant and a compound term of the sort,
/// for bit-vectors also true, false and a Boolean constant, and for Booleans a numeral.
std::vector<const Term*> enumerate_values(TermManager& mgr, Reference& reference, const DataType* type);

/// Whether t is a value of the sort.
bool is_value_of(const Reference& reference, TermManager& mgr, const Term* t, const DataType* type);

/// The printed form of an application of leaves and shallow terms, for failure messages.
std::string describe(const Term* t);

}  // namespace lumo::test

#endif
