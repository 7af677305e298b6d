#ifndef LUMO_TESTS_SUPPORT_RANDOM_FORMULA_H
#define LUMO_TESTS_SUPPORT_RANDOM_FORMULA_H

#include <cstddef>
#include <vector>

#include "lumo/terms/term_manager.h"
#include "tests/support/random.h"

namespace lumo::test {

struct FormulaLimits
{
  std::vector<unsigned long> widths = {1, 2, 3, 4, 5, 6, 7, 8};  ///< parts of wide terms may be narrower
  std::size_t max_applications = 24;  ///< of one assertion, before derived operators are expanded
  bool has_products = true;           ///< multiplication, division, remainders: hard at wide widths
};

/// Assertions and all constants that occur in them, in the order of creation.
struct RandomFormula
{
  std::vector<const Term*> constants;
  std::vector<const Term*> assertions;
};

/// Draws asserted Boolean terms over all operators, and over expansions of the language's other operators,
/// such that at least half of the constants occur once: in one argument of one term, or as one assertion.
///
/// Sizes are skewed towards small ones. Subterms are shared, within an assertion and between assertions, and
/// numerals are often limits of operators. The constants x0, x1, ... must be new to the manager.
[[nodiscard]] RandomFormula make_random_formula(TermManager& mgr, Random& random,
                                                const FormulaLimits& limits);

/// How often each constant occurs in the assertions: argument positions of distinct terms, and assertions.
[[nodiscard]] std::vector<std::size_t> count_occurrences(const RandomFormula& formula);

}  // namespace lumo::test

#endif
