#ifndef LUMO_SMTLIB_Z3_CONVERTER_H
#define LUMO_SMTLIB_Z3_CONVERTER_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumo/smtlib/operators.h"
#include "lumo/solvers/z3_session.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Makes terms of Z3's expressions over Booleans and bit-vectors. The walk is iterative and converts what
/// expressions share once; results are kept for the next call.
class Z3Converter
{
 public:
  using Meanings = std::unordered_map<std::string, const Term*>;

  /// The meanings are those of constants that stand for something else; other constants are declared ones.
  /// Expressions given to the converter must stay alive as long as it.
  Z3Converter(TermManager& mgr, const solvers::Z3Session& z3, Meanings meanings)
      : mgr_(mgr), z3_(z3), meanings_(std::move(meanings))
  {}

  /// An `Exception` says what was found that is neither over Booleans nor over bit-vectors.
  const Term* convert(Z3_ast root);
  /// Converts the right side of an equation whose left side is the constant of that name. An `Exception` if the
  /// right side contains the name.
  const Term* convert_definition(std::string_view name, Z3_ast equation);
  /// The same; and from now on, the constant means that.
  void define(std::string_view name, Z3_ast equation);

 private:
  [[nodiscard]] const Term*& result_of(Z3_ast expression);
  /// Converts an expression whose arguments are known, else puts those that are not on the stack.
  void visit(Z3_ast expression, std::vector<Z3_ast>& stack);
  [[nodiscard]] const Term* make_numeral(Z3_ast numeral);
  [[nodiscard]] const Term* make_constant(Z3_func_decl declaration);
  [[nodiscard]] const Term* make_declared_constant(Z3_func_decl declaration);
  [[nodiscard]] const Term* make_application(Z3_func_decl declaration);
  [[nodiscard]] const DataType* make_sort(Z3_sort sort);

  TermManager& mgr_;
  const solvers::Z3Session& z3_;
  Meanings meanings_;
  std::vector<const Term*> results_;  ///< by the expression's id
  std::vector<const Term*> args_;     ///< of the application that is being converted
};

}  // namespace lumo::smtlib

#endif
