#include "lumo/commands/shell.h"

#include <algorithm>
#include <utility>

#include "lumo/commands/certify.h"
#include "lumo/commands/check_foreign_model.h"
#include "lumo/commands/complete_model.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/extend.h"
#include "lumo/smtlib/foreign_evaluation.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/value_printer.h"
#include "lumo/terms/characters.h"
#include "lumo/version.h"

namespace lumo::commands {

namespace {

using smtlib::Command;
using smtlib::CommandKind;

std::string double_quotes(std::string_view text)
{
  std::string doubled;
  for (const char c : text)
    doubled.append(c == '"' ? 2 : 1, c);
  return doubled;
}

std::string_view trim(std::string_view text)
{
  while (!text.empty() && is_blank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back()))
    text.remove_suffix(1);
  return text;
}

/// The part of `(assert TERM)` that is the term, as it was written.
std::string_view find_asserted_text(std::string_view text)
{
  text.remove_prefix(text.find("assert") + std::string_view("assert").size());
  text.remove_suffix(1);
  return trim(text);
}

}  // namespace

Shell::Shell(std::string name, const SolveMethod& method, std::ostream& out)
    : name_(std::move(name)), method_(method), out_(out)
{
  start_anew();
}

void Shell::start_anew()
{
  // The solver goes first, and the manager last.
  solver_.reset();
  model_.reset();
  queries_.reset();
  reader_.reset();
  foreign_.reset();
  mgr_ = std::make_unique<TermManager>();
  foreign_ = std::make_shared<smtlib::ForeignTerms>(*mgr_);
  has_foreign_ = false;
  reader_ = std::make_unique<smtlib::ConversationReader>(*mgr_, foreign_);
  queries_ = method_.eliminates ? make_eliminating_queries(*mgr_) : make_plain_queries();
  solver_ = std::make_unique<SolverStack>(*mgr_, [this] {
    return method_.solver_command ? solvers::SolverSession::start_command(*method_.solver_command)
                                  : solvers::SolverSession::start_builtin(has_foreign_);
  });
  solver_->limit_time(method_.seconds);
  settings_ = {};
  assertions_.clear();
  first_.clear();
  state_ = State::kOpen;
}

bool Shell::take(const smtlib::CommandText& text)
{
  try {
    const Command command = reader_->read(text);
    if (!has_foreign_ && (!foreign_->empty() || !foreign_->declarations.empty())) take_foreign();
    return take_command(command, text);
  } catch (const SubcommandFailure&) {
    throw;
  } catch (const smtlib::InputError& e) {
    answer_error(smtlib::make_located_message(name_, e.get_place(), e.what()));
  } catch (const Exception& e) {
    answer_error(smtlib::make_located_message(name_, text.place, make_sentence(e)));
  }
  return true;
}

bool Shell::take_command(const Command& command, const smtlib::CommandText& text)
{
  switch (command.kind) {
    case CommandKind::kAssert:
      add_assertion(command, text);
      break;
    case CommandKind::kCheckSat:
    case CommandKind::kCheckSatAssuming:
      check();
      return true;
    case CommandKind::kPush:
      push(command.number);
      break;
    case CommandKind::kPop:
      pop(command.number);
      break;
    case CommandKind::kReset:
      answer_success();  // as long as it is known whether that is wanted
      start_anew();
      return true;
    case CommandKind::kResetAssertions:
      reset_assertions();
      break;
    case CommandKind::kSetOption:
      set_option(command);
      return true;
    case CommandKind::kGet:
    case CommandKind::kGetValue:
      get(command);
      return true;
    case CommandKind::kEcho:
      answer('"' + std::string(command.symbol.text) + '"');
      return true;
    case CommandKind::kOther:
      refuse_unknown(command, text);
    case CommandKind::kExit:
      answer_success();
      return false;
    case CommandKind::kDeclare:
    case CommandKind::kDefine:
    case CommandKind::kDefineFunction:
    case CommandKind::kDeclareForeign:
    case CommandKind::kDefineSort:
    case CommandKind::kSetInfo:
    case CommandKind::kSetLogic:
    case CommandKind::kEnd:
      break;
  }
  answer_success();
  return true;
}

void Shell::refuse_unknown(const Command& command, const smtlib::CommandText& text)
{
  std::string sentence = "the command " + smtlib::make_excerpt(command.name) + " is not known to lumo";
  const std::string_view nearest = smtlib::CommandReader::find_nearest(command.name);
  if (!nearest.empty()) sentence.append("; perhaps ").append(nearest).append(" was meant");
  throw smtlib::InputError(text.place, sentence);
}

// -----------------------------------------------------------------------------------------------------------
// Answers

void Shell::answer(std::string_view text)
{
  print([&](std::ostream& out) { out << text << '\n'; });
}

void Shell::answer_success()
{
  if (settings_.get_switches().print_success) answer("success");
}

void Shell::answer_error(std::string_view sentence)
{
  has_failed_ = true;
  answer("(error \"" + double_quotes(sentence) + "\")");
}

void Shell::print(const std::function<void(std::ostream& out)>& print) { write_output(out_, print); }

// -----------------------------------------------------------------------------------------------------------
// Options and information

void Shell::set_option(const Command& command)
{
  const std::string_view keyword = command.keyword.text;
  const std::string_view value = trim(command.content);
  const bool is_global = settings_.get_switches().global_declarations;
  const bool changes_global =
      keyword == ":global-declarations" && (value == "true") != is_global && reader_->has_begun();
  if (changes_global) {
    throw Exception(
        "the option :global-declarations was set after a declaration or a push, but it can only be "
        "set before");
  }
  switch (settings_.set(keyword, value)) {
    case ShellSettings::Effect::kNone:
      answer("unsupported");
      return;
    case ShellSettings::Effect::kPassOn:
      solver_->pass_option(std::string(keyword) + ' ' + std::string(value));
      break;
    case ShellSettings::Effect::kSet:
      break;
  }
  const ShellSettings::Switches& switches = settings_.get_switches();
  reader_->keep_declarations(switches.global_declarations);
  solver_->want_cores(switches.produce_unsat_cores);
  solver_->want_unsat_assumptions(switches.produce_unsat_assumptions);
  answer_success();
}

void Shell::get_option(const Command& command)
{
  answer(settings_.get(command.keyword.text).value_or("unsupported"));
}

void Shell::get_info(const Command& command)
{
  const std::string_view keyword = command.keyword.text;
  std::string value;
  if (keyword == ":name") value = "\"lumo\"";
  if (keyword == ":version") value = '"' + std::string(kVersion) + '"';
  if (keyword == ":authors") value = "\"the lumo authors\"";
  if (keyword == ":error-behavior") value = "continued-execution";
  if (keyword == ":assertion-stack-levels") value = std::to_string(first_.size());
  if (keyword == ":reason-unknown") value = make_reason();
  answer(value.empty() ? "unsupported" : '(' + std::string(keyword) + ' ' + value + ')');
}

std::string Shell::make_reason()
{
  require(State::kUnknown, "unknown");
  if (!failure_.empty()) return '"' + double_quotes(failure_) + '"';
  const std::string reason = solver_->get_reason();
  return reason.empty() ? "incomplete" : reason;
}

// -----------------------------------------------------------------------------------------------------------
// Assertions and levels

void Shell::add_assertion(const Command& command, const smtlib::CommandText& text)
{
  queries_->add_assertion(command.term);
  const std::string_view kept =
      settings_.get_switches().produce_assertions ? find_asserted_text(text.text) : std::string_view();
  assertions_.push_back({text.place, std::string(reader_->get_label().value_or("")), std::string(kept)});
  state_ = State::kOpen;
}

void Shell::push(std::size_t number)
{
  for (std::size_t i = 0; i < number; ++i) {
    queries_->push();
    first_.push_back(assertions_.size());
  }
  state_ = State::kOpen;
}

void Shell::pop(std::size_t number)
{
  state_ = State::kOpen;
  if (number == 0) return;
  const std::size_t level = first_.size() - number;
  assertions_.resize(first_[level]);
  first_.resize(level);
  queries_->pop(number);
  solver_->pop_to(level);
}

void Shell::reset_assertions()
{
  queries_->reset();
  solver_->reset();
  assertions_.clear();
  first_.clear();
  state_ = State::kOpen;
}

// -----------------------------------------------------------------------------------------------------------
// Queries

void Shell::check()
{
  std::vector<const Term*> assumptions;
  assumptions_.clear();
  for (const smtlib::WrittenTerm& assumption : reader_->get_terms()) {
    assumptions.push_back(assumption.term);
    assumptions_.emplace_back(assumption.text);
  }
  failure_.clear();
  state_ = State::kOpen;
  const solvers::Answer found = find_answer(assumptions);
  switch (found) {
    case solvers::Answer::kSat:
      state_ = State::kSat;
      break;
    case solvers::Answer::kUnsat:
      state_ = State::kUnsat;
      break;
    case solvers::Answer::kUnknown:
      state_ = State::kUnknown;
      break;
  }
  answer(to_string(found));
  if (prints_models_ && state_ == State::kSat) get_model();
}

solvers::Answer Shell::find_answer(const std::vector<const Term*>& assumptions)
{
  model_.reset();
  try {
    const SolverQuery query = queries_->query(assumptions);
    const solvers::Solution solution = solver_->check(query, first_.size());
    switch (solution.answer) {
      case solvers::Answer::kSat:
        return complete_model(solution.model, assumptions) ? solvers::Answer::kSat
                                                           : solvers::Answer::kUnknown;
      case solvers::Answer::kUnsat:
        return certify(query, assumptions);
      case solvers::Answer::kUnknown:
        break;
    }
    return solvers::Answer::kUnknown;
  } catch (const solvers::SolverError& e) {
    failure_ = make_sentence(e);
    answer_error(failure_);
    return solvers::Answer::kUnknown;
  }
}

solvers::Answer Shell::certify(const SolverQuery& query, const std::vector<const Term*>& assumptions)
{
  if (!method_.certification.is_wanted && certificates_ == nullptr) return solvers::Answer::kUnsat;
  if (has_foreign_) {
    failure_ = "there are certificates only of Booleans and bit-vectors, so there is no answer";
    answer_error(failure_);
    return solvers::Answer::kUnknown;
  }
  std::vector<const Term*> told = solver_->list_additions();
  for (const Addition& addition : query.additions) {
    if (addition.level > first_.size()) told.push_back(addition.term);  // for this query only
  }
  told.insert(told.end(), query.assumptions.begin(), query.assumptions.end());
  const std::string certificate = make_query_certificate(*mgr_, *queries_, assumptions, told);
  if (certificates_ != nullptr) {
    *certificates_ << (has_certificate_ ? "(reset)\n" : "") << certificate << std::flush;
    has_certificate_ = true;
  }
  if (!method_.certification.is_wanted) return solvers::Answer::kUnsat;
  try {
    const solvers::Solution solution = confirm_unsat(certificate, method_.certification, method_.seconds);
    failure_ = solution.reason;
  } catch (const CheckFailure& e) {
    failure_ = make_sentence(e) + ", so there is no answer";
    has_failed_check_ = true;
  }
  if (failure_.empty()) return solvers::Answer::kUnsat;
  answer_error(failure_);
  return solvers::Answer::kUnknown;
}

void Shell::take_foreign()
{
  has_foreign_ = true;
  std::unique_ptr<QuerySource> plain = make_plain_queries();
  std::size_t level = 0;
  for (std::size_t i = 0; i <= assertions_.size(); ++i) {
    for (; level < first_.size() && first_[level] == i; ++level)
      plain->push();
    if (i < assertions_.size()) plain->add_assertion(queries_->get_assertions()[i]);
  }
  queries_ = std::move(plain);
  solver_->take_foreign(*foreign_);
}

std::string Shell::check_foreign(const std::vector<const Term*>& assumptions)
{
  smtlib::Script script;
  script.foreign = foreign_;
  for (std::size_t i = 0; i < assertions_.size(); ++i)
    script.assertions.push_back({queries_->get_assertions()[i], assertions_[i].place});
  for (const Term* assumption : assumptions)
    script.assertions.push_back({assumption, {}});
  const ForeignCheck check = check_foreign_model(script, *solver_->get_foreign_model(), *model_);
  if (!check.violated) return {};
  if (*check.violated >= assertions_.size()) {
    return "the assumption " + smtlib::make_excerpt(assumptions_[*check.violated - assertions_.size()]) +
           " is false under the model, so there is no answer";
  }
  return smtlib::make_located_message(name_, assertions_[*check.violated].place,
                                      "this assertion is false under the model, so there is no answer");
}

/// The value that lumo computes, or else what the solver says.
std::string Shell::make_value_text(const Term* t)
{
  const std::vector<const Term*> terms{t};
  const smtlib::ForeignTerms::Needs needs = foreign_->find_needs(terms);
  smtlib::ForeignEvaluation evaluation(*foreign_, needs.terms, *solver_->get_foreign_model(), *model_);
  evaluation.evaluate_rest(smtlib::ForeignForms(*foreign_));
  bool is_known = !t->get_sort()->is_opaque();
  for (const smtlib::ForeignTerms::Index term : needs.terms) {
    const bool needs_value = !foreign_->get_placeholder(term)->get_sort()->is_opaque();
    const bool has_value = evaluation.get_source(term) != smtlib::ForeignEvaluation::Source::kUnknown;
    is_known = is_known && (has_value || !needs_value);
  }
  return is_known ? model_->get_value(t)->get_symbol()->get_name() : solver_->ask_for_value(t);
}

bool Shell::complete_model(const std::vector<ModelValue>& values, const std::vector<const Term*>& assumptions)
{
  model_ = std::make_unique<ModelStore>(mgr_.get());
  try {
    define_values(*model_, values);
    queries_->extend(*model_);
    if (has_foreign_) {
      failure_ = check_foreign(assumptions);
      if (failure_.empty()) return true;
    }
    const std::size_t violated = find_violated(*mgr_, queries_->get_assertions(), *model_);
    if (!failure_.empty()) {
      // A foreign term decides.
    } else if (violated < assertions_.size()) {
      failure_ = smtlib::make_located_message(
          name_, assertions_[violated].place,
          "this assertion is false under the extended model, so there is no answer");
    } else if (const std::size_t i = find_violated(*mgr_, assumptions, *model_); i < assumptions.size()) {
      failure_ = "the assumption " + smtlib::make_excerpt(assumptions_[i]) +
                 " is false under the extended model, so there is no answer";
    }
  } catch (const Exception& e) {
    failure_ = "the model cannot be extended: " + make_sentence(e) + ", so there is no answer";
  }
  if (failure_.empty()) return true;
  model_.reset();
  has_failed_check_ = true;
  answer_error(failure_);
  return false;
}

// -----------------------------------------------------------------------------------------------------------
// Questions on the last query

void Shell::get(const Command& command)
{
  struct Row
  {
    std::string_view name;
    void (Shell::*action)();
  };
  static constexpr Row kRows[] = {
      {"get-assertions", &Shell::get_assertions}, {"get-assignment", &Shell::get_assignment},
      {"get-model", &Shell::get_model},           {"get-unsat-assumptions", &Shell::get_unsat_assumptions},
      {"get-unsat-core", &Shell::get_unsat_core}, {"get-value", &Shell::get_value},
  };
  for (const Row& row : kRows) {
    if (command.name == row.name) return (this->*row.action)();
  }
  if (command.name == "get-info") return get_info(command);
  if (command.name == "get-option") return get_option(command);
  answer("unsupported");
}

void Shell::require(State state, std::string_view wanted) const
{
  if (state_ == state) return;
  throw Exception("this can be asked only after the answer " + std::string(wanted) +
                  (state_ == State::kOpen ? ", and before anything else is asserted, pushed or popped" : ""));
}

void Shell::require_option(bool is_set, std::string_view keyword)
{
  if (!is_set) throw Exception("this can be asked only if the option " + std::string(keyword) + " is true");
}

void Shell::get_model()
{
  require_option(settings_.get_switches().produce_models, ":produce-models");
  require(State::kSat, "sat");
  std::vector<smtlib::TextValue> values;
  for (const Term* constant : reader_->list_constants())
    values.push_back({reader_->get_text_name(constant), model_->get_value(constant)});
  const std::vector<std::string> texts =
      has_foreign_ ? solver_->get_foreign_model()->get_texts() : std::vector<std::string>();
  print([&](std::ostream& out) { smtlib::print_named_model(out, values, texts); });
}

void Shell::get_value()
{
  require_option(settings_.get_switches().produce_models, ":produce-models");
  require(State::kSat, "sat");
  if (has_foreign_) {
    std::string values;
    for (const smtlib::WrittenTerm& term : reader_->get_terms()) {
      values +=
          (values.empty() ? "((" : "\n (") + std::string(term.text) + ' ' + make_value_text(term.term) + ')';
    }
    answer(values + ')');
    return;
  }
  std::vector<smtlib::TextValue> values;
  for (const smtlib::WrittenTerm& term : reader_->get_terms())
    values.push_back({term.text, model_->get_value(term.term)});
  print([&](std::ostream& out) { smtlib::print_values(out, values); });
}

void Shell::get_assignment()
{
  require_option(settings_.get_switches().produce_assignments, ":produce-assignments");
  require(State::kSat, "sat");
  std::vector<std::string> names;
  std::vector<const Term*> terms;
  for (const smtlib::NamedTerm& named : reader_->get_named_terms()) {
    if (!named.term->get_symbol()->get_output_type()->is_bool()) continue;
    names.push_back(smtlib::make_symbol_text(named.name));
    terms.push_back(named.term);
  }
  std::vector<smtlib::TextValue> values;
  for (std::size_t i = 0; i < names.size(); ++i)
    values.push_back({names[i], model_->get_value(terms[i])});
  print([&](std::ostream& out) { smtlib::print_values(out, values); });
}

void Shell::get_assertions()
{
  require_option(settings_.get_switches().produce_assertions, ":produce-assertions");
  print([&](std::ostream& out) {
    std::string_view separator;
    out << '(';
    for (const Assertion& assertion : assertions_) {
      out << separator << assertion.text;
      separator = "\n ";
    }
    out << ")\n";
  });
}

void Shell::get_unsat_core()
{
  require_option(settings_.get_switches().produce_unsat_cores, ":produce-unsat-cores");
  require(State::kUnsat, "unsat");
  std::string core;
  for (const std::size_t index : solver_->list_core()) {
    const std::string& label = assertions_[index].label;
    if (!label.empty()) core += (core.empty() ? "" : " ") + smtlib::make_symbol_text(label);
  }
  answer('(' + core + ')');
}

void Shell::get_unsat_assumptions()
{
  require_option(settings_.get_switches().produce_unsat_assumptions, ":produce-unsat-assumptions");
  require(State::kUnsat, "unsat");
  std::string list;
  for (const std::size_t index : solver_->list_unsat_assumptions())
    list += (list.empty() ? "" : " ") + assumptions_[index];
  answer('(' + list + ')');
}

}  // namespace lumo::commands
