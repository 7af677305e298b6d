#ifndef LUMO_TESTS_TERMS_OPERATOR_CASES_H
#define LUMO_TESTS_TERMS_OPERATOR_CASES_H

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// A symbol of some operator and what is to hold of it. Width 0 stands for Bool.
struct SymbolCase
{
  Parameters parameters;  ///< for ite and eq the width of the sort
  std::string name;
  std::vector<unsigned long> argument_widths;
  unsigned long result_width;
};

std::ostream& operator<<(std::ostream& out, const SymbolCase& symbol);

/// One of the 32 operators: its factory, its recogniser, and symbols of it.
struct OperatorCase
{
  std::string label;
  Kind kind;
  std::string_view smtlib_name;
  const Symbol* (*make)(TermManager&, const Parameters&);
  bool (*is)(const TermManager&, const Symbol*, unsigned long*, unsigned long*, unsigned long*);
  std::size_t num_outputs;  ///< how many parameters the recogniser tells
  std::vector<SymbolCase> (*make_symbol_cases)(std::string_view, unsigned long);

  /// Symbols on operands of width w. Up to width 4 they are all that differ in meaning, extensions and second
  /// operands of concat by at most four bits; above, a choice.
  [[nodiscard]] std::vector<SymbolCase> symbols(unsigned long w) const
  {
    return make_symbol_cases(smtlib_name, w);
  }
};

std::ostream& operator<<(std::ostream& out, const OperatorCase& op);

/// All 32, in the order of `Kind`.
[[nodiscard]] const std::vector<OperatorCase>& get_operator_cases();

[[nodiscard]] inline const DataType* make_type(TermManager& mgr, unsigned long width)
{
  return width == 0 ? mgr.make_bool_type() : mgr.make_bv_type(width);
}

/// Names a parametrised test after its case.
inline constexpr auto kLabelOf = [](const auto& info) { return info.param.label; };

/// Constants of the sorts that the symbol's arguments have: `<prefix>0`, `<prefix>1`, ...
[[nodiscard]] std::vector<const Term*> make_arguments(TermManager& mgr, const SymbolCase& symbol,
                                                      const std::string& prefix);

}  // namespace lumo::test

#endif
