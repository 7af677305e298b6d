#ifndef LUMO_TESTS_SUPPORT_DERIVED_OPERATORS_H
#define LUMO_TESTS_SUPPORT_DERIVED_OPERATORS_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// An operator of SMT-LIB 2 that the term layer lacks, or takes two arguments of where the language takes more.
struct DerivedOperator
{
  std::string_view name;
  bool takes_many;  ///< arguments; else two
  /// An application in terms of what the term layer has. Precondition: two arguments or, if it takes them, more,
  /// of one sort that the operator takes.
  const Term* (*build)(TermManager& mgr, const std::vector<const Term*>& args);
};

/// The operator of that name; one that is not in the table is a `std::logic_error`.
[[nodiscard]] const DerivedOperator& get_derived_operator(std::string_view name);

}  // namespace lumo::test

#endif
