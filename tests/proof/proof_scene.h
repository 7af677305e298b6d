#ifndef LUMO_TESTS_PROOF_PROOF_SCENE_H
#define LUMO_TESTS_PROOF_PROOF_SCENE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/model/model_store.h"
#include "lumo/solvers/answer.h"
#include "tests/proof/proof_rows.h"
#include "tests/proof/proof_texts.h"

namespace lumo::test {

/// The definitions that the calculator of t's operator pushes, oldest first; nothing if it refuses and leaves the
/// stack unchanged.
[[nodiscard]] std::optional<std::vector<ModelStore::ModelDefinition>> call_calculator(TermManager& mgr,
                                                                                      const Term* t,
                                                                                      const Term* value);

/// Operands of a shape for an operator: constants, terms of constants, and, for those that are n, constants with the
/// names that rows use for them.
[[nodiscard]] std::vector<const Term*> make_operands(TermManager& mgr, const OperatorSymbol& s,
                                                     std::string_view shape);

/// A question to a solver
struct ProofQuery
{
  std::string what;
  std::vector<const Term*> assertions;
  solvers::Answer expected;
};

/// A row of the table for one choice of its operator's parameters, as terms of its own manager: the value
/// is a constant, and so is each operand that is n.
class ProofScene
{
 public:
  ProofScene(const ProofRow& row, const Parameters& parameters);

  [[nodiscard]] TermManager& get_manager() { return mgr_; }
  [[nodiscard]] const OperatorSymbol& get_operator() const { return *symbol_; }
  [[nodiscard]] const RowTerms& get_terms() const { return terms_; }

  /// The definitions of the row: the terms of its text, or those that the calculator pushes for operands that are
  /// not n. The latter must be the same for two different numerals, except for the numeral in them; otherwise
  /// throws a std::logic_error.
  [[nodiscard]] std::vector<ModelStore::ModelDefinition> make_definitions(std::string_view shape);

  /// All queries for the row's shapes, without duplicates.
  [[nodiscard]] std::vector<ProofQuery> make_queries();

 private:
  [[nodiscard]] std::vector<ModelStore::ModelDefinition> take_definitions(std::string_view shape,
                                                                          bool has_high_numerals);
  [[nodiscard]] const Term* make_claimed_application(std::string_view shape);
  [[nodiscard]] const Term* make_difference(const Term* lhs, const Term* rhs);
  void add_queries(std::vector<ProofQuery>& queries, std::string_view shape);

  const ProofRow& row_;
  TermManager mgr_;
  const OperatorSymbol* symbol_;
  RowTerms terms_;
};

}  // namespace lumo::test

#endif
