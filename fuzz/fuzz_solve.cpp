// A random formula through the whole of `lumo solve`: eliminated, solved, extended and checked. Z3 must have the same
// answer for the original formula, and must find it true under the model.

#include <string>
#include <vector>

#include <z3++.h>

#include "fuzz/target.h"
#include "lumo/commands/solve_script.h"
#include "tests/support/random_formula.h"
#include "tests/support/term_text.h"
#include "tests/support/z3_terms.h"

namespace lumo::fuzz {
namespace {

/// The limit of each solver; a formula that takes longer is skipped.
constexpr unsigned kMilliseconds = 1000;

/// For second opinions; shared by all inputs, since a context takes long to make.
z3::context& get_context()
{
  static z3::context context;
  return context;
}

class Run
{
 public:
  Run(const std::uint8_t* data, std::size_t size) : random_(test::Random::from_bytes(data, size))
  {
    test::FormulaLimits limits;
    if (random_.one_in(4)) limits = {{1, 8, 31, 32, 33, 63, 64, 65}, 24, false};
    formula_ = test::make_random_formula(mgr_, random_, limits);
  }

  void run()
  {
    smtlib::Script script{formula_.constants, {}};
    for (const Term* t : formula_.assertions)
      script.assertions.push_back({t, {}});
    commands::SolveMethod method;
    method.seconds = kMilliseconds / 1000.0;
    commands::Statistics statistics;
    commands::PhaseClock clock;
    const solvers::Solution solution = commands::solve_script(mgr_, script, method, statistics, clock);
    if (solution.answer == solvers::Answer::kSat) check_model(solution.model);
    if (solution.answer == solvers::Answer::kUnsat) check_unsat();
  }

 private:
  /// The answer sat needs no second opinion: the model proves it.
  void check_model(const std::vector<ModelValue>& model)
  {
    z3::context& z3 = get_context();
    test::Z3Terms terms(mgr_, z3);
    z3::model values(z3);
    for (const ModelValue& value : model) {
      z3::func_decl declaration = terms.make(value.constant).decl();
      z3::expr number = terms.make(value.value);
      values.add_const_interp(declaration, number);
    }
    check(model.size() == formula_.constants.size(), [&] { return describe() + "\na value is missing"; });
    check(values.eval(terms.make_conjunction(formula_.assertions), false).is_true(),
          [&] { return describe() + "\nis not true under\n" + values.to_string(); });
  }

  void check_unsat()
  {
    z3::context& z3 = get_context();
    test::Z3Terms terms(mgr_, z3);
    z3::solver solver(z3, z3::solver::simple());
    solver.set("timeout", kMilliseconds);
    solver.add(terms.make_conjunction(formula_.assertions));
    check(solver.check() != z3::sat,
          [&] { return describe() + "\nis called unsatisfiable, but\n" + solver.get_model().to_string(); });
  }

  [[nodiscard]] std::string describe() const
  {
    std::string text;
    for (const Term* t : formula_.assertions)
      text += "\n(assert " + test::make_term_text(t) + ")";
    return text;
  }

  TermManager mgr_;
  test::Random random_;
  test::RandomFormula formula_;
};

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size) { Run(data, size).run(); }

}  // namespace lumo::fuzz
