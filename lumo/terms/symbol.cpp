#include "lumo/terms/symbol.h"

#include "lumo/terms/numeral_text.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

namespace {

/// How many of an operator's parameters are indices of its SMT-LIB 2 identifier; the rest are operand widths.
std::size_t count_indices(SortRule rule)
{
  switch (rule) {
    case SortRule::kExtract:
      return 2;
    case SortRule::kRotate:
    case SortRule::kExtend:
      return 1;
    case SortRule::kBool:
    case SortRule::kIte:
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
    case SortRule::kConcat:
      return 0;
  }
  return 0;
}

std::unique_ptr<const std::string> make_operator_name(Kind kind, const Parameters& parameters)
{
  const OperatorInfo& info = get_operator_info(kind);
  const std::size_t num_indices = count_indices(info.rule);
  auto name = std::make_unique<std::string>(num_indices == 0 ? "" : "(_ ");
  *name += info.smtlib_name;
  for (std::size_t i = 0; i < num_indices; ++i) {
    *name += ' ';
    *name += std::to_string(parameters[i]);
  }
  if (num_indices != 0) *name += ')';
  return name;
}

}  // namespace

std::unique_ptr<const std::string> Symbol::make_name() const
{
  switch (naming_) {
    case Naming::kByText:
      return std::make_unique<const std::string>(static_cast<const DeclaredSymbol*>(this)->get_text());
    case Naming::kByNumber:
      return std::make_unique<const std::string>(static_cast<const FreshSymbol*>(this)->make_name());
    case Naming::kByValue:
      break;
  }
  QNumber value;
  output_type_->get_manager()->is_number(this, &value);
  return std::make_unique<const std::string>(make_numeral_text(value, output_type_->get_width()));
}

OperatorSymbol::OperatorSymbol(TermManagerKey /*key*/, Kind kind, const DataType* output_type,
                               const ArgumentTypes& argument_types, const Parameters& parameters)
    : Symbol(kind, output_type, Naming::kByValue, make_operator_name(kind, parameters)),
      parameters_(parameters),
      argument_types_(argument_types)
{}

}  // namespace lumo
