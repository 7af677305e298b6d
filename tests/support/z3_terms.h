#ifndef LUMO_TESTS_SUPPORT_Z3_TERMS_H
#define LUMO_TESTS_SUPPORT_Z3_TERMS_H

#include <unordered_map>
#include <vector>

#include <z3++.h>

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// The application of an operator to Z3's expressions, with Z3's own meaning; the parameters are those of the symbol.
[[nodiscard]] z3::expr apply_in_z3(z3::context& z3, Kind kind, const Parameters& parameters,
                                   const std::vector<z3::expr>& args);

/// Makes Z3's expressions from terms of one manager. Shared terms are made once, and the walk is iterative.
///
/// A constant can be given a term as its meaning: then it becomes that term's expression. So terms can be compared
/// that are related by definitions.
class Z3Terms
{
 public:
  Z3Terms(const TermManager& mgr, z3::context& z3) : mgr_(mgr), z3_(z3) {}

  /// Call this before the constant occurs in a term. Meanings may contain constants with meanings in any order;
  /// a constant whose meaning contains itself causes a std::logic_error when it occurs.
  void set_meaning(const Term* constant, const Term* meaning) { meanings_.emplace(constant, meaning); }
  [[nodiscard]] const z3::expr& make(const Term* t);
  /// All terms hold.
  [[nodiscard]] z3::expr make_conjunction(const std::vector<const Term*>& terms);

 private:
  /// The terms that must be made before t
  [[nodiscard]] std::vector<const Term*> get_parts(const Term* t) const;
  [[nodiscard]] z3::expr make_from_parts(const Term* t) const;
  [[nodiscard]] z3::expr make_leaf(const Term* t) const;

  const TermManager& mgr_;
  z3::context& z3_;
  std::unordered_map<const Term*, const Term*> meanings_;
  std::unordered_map<const Term*, z3::expr> results_;
};

/// The value of Z3's numeral, true or false.
[[nodiscard]] const Term* read_value(TermManager& mgr, const z3::expr& value);

}  // namespace lumo::test

#endif
