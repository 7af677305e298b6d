#ifndef LUMO_SOLVERS_Z3_BUILDER_H
#define LUMO_SOLVERS_Z3_BUILDER_H

#include <cstdint>
#include <span>
#include <vector>

#include "lumo/solvers/z3_session.h"
#include "lumo/terms/term_manager.h"

namespace lumo::solvers {

/// Throws a SolverError if the last call in the session failed.
void check_z3(const Z3Session& z3);

/// Makes Z3's expressions from terms of one manager. The walk is iterative and makes one expression for each
/// term, however often it is shared; results are cached for the next call and live as long as the builder.
///
/// The expressions' constants have numbers as names, so every name is supported: constant i in the order of
/// `get_constants()` is the integer symbol i.
class Z3Builder
{
 public:
  Z3Builder(const TermManager& mgr, const Z3Session& z3) : mgr_(mgr), z3_(z3) {}
  Z3Builder(const Z3Builder&) = delete;
  Z3Builder& operator=(const Z3Builder&) = delete;
  ~Z3Builder();

  /// Counts how often each term is used in the roots. From now on, nested applications of an associative operator of
  /// which all but the outermost are used once become one application to all of their leaves: Z3 takes time
  /// quadratic in the depth of nested pairs. Terms that do not occur in the roots are treated as shared.
  void count_uses(std::span<const Term* const> roots);
  /// Throws a SolverError if Z3 cannot make the expression, since memory runs out.
  [[nodiscard]] Z3_ast build(const Term* root);
  /// The declared constants in all terms so far, in the order of their first occurrence.
  [[nodiscard]] const std::vector<const Term*>& get_constants() const { return constants_; }

 private:
  static constexpr std::uint8_t kMany = 2;

  [[nodiscard]] bool is_built(const Term* t) const
  {
    return t->get_id() < results_.size() && results_[t->get_id()] != nullptr;
  }
  [[nodiscard]] bool is_used_once(const Term* t) const
  {
    return t->get_id() < num_uses_.size() && num_uses_[t->get_id()] == 1;
  }
  /// Builds a term if its leaves are built; otherwise pushes those that are not on the stack.
  void visit(const Term* t, std::vector<const Term*>& stack);
  /// Fills `leaves_` with the arguments of a term, or, if it is the outermost application of a chain, with the
  /// leaves of the whole chain, from left to right.
  void collect_leaves(const Term* t);
  /// An application to `leaves_`.
  [[nodiscard]] Z3_ast make_application(const Term* t) const;
  [[nodiscard]] Z3_ast make_leaf(const Term* t);
  [[nodiscard]] Z3_ast make_constant(const Term* t);
  [[nodiscard]] Z3_ast make_numeral(const Term* t) const;
  [[nodiscard]] Z3_sort make_sort(const DataType* type) const;

  const TermManager& mgr_;
  const Z3Session& z3_;
  std::vector<Z3_ast> results_;  ///< by term id
  std::vector<const Term*> constants_;
  std::vector<std::uint8_t> num_uses_;  ///< by term id, 0 beyond the end; at most kMany
  std::vector<const Term*> leaves_;
  std::vector<const Term*> chain_;  ///< scratch of `collect_leaves`
};

}  // namespace lumo::solvers

#endif
