#ifndef LUMO_TESTS_ELIMINATION_RULE_ROWS_H
#define LUMO_TESTS_ELIMINATION_RULE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// The widths and numbers that a rule has.
enum class RuleFamily : std::uint8_t
{
  kBools,        ///< no width
  kWidths,       ///< w
  kOneBit,       ///< w = 1
  kWider,        ///< w > 1
  kRotations,    ///< w and k up to 2 w
  kExtractions,  ///< w, the bits msb down to lsb, which are n
  kParts,        ///< w, and the width n of a lower part; they are m together
  kShifts,       ///< w and an amount 0 < k < w
  kFactors,      ///< w and an exponent 0 < k < w - 1
  kNoShifts,     ///< w and the amount k = 0
  kFarShifts,    ///< w and an amount k >= w
  kSignShifts,   ///< w > 1 and an amount k >= w - 1
};

/// A rule of elimination, as texts that solvers can read.
///
/// Free arguments are x, y, z and the Booleans o, p, r; other arguments s, t and the Boolean b; numerals c, d, i; the
/// constants of the steps f, g and the Booleans q, l. A name without a width has the width w. In braces are numbers of
/// the family (`{w}`, `{k}`, and differences such as `{w-k-1}`) and patterns of width w (`{zero} {one} {ones} {least}
/// {greatest}`, `{K}` for the number k, `{POW}` for 2^k, `{zeros}` for k bits of 0).
struct RuleRow
{
  std::string_view name;
  RuleFamily family;
  std::string_view old_form;
  /// `constant := application; ...` in the order of the trail
  std::string_view steps;
  std::string_view new_form;
  /// What extending a model gives to the free arguments and to constants of steps that the new form does not have:
  /// `constant := term; ...`, in an order in which no term needs a later definition
  std::string_view values;
  /// The numerals for which the rule holds; empty for all
  std::string_view condition = {};
  /// The widths up to which Z3 and cvc5 prove it in every run, since it multiplies; 0 for all widths
  unsigned long max_width_of_z3 = 0;
  unsigned long max_width_of_cvc5 = 0;
};

[[nodiscard]] std::span<const RuleRow> get_rule_rows();

/// The numbers of one instance of a rule.
using RuleNumbers = std::map<std::string, unsigned long>;

/// The instances of a row at a width: all of its numbers up to 4 bits, above a selection. None if the width is not in the
/// family; width 0 is that of the Booleans.
[[nodiscard]] std::vector<RuleNumbers> list_instances(const RuleRow& row, unsigned long w);

/// The widths of proofs up to a limit, if it is not 0: 1 to 16, 31, 32, 33, 63, 64, as far as the row has them, or 0.
[[nodiscard]] std::vector<unsigned long> list_rule_widths(const RuleRow& row, unsigned long max_width);

/// A pair of a constant and its definition.
using RuleDefinition = std::pair<const Term*, const Term*>;

/// An instance of a row as terms of a manager.
struct RuleTerms
{
  const Term* old_form;
  std::vector<RuleDefinition> steps;
  const Term* new_form;
  std::vector<RuleDefinition> values;
  const Term* condition;
};

/// Reads the texts. The constants have the names of the row, followed by their widths.
[[nodiscard]] RuleTerms read_rule(TermManager& mgr, const RuleRow& row, const RuleNumbers& numbers);

/// The term with each constant on the left replaced by its definition, in the given order. For small terms.
[[nodiscard]] const Term* substitute(TermManager& mgr, const Term* t,
                                     std::span<const RuleDefinition> definitions);

/// What is to be proven.
struct RuleClaim
{
  std::string what;
  std::vector<const Term*> assertions;
  bool is_satisfiable;
};

/// The claims of an instance: the values make the old form equal to the new one, whatever the constants of the steps
/// are; the steps make the new form equal to the old one, whatever the free arguments are; and the condition, if there
/// is one, can be true.
[[nodiscard]] std::vector<RuleClaim> make_claims(TermManager& mgr, const RuleTerms& terms);

std::ostream& operator<<(std::ostream& out, const RuleRow& row);

}  // namespace lumo::test

#endif
