#ifndef LUMO_TESTS_PROOF_PROOF_TEXTS_H
#define LUMO_TESTS_PROOF_PROOF_TEXTS_H

#include <string>
#include <vector>

#include "tests/proof/proof_rows.h"

namespace lumo::test {

/// The name that a row uses for an operand of an operator: x, a and b, or c, a and b.
[[nodiscard]] std::string get_operand_name(std::size_t arity, std::size_t position);

struct TextDefinition
{
  std::size_t position;  ///< of the operand
  const Term* value;
};

/// The texts of a row as terms
struct RowTerms
{
  const Term* condition;
  const Term* value;
  std::vector<TextDefinition> definitions;
  const Term* middle;  ///< null if the row has none
};

/// Reads a row's texts for an operator symbol of its kind. Operands that are n are constants with the names
/// of the operands. If `product` is to be abstract, it is a constant, too.
[[nodiscard]] RowTerms read_row(TermManager& mgr, const ProofRow& row, const OperatorSymbol& s,
                                bool has_abstract_product);

}  // namespace lumo::test

#endif
