#include "lumo/solvers/z3_solver.h"

#include <mutex>
#include <string>
#include <unistd.h>
#include <unordered_set>
#include <vector>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/literals.h"
#include "lumo/solvers/z3_builder.h"
#include "lumo/solvers/z3_session.h"

namespace lumo::solvers {

namespace {

/// The conjuncts of the assertions, each once, in order.
std::vector<const Term*> collect_conjuncts(std::span<const Term* const> assertions)
{
  std::vector<const Term*> conjuncts;
  std::vector<const Term*> stack(assertions.rbegin(), assertions.rend());
  std::unordered_set<const Term*> met;
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (!met.insert(t).second) continue;
    if (t->get_symbol()->get_kind() == Kind::kAnd) {
      stack.push_back(t->get_arg(1));
      stack.push_back(t->get_arg(0));
    } else {
      conjuncts.push_back(t);
    }
  }
  return conjuncts;
}

/// Z3's solver of a session. It is the one that Z3's own program uses for a script of that logic.
class Z3Solver
{
 public:
  explicit Z3Solver(const Z3Session& z3)
      : z3_(z3), solver_(Z3_mk_solver_for_logic(z3, Z3_mk_string_symbol(z3, "QF_BV")))
  {
    check_z3(z3);
    Z3_solver_inc_ref(z3, solver_);
  }
  Z3Solver(const Z3Solver&) = delete;
  Z3Solver& operator=(const Z3Solver&) = delete;
  ~Z3Solver() { Z3_solver_dec_ref(z3_, solver_); }

  void assert_expression(Z3_ast expression)
  {
    Z3_solver_assert(z3_, solver_, expression);
    check_z3(z3_);
  }
  void assert_script(const std::string& script)
  {
    Z3_solver_from_string(z3_, solver_, script.c_str());
    check_z3(z3_);
  }
  [[nodiscard]] Answer check(bool wants_model);
  /// Why the last answer was unknown, in Z3's words.
  [[nodiscard]] std::string get_reason() const { return Z3_solver_get_reason_unknown(z3_, solver_); }
  /// Null if there is none.
  [[nodiscard]] Z3_model get_model() const { return Z3_solver_get_model(z3_, solver_); }

 private:
  void set_parameters(bool wants_model);

  const Z3Session& z3_;
  Z3_solver solver_;
};

void Z3Solver::set_parameters(bool wants_model)
{
  const Z3_params params = Z3_mk_params(z3_);
  Z3_params_inc_ref(z3_, params);
  Z3_params_set_bool(z3_, params, Z3_mk_string_symbol(z3_, "ctrl_c"), false);
  Z3_params_set_bool(z3_, params, Z3_mk_string_symbol(z3_, "model"), wants_model);
  Z3_solver_set_params(z3_, solver_, params);
  Z3_params_dec_ref(z3_, params);
  check_z3(z3_);
}

Answer Z3Solver::check(bool wants_model)
{
  set_parameters(wants_model);
  switch (Z3_solver_check(z3_, solver_)) {
    case Z3_L_TRUE:
      return Answer::kSat;
    case Z3_L_FALSE:
      return Answer::kUnsat;
    case Z3_L_UNDEF:
      break;
  }
  return Answer::kUnknown;
}

// -----------------------------------------------------------------------------------------------------------

/// A model of a session.
class Z3Model
{
 public:
  Z3Model(const Z3Session& z3, Z3_model model) : z3_(z3), model_(model)
  {
    check_z3(z3);
    Z3_model_inc_ref(z3, model);
  }
  Z3Model(const Z3Model&) = delete;
  Z3Model& operator=(const Z3Model&) = delete;
  ~Z3Model() { Z3_model_dec_ref(z3_, model_); }

  /// The value of a constant, or null.
  [[nodiscard]] Z3_ast find_value(Z3_ast constant) const
  {
    const Z3_func_decl declaration = Z3_get_app_decl(z3_, Z3_to_app(z3_, constant));
    const Z3_ast value = Z3_model_get_const_interp(z3_, model_, declaration);
    check_z3(z3_);
    return value;
  }

  /// The definitions as SMT-LIB 2 text, if the session prints such.
  [[nodiscard]] std::string print() const { return Z3_model_to_string(z3_, model_); }

 private:
  const Z3Session& z3_;
  Z3_model model_;
};

const Term* read_value(TermManager& mgr, const Z3Session& z3, const DataType* type, Z3_ast value)
{
  if (type->is_bool()) {
    const Z3_lbool truth = Z3_get_bool_value(z3, value);
    if (truth != Z3_L_UNDEF) return truth == Z3_L_TRUE ? mgr.make_true() : mgr.make_false();
  } else if (Z3_get_ast_kind(z3, value) == Z3_NUMERAL_AST) {
    const char* digits = Z3_get_numeral_binary_string(z3, value);
    check_z3(z3);
    return smtlib::make_numeral(mgr, digits, 2, type->get_width());
  }
  throw SolverError("Z3 gave a model in which a constant has a value that is not a literal");
}

std::vector<ModelValue> read_model(TermManager& mgr, const Z3Session& z3, const Z3Model& model,
                                   Z3Builder& builder)
{
  std::vector<ModelValue> values;
  for (const Term* constant : builder.get_constants()) {
    const Z3_ast value = model.find_value(builder.build(constant));
    if (value == nullptr) continue;
    values.push_back({constant, read_value(mgr, z3, constant->get_symbol()->get_output_type(), value)});
  }
  return values;
}

/// Z3's reason for the answer unknown. If memory ran out, throws a SolverError, as everywhere else.
std::string explain(const std::string& reason)
{
  if (reason.find("memory") != std::string::npos) throw SolverError("the built-in solver ran out of memory");
  return "Z3 gave the reason \"" + smtlib::make_excerpt(reason) + "\"";
}

void limit_memory_once()
{
  static std::once_flag memory_is_limited;
  std::call_once(memory_is_limited, limit_z3_memory);
}

}  // namespace

void limit_z3_memory()
{
  const long num_pages = sysconf(_SC_PHYS_PAGES);
  const long page_size = sysconf(_SC_PAGE_SIZE);
  if (num_pages <= 0 || page_size <= 0) return;
  const long most = num_pages / 4 * 3 / (1024L * 1024L / page_size);
  Z3_global_param_set("memory_max_size", std::to_string(most).c_str());
}

Solution solve_with_z3(TermManager& mgr, std::span<const Term* const> assertions, bool wants_model)
{
  limit_memory_once();
  const Z3Session z3;
  Z3Builder builder(mgr, z3);
  Z3Solver solver(z3);
  const std::vector<const Term*> conjuncts = collect_conjuncts(assertions);
  builder.count_uses(conjuncts);
  for (const Term* conjunct : conjuncts)
    solver.assert_expression(builder.build(conjunct));

  Solution solution;
  solution.answer = solver.check(wants_model);
  if (solution.answer == Answer::kUnknown) solution.reason = explain(solver.get_reason());
  if (solution.answer == Answer::kSat && wants_model) {
    const Z3Model model(z3, solver.get_model());
    solution.model = read_model(mgr, z3, model, builder);
  }
  return solution;
}

Solution solve_text_with_z3(const std::string& script)
{
  limit_memory_once();
  const Z3Session z3;
  Z3Solver solver(z3);
  solver.assert_script(script);
  Solution solution;
  solution.answer = solver.check(false);
  if (solution.answer == Answer::kUnknown) solution.reason = explain(solver.get_reason());
  return solution;
}

std::string solve_text_with_z3(const std::string& script, const std::string& logic)
{
  limit_z3_memory();
  const Z3Session z3;
  Z3_solver solver = Z3_mk_solver_for_logic(z3, Z3_mk_string_symbol(z3, logic.c_str()));
  // Z3 does not know the names of all logics.
  if (Z3_get_error_code(z3) != Z3_OK) solver = Z3_mk_solver(z3);
  check_z3(z3);
  Z3_solver_inc_ref(z3, solver);
  Z3_solver_from_string(z3, solver, script.c_str());
  if (Z3_get_error_code(z3) != Z3_OK) {
    const std::string message = Z3_get_error_msg(z3, Z3_get_error_code(z3));
    return "(error \"" + smtlib::make_excerpt(message) + "\")";
  }
  switch (Z3_solver_check(z3, solver)) {
    case Z3_L_FALSE:
      return "unsat\n";
    case Z3_L_UNDEF:
      check_z3(z3);
      return "unknown\n(:reason-unknown \"" + std::string(Z3_solver_get_reason_unknown(z3, solver)) + "\")\n";
    case Z3_L_TRUE:
      break;
  }
  Z3_set_ast_print_mode(z3, Z3_PRINT_SMTLIB2_COMPLIANT);
  const Z3Model model(z3, Z3_solver_get_model(z3, solver));
  return "sat\n(\n" + model.print() + ")\n";
}

}  // namespace lumo::solvers
