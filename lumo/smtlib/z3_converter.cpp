#include "lumo/smtlib/z3_converter.h"

#include <string>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/literals.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

constexpr const char* kWantedOperators = ", but only Booleans and bit-vectors were expected";

std::string get_name(const solvers::Z3Session& z3, Z3_func_decl declaration)
{
  const Z3_symbol symbol = Z3_get_decl_name(z3, declaration);
  if (Z3_get_symbol_kind(z3, symbol) == Z3_INT_SYMBOL) {
    return "k!" + std::to_string(Z3_get_symbol_int(z3, symbol));
  }
  return Z3_get_symbol_string(z3, symbol);
}

Indices get_indices(const solvers::Z3Session& z3, Z3_func_decl declaration)
{
  Indices indices{};
  const unsigned num_parameters = Z3_get_decl_num_parameters(z3, declaration);
  for (unsigned i = 0; i < num_parameters && i < indices.size(); ++i) {
    if (Z3_get_decl_parameter_kind(z3, declaration, i) == Z3_PARAMETER_INT) {
      indices[i] = static_cast<unsigned long>(Z3_get_decl_int_parameter(z3, declaration, i));
    }
  }
  return indices;
}

}  // namespace

const Term* Z3Converter::convert(Z3_ast root)
{
  std::vector<Z3_ast> stack{root};
  while (!stack.empty()) {
    const Z3_ast next = stack.back();
    if (result_of(next) != nullptr) {
      stack.pop_back();
    } else {
      visit(next, stack);
    }
  }
  return result_of(root);
}

const Term* Z3Converter::convert_definition(std::string_view name, Z3_ast equation)
{
  // The defined name is declared before the equation, but has no meaning in it.
  const auto place = meanings_.insert_or_assign(std::string(name), nullptr).first;
  const Term* meaning = convert(Z3_get_app_arg(z3_, Z3_to_app(z3_, equation), 1));
  meanings_.erase(place);
  return meaning;
}

void Z3Converter::define(std::string_view name, Z3_ast equation)
{
  const Term* meaning = convert_definition(name, equation);
  meanings_.insert_or_assign(std::string(name), meaning);
}

const Term*& Z3Converter::result_of(Z3_ast expression)
{
  const unsigned id = Z3_get_ast_id(z3_, expression);
  if (id >= results_.size()) results_.resize(id + 1);
  return results_[id];
}

void Z3Converter::visit(Z3_ast expression, std::vector<Z3_ast>& stack)
{
  const Z3_ast_kind kind = Z3_get_ast_kind(z3_, expression);
  if (kind == Z3_NUMERAL_AST) {
    result_of(expression) = make_numeral(expression);
    return;
  }
  if (kind != Z3_APP_AST) throw Exception(std::string("a quantifier was found") + kWantedOperators);

  const Z3_app application = Z3_to_app(z3_, expression);
  const unsigned num_args = Z3_get_app_num_args(z3_, application);
  const std::size_t height = stack.size();
  args_.clear();
  for (unsigned i = 0; i < num_args; ++i) {
    const Z3_ast arg = Z3_get_app_arg(z3_, application, i);
    args_.push_back(result_of(arg));
    if (args_.back() == nullptr) stack.push_back(arg);
  }
  if (stack.size() != height) return;
  const Z3_func_decl declaration = Z3_get_app_decl(z3_, application);
  result_of(expression) = num_args == 0 ? make_constant(declaration) : make_application(declaration);
}

const Term* Z3Converter::make_numeral(Z3_ast numeral)
{
  const DataType* sort = make_sort(Z3_get_sort(z3_, numeral));
  return smtlib::make_numeral(mgr_, Z3_get_numeral_binary_string(z3_, numeral), 2, sort->get_width());
}

const Term* Z3Converter::make_constant(Z3_func_decl declaration)
{
  switch (Z3_get_decl_kind(z3_, declaration)) {
    case Z3_OP_TRUE:
      return mgr_.make_true();
    case Z3_OP_FALSE:
      return mgr_.make_false();
    case Z3_OP_UNINTERPRETED:
      return make_declared_constant(declaration);
    default:
      throw Exception("the symbol " + make_excerpt(get_name(z3_, declaration)) + " was found" +
                      kWantedOperators);
  }
}

const Term* Z3Converter::make_declared_constant(Z3_func_decl declaration)
{
  const std::string name = get_name(z3_, declaration);
  const auto meaning = meanings_.find(name);
  if (meaning == meanings_.end()) return mgr_.make_constant(name, make_sort(Z3_get_range(z3_, declaration)));
  if (meaning->second == nullptr) {
    throw Exception("the definition of " + make_excerpt(name) +
                    " contains the name itself, but only names defined before were expected");
  }
  return meaning->second;
}

const Term* Z3Converter::make_application(Z3_func_decl declaration)
{
  std::string name = get_name(z3_, declaration);
  if (Z3_get_decl_kind(z3_, declaration) == Z3_OP_UNINTERPRETED) {
    throw Exception("an application of the function " + make_excerpt(name) +
                    " was found, but it is declared only and not defined");
  }
  if (name == "if") name = "ite";  // Z3's own name for it
  const Operator* op = find_operator(name);
  if (op == nullptr) throw Exception("the operator " + make_excerpt(name) + " was found" + kWantedOperators);
  if (const std::string misfit = find_misfit(mgr_, *op, args_); !misfit.empty()) throw Exception(misfit);
  return op->build(mgr_, get_indices(z3_, declaration), args_);
}

const DataType* Z3Converter::make_sort(Z3_sort sort)
{
  switch (Z3_get_sort_kind(z3_, sort)) {
    case Z3_BOOL_SORT:
      return mgr_.make_bool_type();
    case Z3_BV_SORT:
      return mgr_.make_bv_type(Z3_get_bv_sort_size(z3_, sort));
    default:
      throw Exception("the sort " + make_excerpt(Z3_sort_to_string(z3_, sort)) + " was found" +
                      kWantedOperators);
  }
}

}  // namespace lumo::smtlib
