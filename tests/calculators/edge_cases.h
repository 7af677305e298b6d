#ifndef LUMO_TESTS_CALCULATORS_EDGE_CASES_H
#define LUMO_TESTS_CALCULATORS_EDGE_CASES_H

#include <ostream>
#include <string>
#include <vector>

namespace lumo::test {

/// One call of a calculator and its expected result, in the notation of tests/support/notation.h.
struct EdgeCase
{
  std::string application;
  std::string value;
  std::vector<std::string> definitions;  ///< `term := value`, in the order of the pushes; empty for a failure
  std::string message;                   ///< the full text of the failure; empty for a success
  bool is_plain_exception = false;       ///< the failure is an Exception, but not an AdHocCalculator::error
};

inline std::ostream& operator<<(std::ostream& out, const EdgeCase& row)
{
  return out << row.application << " is " << row.value;
}

/// The rows for widths around that of a word.
std::vector<EdgeCase> make_wide_edge_cases();

/// Every boundary that the calculators' contracts name, in the order of the classes.
const std::vector<EdgeCase>& get_edge_cases();

}  // namespace lumo::test

#endif
