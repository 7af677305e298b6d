#include "lumo/solvers/z3_server.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <new>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "lumo/smtlib/command_splitter.h"
#include "lumo/smtlib/conversation_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/solvers/answer.h"
#include "lumo/solvers/child_ends.h"
#include "lumo/solvers/forked_process.h"
#include "lumo/solvers/z3_builder.h"
#include "lumo/solvers/z3_session.h"
#include "lumo/solvers/z3_solver.h"

namespace lumo::solvers {

namespace {

using smtlib::Command;
using smtlib::CommandKind;

std::string make_error(std::string_view sentence)
{
  std::string text = "(error \"";
  for (const char c : sentence)
    text += c == '"' ? "\"\"" : std::string(1, c);
  return text + "\")";
}

/// Z3's solver, told by commands.
class Z3Server
{
 public:
  Z3Server();
  Z3Server(const Z3Server&) = delete;
  Z3Server& operator=(const Z3Server&) = delete;
  ~Z3Server() { Z3_solver_dec_ref(z3_, solver_); }

  /// Does what a command says and returns the answer, which may be empty.
  std::string take(const smtlib::CommandText& text);
  [[nodiscard]] bool has_ended() const { return has_ended_; }

 private:
  struct Assertion
  {
    const Term* term;
    std::string label;  ///< empty if it has none
  };
  struct Assumption
  {
    std::string text;
    Z3_ast expression;
  };

  std::string do_command(const Command& command);
  std::string set_option(const Command& command);
  void set_parameter(std::string_view name, bool value);
  [[nodiscard]] bool set_number(std::string_view name, std::string_view digits);
  /// Gives Z3 the assertions that wait, all at once, so that it is known which terms they share.
  void send_assertions();
  void pop(unsigned long number);
  std::string check();
  std::string print_model();
  std::string print_value(const DataType* sort, Z3_ast value);
  std::string print_core(bool of_assumptions);
  std::string print_answer(const Command& command);

  TermManager mgr_;
  smtlib::ConversationReader commands_{mgr_};
  Z3Session z3_;
  Z3Builder builder_{mgr_, z3_};
  Z3_solver solver_;
  std::vector<Assertion> waiting_;
  std::vector<Assumption> assumptions_;  ///< of the last query
  bool has_ended_ = false;
};

Z3Server::Z3Server() : solver_(Z3_mk_solver_for_logic(z3_, Z3_mk_string_symbol(z3_, "QF_BV")))
{
  check_z3(z3_);
  Z3_solver_inc_ref(z3_, solver_);
  set_parameter("ctrl_c", false);
  set_parameter("model", true);
}

std::string Z3Server::take(const smtlib::CommandText& text)
{
  try {
    return do_command(commands_.read(text));
  } catch (const SolverError& e) {
    has_ended_ = true;
    return make_error(e.what());
  } catch (const std::bad_alloc&) {
    has_ended_ = true;
    return make_error("the built-in solver ran out of memory");
  } catch (const Exception& e) {
    return make_error(e.what());
  }
}

std::string Z3Server::do_command(const Command& command)
{
  switch (command.kind) {
    case CommandKind::kAssert:
      waiting_.push_back({command.term, std::string(commands_.get_label().value_or(""))});
      return {};
    case CommandKind::kPush:
      send_assertions();
      for (unsigned long i = 0; i < command.number; ++i)
        Z3_solver_push(z3_, solver_);
      check_z3(z3_);
      return {};
    case CommandKind::kPop:
      pop(command.number);
      return {};
    case CommandKind::kCheckSat:
    case CommandKind::kCheckSatAssuming:
      return check();
    case CommandKind::kGet:
      return print_answer(command);
    case CommandKind::kEcho:
      return '"' + std::string(command.symbol.text) + '"';
    case CommandKind::kSetOption:
      return set_option(command);
    case CommandKind::kExit:
    case CommandKind::kEnd:
      has_ended_ = true;
      return {};
    case CommandKind::kDeclare:
    case CommandKind::kDefine:
    case CommandKind::kDefineFunction:
    case CommandKind::kDeclareForeign:
    case CommandKind::kDefineSort:
    case CommandKind::kSetInfo:
    case CommandKind::kSetLogic:
      return {};
    case CommandKind::kGetValue:
    case CommandKind::kOther:
    case CommandKind::kReset:
    case CommandKind::kResetAssertions:
      break;
  }
  return "unsupported";
}

std::string Z3Server::set_option(const Command& command)
{
  const std::string_view option = command.keyword.text;
  if (option.starts_with(":produce-") || option == ":print-success") return {};
  constexpr std::string_view kBlanks = " \t\r\n";
  std::string_view value = command.content;
  value.remove_prefix(std::min(value.find_first_not_of(kBlanks), value.size()));
  value = value.substr(0, value.find_last_not_of(kBlanks) + 1);
  const bool is_seed = option == ":random-seed" || option == ":seed";
  const bool is_set = (is_seed && set_number("random_seed", value)) ||
                      ((option == ":timeout" || option == ":rlimit") && set_number(option.substr(1), value));
  return is_set ? std::string() : "unsupported";
}

void Z3Server::set_parameter(std::string_view name, bool value)
{
  const Z3_params params = Z3_mk_params(z3_);
  Z3_params_inc_ref(z3_, params);
  Z3_params_set_bool(z3_, params, Z3_mk_string_symbol(z3_, std::string(name).c_str()), value);
  Z3_solver_set_params(z3_, solver_, params);
  Z3_params_dec_ref(z3_, params);
  check_z3(z3_);
}

bool Z3Server::set_number(std::string_view name, std::string_view digits)
{
  unsigned number = 0;
  const char* end = digits.data() + digits.size();
  const auto [last, failure] = std::from_chars(digits.data(), end, number);
  if (failure != std::errc() || last != end) return false;
  const Z3_params params = Z3_mk_params(z3_);
  Z3_params_inc_ref(z3_, params);
  Z3_params_set_uint(z3_, params, Z3_mk_string_symbol(z3_, std::string(name).c_str()), number);
  Z3_solver_set_params(z3_, solver_, params);
  Z3_params_dec_ref(z3_, params);
  return Z3_get_error_code(z3_) == Z3_OK;
}

void Z3Server::send_assertions()
{
  std::vector<const Term*> terms;
  terms.reserve(waiting_.size());
  for (const Assertion& assertion : waiting_)
    terms.push_back(assertion.term);
  builder_.count_uses(terms);
  for (const Assertion& assertion : waiting_) {
    const Z3_ast expression = builder_.build(assertion.term);
    if (assertion.label.empty()) {
      Z3_solver_assert(z3_, solver_, expression);
    } else {
      const Z3_symbol name = Z3_mk_string_symbol(z3_, assertion.label.c_str());
      Z3_solver_assert_and_track(z3_, solver_, expression, Z3_mk_const(z3_, name, Z3_mk_bool_sort(z3_)));
    }
    check_z3(z3_);
  }
  waiting_.clear();
}

void Z3Server::pop(unsigned long number)
{
  // What waits belongs to the highest level.
  if (number == 0) return;
  waiting_.clear();
  Z3_solver_pop(z3_, solver_, static_cast<unsigned>(number));
  check_z3(z3_);
}

std::string Z3Server::check()
{
  send_assertions();
  assumptions_.clear();
  std::vector<Z3_ast> expressions;
  for (const smtlib::WrittenTerm& assumption : commands_.get_terms()) {
    expressions.push_back(builder_.build(assumption.term));
    assumptions_.push_back({std::string(assumption.text), expressions.back()});
  }
  const Z3_lbool answer = Z3_solver_check_assumptions(z3_, solver_, static_cast<unsigned>(expressions.size()),
                                                      expressions.data());
  switch (answer) {
    case Z3_L_TRUE:
      return "sat";
    case Z3_L_FALSE:
      return "unsat";
    case Z3_L_UNDEF:
      break;
  }
  return "unknown";
}

std::string Z3Server::print_answer(const Command& command)
{
  if (command.name == "get-model") return print_model();
  if (command.name == "get-unsat-core") return print_core(false);
  if (command.name == "get-unsat-assumptions") return print_core(true);
  if (command.name == "get-info" && command.keyword.text == ":reason-unknown") {
    return "(:reason-unknown \"" + std::string(Z3_solver_get_reason_unknown(z3_, solver_)) + "\")";
  }
  return "unsupported";
}

std::string Z3Server::print_model()
{
  const Z3_model model = Z3_solver_get_model(z3_, solver_);
  check_z3(z3_);
  Z3_model_inc_ref(z3_, model);
  std::string text = "(\n";
  for (const Term* constant : commands_.list_constants()) {
    const Z3_func_decl declaration = Z3_get_app_decl(z3_, Z3_to_app(z3_, builder_.build(constant)));
    const Z3_ast value = Z3_model_get_const_interp(z3_, model, declaration);
    check_z3(z3_);
    if (value == nullptr) continue;
    const DataType* sort = constant->get_symbol()->get_output_type();
    text += "(define-fun " + smtlib::make_symbol_text(commands_.get_text_name(constant)) + " () " +
            sort->to_string() + ' ' + print_value(sort, value) + ")\n";
  }
  Z3_model_dec_ref(z3_, model);
  return text + ")";
}

std::string Z3Server::print_value(const DataType* sort, Z3_ast value)
{
  if (sort->is_bool()) {
    const Z3_lbool truth = Z3_get_bool_value(z3_, value);
    if (truth != Z3_L_UNDEF) return truth == Z3_L_TRUE ? "true" : "false";
  } else if (Z3_get_ast_kind(z3_, value) == Z3_NUMERAL_AST) {
    const std::string bits = Z3_get_numeral_binary_string(z3_, value);
    check_z3(z3_);
    const std::size_t width = sort->get_width();
    return "#b" + std::string(width - std::min(width, bits.size()), '0') + bits;
  }
  throw SolverError("Z3 gave a model in which a constant has a value that is not a literal");
}

/// The names of assertions in the core, or the assumptions in it, as they were written.
std::string Z3Server::print_core(bool of_assumptions)
{
  const Z3_ast_vector core = Z3_solver_get_unsat_core(z3_, solver_);
  check_z3(z3_);
  Z3_ast_vector_inc_ref(z3_, core);
  std::string text = "(";
  for (unsigned i = 0; i < Z3_ast_vector_size(z3_, core); ++i) {
    const Z3_ast member = Z3_ast_vector_get(z3_, core, i);
    bool is_assumption = false;
    for (const Assumption& assumption : assumptions_) {
      if (!Z3_is_eq_ast(z3_, assumption.expression, member)) continue;
      if (of_assumptions) text += (text.size() > 1 ? " " : "") + assumption.text;
      is_assumption = true;
    }
    if (of_assumptions || is_assumption) continue;
    const Z3_symbol name = Z3_get_decl_name(z3_, Z3_get_app_decl(z3_, Z3_to_app(z3_, member)));
    text += (text.size() > 1 ? " " : "") + smtlib::make_symbol_text(Z3_get_symbol_string(z3_, name));
  }
  Z3_ast_vector_dec_ref(z3_, core);
  return text + ")";
}

}  // namespace

namespace {

/// Answers commands until they end, or until `take` has ended the conversation.
template <class Take, class HasEnded>
void serve(int in, int out, const Take& take, const HasEnded& has_ended)
{
  smtlib::CommandSplitter commands;
  std::array<char, 65536> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
  while (!has_ended()) {
    const ssize_t num_read = read(in, buffer.data(), buffer.size());
    if (num_read < 0 && errno == EINTR) continue;
    if (num_read <= 0) return;
    commands.add({buffer.data(), static_cast<std::size_t>(num_read)});
    for (auto command = commands.take(); command && !has_ended(); command = commands.take()) {
      const std::string answer = take(*command);
      if (answer.empty()) continue;
      // Before the answer, since the session may end this process as soon as it has it.
      save_coverage_counters();
      write_all(out, answer + '\n');
    }
  }
}

}  // namespace

void serve_z3(int in, int out)
{
  limit_z3_memory();
  Z3Server server;
  serve(
      in, out, [&](const smtlib::CommandText& command) { return server.take(command); },
      [&] { return server.has_ended(); });
}

void serve_z3_text(int in, int out)
{
  limit_z3_memory();
  const Z3Session z3;
  bool has_ended = false;
  const auto take = [&](const smtlib::CommandText& command) -> std::string {
    try {
      std::string answer = Z3_eval_smtlib2_string(z3, std::string(command.text).c_str());
      while (!answer.empty() && answer.back() == '\n')
        answer.pop_back();
      return answer;
    } catch (const std::bad_alloc&) {
      has_ended = true;
      return make_error("the built-in solver ran out of memory");
    }
  };
  serve(in, out, take, [&] { return has_ended; });
}

}  // namespace lumo::solvers
