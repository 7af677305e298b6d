#ifndef LUMO_COMMANDS_SHELL_H
#define LUMO_COMMANDS_SHELL_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/commands/query_source.h"
#include "lumo/commands/shell_settings.h"
#include "lumo/commands/solve_script.h"
#include "lumo/commands/solver_stack.h"
#include "lumo/model/model_store.h"
#include "lumo/smtlib/conversation_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// Holds a conversation as an SMT-LIB 2 solver does: takes commands one by one and prints what each is answered.
///
/// - A `sat` is printed only when every assertion and assumption is true under the extended model. Values that are asked
///   for afterwards are those of this model.
/// - If the method wants it, an `unsat` is printed only when the checker has confirmed its certificate.
/// - A command that is wrong is answered `(error "...")`, and everything else is as it was before.
/// - A solver that fails gets `(error "...")` and then the answer `unknown`; the next query starts another one.
class Shell
{
 public:
  /// Texts come under that name in messages. Answers go to the stream, which must outlive the object.
  Shell(std::string name, const SolveMethod& method, std::ostream& out);

  /// Whether a model is printed after each `sat`, without being asked for.
  void print_models(bool prints) { prints_models_ = prints; }
  /// Prints the certificates of all queries that are unsat to the stream, which must outlive the object, separated
  /// by `(reset)`.
  void write_certificates(std::ostream& out) { certificates_ = &out; }
  /// Answers a command; false if the conversation is over.
  bool take(const smtlib::CommandText& text);
  /// Whether some command was answered by an error.
  [[nodiscard]] bool has_failed() const { return has_failed_; }
  /// Whether a model did not make all assertions true, or a certificate was refuted.
  [[nodiscard]] bool has_failed_check() const { return has_failed_check_; }

 private:
  enum class State : std::uint8_t
  {
    kOpen,  ///< something was asserted or popped since the last query, or there was none
    kSat,
    kUnsat,
    kUnknown,
  };
  struct Assertion
  {
    smtlib::Place place;
    std::string label;  ///< empty if it has none
    std::string text;   ///< empty if assertions are not to be produced
  };

  void start_anew();
  bool take_command(const smtlib::Command& command, const smtlib::CommandText& text);
  [[noreturn]] static void refuse_unknown(const smtlib::Command& command, const smtlib::CommandText& text);
  void answer(std::string_view text);
  void answer_success();
  void answer_error(std::string_view sentence);

  void set_option(const smtlib::Command& command);
  void get_option(const smtlib::Command& command);
  void get_info(const smtlib::Command& command);
  [[nodiscard]] std::string make_reason();

  void add_assertion(const smtlib::Command& command, const smtlib::CommandText& text);
  void push(std::size_t number);
  void pop(std::size_t number);
  void reset_assertions();
  void check();
  /// The answer; failures of the solver are told.
  [[nodiscard]] solvers::Answer find_answer(const std::vector<const Term*>& assumptions);
  /// Prints the certificate of a query that is unsat, and has it confirmed, as far as that is wanted. Returns the
  /// answer: unknown, with an error, if the certificate is not confirmed.
  [[nodiscard]] solvers::Answer certify(const SolverQuery& query,
                                        const std::vector<const Term*>& assumptions);
  /// From now on, texts may contain terms of other theories: they are told to the solver as they are.
  void take_foreign();
  /// Checks the model of a query with foreign terms; the part of the sentence after the place, or nothing.
  [[nodiscard]] std::string check_foreign(const std::vector<const Term*>& assumptions);
  [[nodiscard]] std::string make_value_text(const Term* t);
  /// Makes the solver's model one of the assertions and assumptions; false, with an error, if it is not.
  bool complete_model(const std::vector<ModelValue>& values, const std::vector<const Term*>& assumptions);

  void get(const smtlib::Command& command);
  void get_model();
  void get_value();
  void get_assignment();
  void get_assertions();
  void get_unsat_core();
  void get_unsat_assumptions();
  /// Refuses what needs another answer of the last query, or an option that is not set.
  void require(State state, std::string_view wanted) const;
  static void require_option(bool is_set, std::string_view keyword);
  /// Prints what needs more than one line, or many pieces.
  void print(const std::function<void(std::ostream& out)>& print);

  std::string name_;
  SolveMethod method_;
  std::ostream& out_;
  bool prints_models_ = false;
  bool has_failed_ = false;
  bool has_failed_check_ = false;
  std::ostream* certificates_ = nullptr;
  bool has_certificate_ = false;  ///< whether one was printed

  // Made anew by `reset`, in this order
  std::unique_ptr<TermManager> mgr_;
  std::shared_ptr<smtlib::ForeignTerms> foreign_;
  bool has_foreign_ = false;
  std::unique_ptr<smtlib::ConversationReader> reader_;
  std::unique_ptr<QuerySource> queries_;
  std::unique_ptr<SolverStack> solver_;
  std::unique_ptr<ModelStore> model_;  ///< of the last query, if it was sat
  ShellSettings settings_;

  std::vector<Assertion> assertions_;     ///< those of `queries_`
  std::vector<std::size_t> first_;        ///< assertion of each level but the lowest
  std::vector<std::string> assumptions_;  ///< of the last query, as they were written
  State state_ = State::kOpen;
  std::string failure_;  ///< of the solver at the last query
};

}  // namespace lumo::commands

#endif
