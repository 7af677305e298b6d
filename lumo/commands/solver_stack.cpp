#include "lumo/commands/solver_stack.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "lumo/smtlib/assertion_printer.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/lexer.h"
#include "lumo/smtlib/model_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/solvers/solver_failures.h"

namespace lumo::commands {

namespace {

using solvers::Answer;
using solvers::Deadline;
using solvers::Solution;
using solvers::SolverError;

// Names that no constant of a conversation has.
constexpr std::string_view kAssertionPrefix = "lumo!a!";
constexpr const char* kSwitchPrefix = "lumo!b";

/// How long a solver may take for what needs no search.
constexpr double kSecondsForMore = 60;

bool is_constant(const Term* t) { return t->get_symbol()->get_kind() == Kind::kConstant; }

std::vector<std::size_t> make_sorted_set(std::vector<std::size_t> indices)
{
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  return indices;
}

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// What is wanted

void SolverStack::change(bool& option, bool value)
{
  if (option != value) end_session();
  option = value;
}

void SolverStack::pass_option(const std::string& option) { options_.push_back(option); }

void SolverStack::drop_options()
{
  if (!options_.empty()) end_session();
  options_.clear();
}

void SolverStack::take_foreign(const smtlib::ForeignTerms& foreign)
{
  reset();
  foreign_ = std::make_unique<smtlib::ForeignForms>(foreign);
}

void SolverStack::pop_to(std::size_t level)
{
  if (levels_.size() > level + 1) levels_.resize(level + 1);
  kept_ = std::min(kept_, level);
}

void SolverStack::reset()
{
  levels_.assign(1, {});
  end_session();
}

std::vector<const Term*> SolverStack::list_additions() const
{
  std::vector<const Term*> terms;
  for (const Level& level : levels_) {
    for (const Addition& addition : level.additions)
      terms.push_back(addition.term);
  }
  return terms;
}

// -----------------------------------------------------------------------------------------------------------
// Queries

Solution SolverStack::check(const SolverQuery& query, std::size_t num_levels)
{
  try {
    Solution solution = find_answer(query, num_levels);
    pop_to(num_levels);
    return solution;
  } catch (const SolverError&) {
    pop_to(num_levels);
    end_session();
    throw;
  }
}

Solution SolverStack::find_answer(const SolverQuery& query, std::size_t num_levels)
{
  levels_.resize(num_levels + 1);
  if (foreign_ != nullptr)
    foreign_model_ = std::make_unique<smtlib::ForeignModel>(mgr_, foreign_->get_terms());
  for (const Addition& addition : query.additions)
    add(addition);
  take_assumptions(query, num_levels);
  if (const std::optional<Answer> answer = find_plain_answer()) return {*answer, {}, {}};
  return ask_solver();
}

void SolverStack::add(const Addition& addition)
{
  if (addition.term == mgr_.make_true()) return;
  if (addition.level >= levels_.size()) levels_.resize(addition.level + 1);
  Level& level = levels_[addition.level];
  if (addition.term == mgr_.make_false() && !level.false_assertion)
    level.false_assertion = addition.assertion;
  level.additions.push_back(addition);
}

void SolverStack::take_assumptions(const SolverQuery& query, std::size_t num_levels)
{
  literals_.clear();
  false_assumption_.reset();
  for (std::size_t i = 0; i < query.assumptions.size(); ++i) {
    const Term* form = query.assumptions[i];
    const bool is_negation = form->get_symbol()->get_kind() == Kind::kNot;
    const Term* atom = is_negation ? form->get_arg(0) : form;
    if (form == mgr_.make_true()) continue;
    if (form == mgr_.make_false()) false_assumption_ = i;
    const bool is_foreign =
        foreign_ != nullptr && foreign_->get_terms().find(atom) != smtlib::ForeignTerms::kNone;
    if (is_constant(atom) && !is_foreign) {
      literals_.push_back({atom, is_negation, i});
      continue;
    }
    // Solvers take literals only: b, where b implies the form.
    const Term* b = get_switch(i);
    const Term* off = mgr_.make_term(mgr_.make_not_symbol(), {b});
    const Term* implication = mgr_.make_term(mgr_.make_or_symbol(), {off, form});
    add({num_levels + 1, implication, Addition::kNoAssertion});
    literals_.push_back({b, false, i});
  }
}

const Term* SolverStack::get_switch(std::size_t number)
{
  while (switches_.size() <= number)
    switches_.push_back(mgr_.make_fresh_constant(kSwitchPrefix, mgr_.make_bool_type()));
  return switches_[number];
}

std::optional<Answer> SolverStack::find_plain_answer()
{
  false_assertion_.reset();
  bool is_empty = literals_.empty();
  for (const Level& level : levels_) {
    if (level.false_assertion) false_assertion_ = level.false_assertion;
    if (!level.additions.empty()) is_empty = false;
  }
  if (false_assertion_ || false_assumption_) return Answer::kUnsat;
  return is_empty ? std::optional(Answer::kSat) : std::nullopt;
}

Solution SolverStack::ask_solver()
{
  const Deadline deadline(seconds_);
  if (session_ == nullptr) start(deadline);
  tell_options(deadline);
  tell_levels();
  const std::string answer = session_->ask(make_question(), deadline);
  if (answer == "sat") return {Answer::kSat, read_model(session_->ask("(get-model)\n", deadline)), {}};
  if (answer == "unsat") return {Answer::kUnsat, {}, {}};
  // Some programs have a limit of their own and call its end so.
  if (answer == "unknown" || answer == "timeout") return {Answer::kUnknown, {}, {}};
  session_->fail("printed " + solvers::make_one_line(answer) + " instead of an answer");
}

std::string SolverStack::make_question()
{
  if (literals_.empty()) return "(check-sat)\n";
  std::ostringstream text;
  std::string question = "(check-sat-assuming (";
  for (const Literal& literal : literals_) {
    if (note_constant(literal.constant)) smtlib::print_declaration(text, literal.constant);
    const std::string name = smtlib::make_symbol_text(literal.constant->get_symbol()->get_name());
    question += (literal.is_negated ? "(not " + name + ")" : name) + ' ';
  }
  return text.str() + question + "))\n";
}

std::vector<ModelValue> SolverStack::read_model(const std::string& text)
{
  std::vector<const Term*> constants;
  for (const Known& known : known_)
    constants.insert(constants.end(), known.constants.begin(), known.constants.end());
  try {
    if (foreign_ == nullptr) return smtlib::read_model(mgr_, constants, text);
    foreign_model_->read(constants, text);
    return foreign_model_->get_values();
  } catch (const smtlib::InputError& e) {
    session_->fail("answered sat, but its model cannot be read at line " +
                   std::to_string(e.get_place().line) + ", column " + std::to_string(e.get_place().column) +
                   ": " + solvers::make_one_line(e.what()));
  }
}

// -----------------------------------------------------------------------------------------------------------
// More about the last query

std::string SolverStack::ask_for_value(const Term* t)
{
  std::ostringstream term;
  smtlib::print_foreign_term(term, t, *foreign_);
  const std::string answer = ask_more("(get-value (" + term.str() + "))\n");
  // ((TERM VALUE))
  smtlib::Lexer lexer(answer);
  for (int i = 0; i < 2; ++i)
    static_cast<void>(lexer.next());
  if (const smtlib::Token token = lexer.next(); token.kind == smtlib::TokenKind::kOpen)
    lexer.skip_list(token.position);
  const std::string_view printed = answer;
  const std::size_t start = lexer.get_position();
  std::string value = solvers::make_one_line(printed.substr(start, printed.rfind(')') - start));
  value.resize(value.rfind(')'));
  return value;
}

std::string SolverStack::ask_more(const std::string& question)
{
  if (session_ == nullptr) throw SolverError("the solver has been ended since the last query");
  try {
    std::string answer = session_->ask(question, Deadline(seconds_.value_or(kSecondsForMore)));
    if (answer.starts_with('(') && !answer.starts_with("(error")) return answer;
    session_->fail("printed " + solvers::make_one_line(answer) + " instead of a list");
  } catch (const SolverError&) {
    end_session();
    throw;
  }
}

std::vector<std::size_t> SolverStack::list_core()
{
  if (false_assertion_ == Addition::kNoAssertion || false_assumption_) return {};
  if (false_assertion_) return {*false_assertion_};
  const std::string answer = ask_more("(get-unsat-core)\n");
  std::vector<std::size_t> indices;
  smtlib::Lexer lexer(answer);
  for (smtlib::Token token = lexer.next(); token.kind != smtlib::TokenKind::kEnd; token = lexer.next()) {
    // Some solvers list assumptions, too.
    const auto named = named_.find(std::string(token.text));
    if (token.is_symbol() && named != named_.end()) indices.push_back(named->second);
  }
  return make_sorted_set(std::move(indices));
}

std::vector<std::size_t> SolverStack::list_unsat_assumptions()
{
  if (false_assertion_ || literals_.empty()) return {};
  if (false_assumption_) return {*false_assumption_};
  const std::string answer = ask_more("(get-unsat-assumptions)\n");
  std::vector<std::size_t> indices;
  smtlib::Lexer lexer(answer);
  bool is_negated = false;
  for (smtlib::Token token = lexer.next(); token.kind != smtlib::TokenKind::kEnd; token = lexer.next()) {
    if (!token.is_symbol()) continue;
    if (token.is_word("not")) {
      is_negated = true;
      continue;
    }
    for (const Literal& literal : literals_) {
      const bool is_listed =
          literal.is_negated == is_negated && literal.constant->get_symbol()->get_name() == token.text;
      if (is_listed) indices.push_back(literal.assumption);
    }
    is_negated = false;
  }
  return make_sorted_set(std::move(indices));
}

std::string SolverStack::get_reason()
{
  if (session_ == nullptr) return {};
  constexpr std::string_view kKeyword = ":reason-unknown";
  try {
    const std::string answer =
        session_->ask("(get-info " + std::string(kKeyword) + ")\n", Deadline(kSecondsForMore));
    const std::size_t place = answer.find(kKeyword);
    if (place == std::string::npos) return {};
    return solvers::make_one_line(std::string_view{answer}.substr(
        place + kKeyword.size(), answer.size() - place - kKeyword.size() - 1));
  } catch (const SolverError&) {
    end_session();
    return {};
  }
}

// -----------------------------------------------------------------------------------------------------------
// What the solver knows

void SolverStack::end_session()
{
  session_.reset();
  for (Level& level : levels_)
    level.num_told = 0;
  known_.clear();
  is_known_.clear();
  is_declared_.clear();
  named_.clear();
  solver_level_ = kept_ = 0;
  num_options_told_ = 0;
}

void SolverStack::start(const Deadline& deadline)
{
  session_ = start_();
  known_.assign(1, {});
  session_->tell("(set-option :print-success false)\n(set-option :produce-models true)\n");
  if (wants_cores_) session_->tell("(set-option :produce-unsat-cores true)\n");
  if (wants_unsat_assumptions_) session_->tell("(set-option :produce-unsat-assumptions true)\n");
  tell_options(deadline);
  tell_logic(deadline);
}

void SolverStack::tell_logic(const Deadline& deadline)
{
  if (foreign_ == nullptr) {
    session_->tell("(set-logic QF_BV)\n");
    return;
  }
  const std::string& logic = foreign_->get_terms().logic;
  const std::string command = "(set-logic " + (logic.empty() ? "ALL" : logic) + ")\n";
  // A solver that does not know a logic's name may know its theories.
  for (const std::string& answer : session_->ask_all(command, deadline)) {
    if (answer.starts_with("(error"))
      session_->fail("refused the logic " + logic + ": " + solvers::make_one_line(answer));
  }
}

void SolverStack::tell_options(const Deadline& deadline)
{
  for (; num_options_told_ < options_.size(); ++num_options_told_) {
    const std::string& option = options_[num_options_told_];
    for (const std::string& answer : session_->ask_all("(set-option " + option + ")\n", deadline)) {
      if (!answer.starts_with("(error")) continue;
      options_.erase(options_.begin() + static_cast<std::ptrdiff_t>(num_options_told_));
      session_->fail("refused the option " + option + ": " + solvers::make_one_line(answer));
    }
  }
}

void SolverStack::tell_levels()
{
  std::size_t changed = 0;  // the lowest level of which the solver was not told all
  while (changed < levels_.size() && levels_[changed].num_told == levels_[changed].additions.size())
    ++changed;
  pop_solver(std::min(kept_, changed));
  for (std::size_t i = solver_level_; i < levels_.size(); ++i) {
    if (i > solver_level_) {
      session_->tell("(push 1)\n");
      known_.emplace_back();
      solver_level_ = i;
    }
    tell_level(i);
  }
  kept_ = solver_level_;
}

void SolverStack::pop_solver(std::size_t level)
{
  if (level >= solver_level_) return;
  session_->tell("(pop " + std::to_string(solver_level_ - level) + ")\n");
  for (std::size_t i = level + 1; i < levels_.size(); ++i)
    levels_[i].num_told = 0;
  for (; known_.size() > level + 1; known_.pop_back()) {
    for (const Term* constant : known_.back().constants)
      is_known_.erase(constant);
    for (const std::string& name : known_.back().assertions)
      named_.erase(name);
    for (const std::size_t declaration : known_.back().declarations)
      is_declared_.erase(declaration);
  }
  solver_level_ = level;
}

void SolverStack::tell_level(std::size_t number)
{
  Level& level = levels_[number];
  std::vector<const Term*> terms;
  for (; level.num_told < level.additions.size(); ++level.num_told) {
    const Addition& addition = level.additions[level.num_told];
    if (wants_cores_ && addition.assertion != Addition::kNoAssertion) {
      tell_named(addition);
    } else {
      terms.push_back(addition.term);
    }
  }
  if (terms.empty()) return;
  std::ostringstream text;
  smtlib::print_assertions(
      text, terms, [this](const Term* constant) { return note_constant(constant); }, make_foreign_declare());
  session_->tell(text.view());
}

void SolverStack::tell_named(const Addition& addition)
{
  const std::string name = std::string(kAssertionPrefix) + std::to_string(num_names_++);
  named_.emplace(name, addition.assertion);
  known_.back().assertions.push_back(name);
  std::ostringstream text;
  smtlib::print_named_assertion(
      text, addition.term, name, [this](const Term* constant) { return note_constant(constant); },
      make_foreign_declare());
  session_->tell(text.view());
}

bool SolverStack::note_declaration(std::size_t declaration)
{
  if (!is_declared_.insert(declaration).second) return false;
  known_.back().declarations.push_back(declaration);
  return true;
}

smtlib::ForeignDeclare SolverStack::make_foreign_declare()
{
  return {foreign_.get(), [this](std::size_t declaration) { return note_declaration(declaration); }};
}

bool SolverStack::note_constant(const Term* constant)
{
  if (!is_known_.insert(constant).second) return false;
  known_.back().constants.push_back(constant);
  return true;
}

}  // namespace lumo::commands
