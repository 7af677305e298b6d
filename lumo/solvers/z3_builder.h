#ifndef LUMO_SOLVERS_Z3_BUILDER_H
#define LUMO_SOLVERS_Z3_BUILDER_H

#include <vector>

#include "lumo/solvers/z3_session.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Throws a SolverError if the last call in the session failed.
void check_z3(const Z3Session& z3);

/// Makes Z3's expressions of terms of one manager. The walk is iterative and makes one expression for each
/// term, however often it is shared; results are kept for the next call and live as long as the builder.
///
/// The expressions' constants have numbers for names, so that every name will do: constant i in the order of
/// `get_constants()` is the integer symbol i.
class Z3Builder
{
 public:
  Z3Builder(const TermManager& mgr, const Z3Session& z3) : mgr_(mgr), z3_(z3) {}
  Z3Builder(const Z3Builder&) = delete;
  Z3Builder& operator=(const Z3Builder&) = delete;
  ~Z3Builder();

  /// A SolverError says why Z3 does not make the expression: memory runs out.
  [[nodiscard]] Z3_ast build(const Term* root);
  /// The declared constants in all terms so far, in the order in which they were met.
  [[nodiscard]] const std::vector<const Term*>& get_constants() const { return constants_; }

 private:
  [[nodiscard]] bool is_built(const Term* t) const
  {
    return t->get_id() < results_.size() && results_[t->get_id()] != nullptr;
  }
  /// Builds a term whose arguments are built, else puts those that are not on the stack.
  void visit(const Term* t, std::vector<const Term*>& stack);
  [[nodiscard]] Z3_ast make_application(const Term* t) const;
  [[nodiscard]] Z3_ast make_leaf(const Term* t);
  [[nodiscard]] Z3_ast make_constant(const Term* t);
  [[nodiscard]] Z3_ast make_numeral(const Term* t) const;
  [[nodiscard]] Z3_sort make_sort(const DataType* type) const;

  const TermManager& mgr_;
  const Z3Session& z3_;
  std::vector<Z3_ast> results_;  ///< by term id
  std::vector<const Term*> constants_;
};

}  // namespace lumo::solvers

#endif
