#ifndef LUMO_COMMANDS_SOLVER_STACK_H
#define LUMO_COMMANDS_SOLVER_STACK_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lumo/commands/query_source.h"
#include "lumo/model/model_value.h"
#include "lumo/smtlib/assertion_printer.h"
#include "lumo/smtlib/foreign_model.h"
#include "lumo/solvers/answer.h"
#include "lumo/solvers/deadline.h"
#include "lumo/solvers/solver_session.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// A solver whose levels follow those of a QuerySource, and what it was told on each.
///
/// The solver is started by the first query that needs one. It is told of pushes and pops when it is asked next, so
/// levels without a query cost it nothing. If it fails, the next query starts another one and tells that all that is
/// asserted.
class SolverStack
{
 public:
  using Start = std::function<std::unique_ptr<solvers::SolverSession>()>;

  SolverStack(TermManager& mgr, Start start) : mgr_(mgr), start_(std::move(start)) {}

  /// The foreign terms in what is added from now on; their table must outlive the object. Ends the solver, and forgets
  /// everything that was added.
  void take_foreign(const smtlib::ForeignTerms& foreign);
  /// The model of the last query with everything that it defines; null if there are no foreign terms. Precondition: its
  /// answer was sat.
  [[nodiscard]] smtlib::ForeignModel* get_foreign_model() { return foreign_model_.get(); }
  /// Sat: what the solver says of a term, as text. Throws a SolverError if it says nothing.
  [[nodiscard]] std::string ask_for_value(const Term* t);

  /// A limit for each query, in seconds of wall-clock time.
  void limit_time(std::optional<double> seconds) { seconds_ = seconds; }
  /// What the solver must be able to say of an unsatisfiable query; a change ends the solver.
  void want_cores(bool wants) { change(wants_cores_, wants); }
  void want_unsat_assumptions(bool wants) { change(wants_unsat_assumptions_, wants); }
  /// An option of the solver's own, `:name value`, that it gets before the next query and whenever it is started.
  void pass_option(const std::string& option);
  void drop_options();

  /// Keeps the levels up to that one only.
  void pop_to(std::size_t level);
  /// Forgets everything that was added, and ends the solver.
  void reset();
  /// What was added on all levels, in the order in which it was added to each.
  [[nodiscard]] std::vector<const Term*> list_additions() const;
  /// Asks whether what was added on all levels and the query can be true together; `num_levels` is the highest level.
  /// The model, if the answer is sat, has values of constants that the solver knows. A SolverError if it fails.
  [[nodiscard]] solvers::Solution check(const SolverQuery& query, std::size_t num_levels);

  // The following ask for more about the last query. Precondition: its answer was this one, and there was no failure.

  /// Unsat: the indices of assertions that cannot be true together with the assumptions, in ascending order.
  [[nodiscard]] std::vector<std::size_t> list_core();
  /// Unsat: the indices of assumptions that cannot be true together with the assertions, in ascending order.
  [[nodiscard]] std::vector<std::size_t> list_unsat_assumptions();
  /// Unknown: the reason, as the solver gives it; empty if it gives none.
  [[nodiscard]] std::string get_reason();

 private:
  struct Level
  {
    std::vector<Addition> additions;
    std::size_t num_told = 0;
    std::optional<std::size_t> false_assertion;  ///< the index of one whose form is false
  };
  /// What the solver knows by name on one of its levels
  struct Known
  {
    std::vector<const Term*> constants;
    std::vector<std::string> assertions;
    std::vector<std::size_t> declarations;  ///< of foreign terms
  };
  /// An assumption as it is asked
  struct Literal
  {
    const Term* constant;
    bool is_negated;
    std::size_t assumption;  ///< its index
  };

  void change(bool& option, bool value);
  void end_session();
  [[nodiscard]] solvers::Solution find_answer(const SolverQuery& query, std::size_t num_levels);
  void add(const Addition& addition);
  /// Makes literals of the assumptions.
  void take_assumptions(const SolverQuery& query, std::size_t num_levels);
  [[nodiscard]] const Term* get_switch(std::size_t number);
  /// The answer, if it follows without a solver.
  [[nodiscard]] std::optional<solvers::Answer> find_plain_answer();
  [[nodiscard]] solvers::Solution ask_solver();
  [[nodiscard]] std::vector<ModelValue> read_model(const std::string& text);
  [[nodiscard]] std::string make_question();
  /// Asks for more about the last query; returns a list.
  [[nodiscard]] std::string ask_more(const std::string& question);

  void start(const solvers::Deadline& deadline);
  void tell_logic(const solvers::Deadline& deadline);
  void tell_options(const solvers::Deadline& deadline);
  /// Brings the solver's levels in step, and tells what it was not told yet.
  void tell_levels();
  void pop_solver(std::size_t level);
  void tell_level(std::size_t number);
  void tell_named(const Addition& addition);
  /// Notes that the solver is told of a constant on its highest level; false if it was told before.
  [[nodiscard]] bool note_constant(const Term* constant);
  /// The same for a declaration of foreign terms.
  [[nodiscard]] bool note_declaration(std::size_t declaration);
  [[nodiscard]] smtlib::ForeignDeclare make_foreign_declare();

  TermManager& mgr_;
  Start start_;
  std::optional<double> seconds_;
  bool wants_cores_ = false;
  bool wants_unsat_assumptions_ = false;
  std::vector<std::string> options_;
  std::size_t num_options_told_ = 0;

  std::vector<Level> levels_ = std::vector<Level>(1);
  std::unique_ptr<solvers::SolverSession> session_;
  std::size_t solver_level_ = 0;                   ///< the solver's highest level
  std::size_t kept_ = 0;                           ///< up to which the solver's levels are those of `levels_`
  std::vector<Known> known_;                       ///< by the solver's levels
  std::unordered_set<const Term*> is_known_;       ///< constants
  std::unique_ptr<smtlib::ForeignForms> foreign_;  ///< null without foreign terms
  std::unique_ptr<smtlib::ForeignModel> foreign_model_;
  std::unordered_set<std::size_t> is_declared_;         ///< declarations of foreign terms
  std::unordered_map<std::string, std::size_t> named_;  ///< assertions in the solver: their indices
  std::size_t num_names_ = 0;
  std::vector<const Term*> switches_;            ///< constants that stand for assumptions
  std::vector<Literal> literals_;                ///< of the last query
  std::optional<std::size_t> false_assertion_;   ///< that made the last query unsatisfiable without a solver
  std::optional<std::size_t> false_assumption_;  ///< likewise
};

}  // namespace lumo::commands

#endif
