#ifndef LUMO_TESTS_SUPPORT_DERIVED_OPERATORS_H
#define LUMO_TESTS_SUPPORT_DERIVED_OPERATORS_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// An operator of SMT-LIB 2 that the term layer does not have, or has with two arguments while the language allows
/// more.
struct DerivedOperator
{
  std::string_view name;
  bool takes_many;  ///< whether it takes more than two arguments
  /// An application, expressed by operators of the term layer. Precondition: two arguments, or more if it takes them,
  /// of one sort that the operator takes.
  const Term* (*build)(TermManager& mgr, const std::vector<const Term*>& args);
};

/// The operator of that name. Throws a `std::logic_error` if it is not in the table.
[[nodiscard]] const DerivedOperator& get_derived_operator(std::string_view name);

}  // namespace lumo::test

#endif
