#include "lumo/elimination/incremental.h"

#include <algorithm>
#include <string>
#include <utility>

#include "lumo/elimination/eliminator.h"
#include "lumo/elimination/extend_step.h"
#include "lumo/elimination/incremental_steps.h"
#include "lumo/elimination/known_terms.h"

namespace lumo {

namespace {

void check_boolean(const TermManager& mgr, const Term* t, const std::string& what)
{
  if (t == nullptr) throw Exception(what + " is a null pointer, but a term was expected");
  if (t->get_sort()->get_manager() != &mgr)
    throw Exception(what + " belongs to another term manager, but a term of this one was expected");
  if (!t->get_sort()->is_bool())
    throw Exception(what + " has sort " + t->get_sort()->to_string() + ", but Bool was expected");
}

const Term* make_equation(TermManager& mgr, const Step& step)
{
  const DataType* sort = step.constant->get_sort();
  const Symbol* equal = sort->is_bool() ? mgr.make_iff_symbol() : mgr.make_eq_symbol(sort);
  return mgr.make_term(equal, {step.constant, step.application});
}

}  // namespace

// Its functions are inline, so that a shared library does not export them.
class IncrementalEliminator::Implementation
{
 public:
  Implementation(TermManager& mgr, std::string_view prefix) : mgr_(mgr), prefix_(prefix), steps_(known_) {}

  void push();
  void pop(std::size_t num_levels);
  [[nodiscard]] std::size_t get_num_levels() const { return levels_.size(); }
  std::size_t add_assertion(const Term* t);
  [[nodiscard]] std::span<const Term* const> get_assertions() const { return assertions_; }
  [[nodiscard]] Query query(std::span<const Term* const> assumptions);
  void extend(ModelStore& model) const;
  [[nodiscard]] Trail get_trail() const;
  [[nodiscard]] Counts get_counts() const;

 private:
  /// The level of the assumptions of a query
  [[nodiscard]] std::size_t get_level_of_assumptions() const { return levels_.size() + 1; }
  /// The level of an assertion; the number of assertions stands for the assumptions.
  [[nodiscard]] std::size_t get_level(std::size_t assertion) const;
  void drop_assumptions();
  /// Removes everything on levels above the given one.
  void cut(std::size_t level);

  /// Adds the steps and facts of a batch whose first assertion has that index. Returns the indices of the steps by
  /// ascending levels.
  [[nodiscard]] std::vector<std::size_t> add_steps(const Batch& batch, std::size_t first_assertion);
  /// Records the forms, known to the solver, of the terms of those nodes.
  void note_forms(Eliminator& eliminator, const GraphRecord& record, std::size_t begin, std::size_t end);
  /// Sends a term to the solver, and restores the constants in it.
  void tell(const Term* root, std::size_t level, Query& query);
  /// Restores the step or fact that eliminated a constant that is now sent to the solver.
  void restore(const Term* constant, std::size_t level, Query& query);
  /// Restores the steps below the index `end` that eliminated constants of this step: when a model is
  /// extended, this step is processed before them.
  void restore_mentioned(const Step& step, std::size_t end, std::size_t level, Query& query);

  TermManager& mgr_;
  std::string prefix_;
  KnownTerms known_;
  IncrementalSteps steps_;
  std::vector<const Term*> assertions_;
  std::vector<std::size_t> levels_;      ///< by level, counted from 1: the number of assertions below it
  std::size_t num_done_ = 0;             ///< assertions that queries have processed
  std::vector<std::size_t> log_begins_;  ///< by level: the size of the log of known terms before it
  bool has_assumptions_ = false;
  std::uint32_t num_walks_ = 0;  ///< one for each query, over the terms of its steps
  std::vector<const Term*> stack_;
  std::vector<const Term*> mentioned_;
};

// ------------------------------------------------------------------------------------------------------
// The stack of assertions

inline std::size_t IncrementalEliminator::Implementation::get_level(std::size_t assertion) const
{
  if (assertion == assertions_.size()) return get_level_of_assumptions();
  return static_cast<std::size_t>(std::upper_bound(levels_.begin(), levels_.end(), assertion) -
                                  levels_.begin());
}

inline void IncrementalEliminator::Implementation::push()
{
  drop_assumptions();
  levels_.push_back(assertions_.size());
}

inline void IncrementalEliminator::Implementation::pop(std::size_t num_levels)
{
  if (num_levels > levels_.size()) {
    throw Exception("the number of levels to be popped is " + std::to_string(num_levels) +
                    ", but there are " + std::to_string(levels_.size()));
  }
  drop_assumptions();
  if (num_levels == 0) return;
  const std::size_t level = levels_.size() - num_levels;
  assertions_.resize(levels_[level]);
  levels_.resize(level);
  num_done_ = std::min(num_done_, assertions_.size());
  cut(level);
}

inline std::size_t IncrementalEliminator::Implementation::add_assertion(const Term* t)
{
  check_boolean(mgr_, t, "an assertion");
  drop_assumptions();
  assertions_.push_back(t);
  return assertions_.size() - 1;
}

inline void IncrementalEliminator::Implementation::drop_assumptions()
{
  if (has_assumptions_) cut(levels_.size());
  has_assumptions_ = false;
}

inline void IncrementalEliminator::Implementation::cut(std::size_t level)
{
  steps_.pop(level);
  if (log_begins_.size() <= level + 1) return;
  known_.cut(log_begins_[level + 1]);
  log_begins_.resize(level + 1);
}

// ------------------------------------------------------------------------------------------------------
// Queries

inline IncrementalEliminator::Query IncrementalEliminator::Implementation::query(
    std::span<const Term* const> assumptions)
{
  for (const Term* t : assumptions)
    check_boolean(mgr_, t, "an assumption");
  drop_assumptions();
  Query query;
  if (num_done_ == assertions_.size() && assumptions.empty()) return query;
  if (num_walks_ == KnownTerms::kMaxWalk) throw Exception("a conversation has more than 2^31 - 1 queries");
  ++num_walks_;

  const std::size_t first = std::exchange(num_done_, assertions_.size());
  has_assumptions_ = !assumptions.empty();
  GraphRecord record;
  const Background background{&known_, &record};
  Eliminator eliminator(mgr_, get_assertions().subspan(first), {assumptions, prefix_}, &background);
  const Batch batch = eliminator.run_batch(record);

  const std::size_t first_step = steps_.get_steps().size();
  const std::vector<std::size_t> steps = add_steps(batch, first);
  const std::size_t last_level = has_assumptions_ ? get_level_of_assumptions() : levels_.size();
  std::size_t assertion = 0;
  std::size_t step = 0;
  std::size_t node = 1;
  for (std::size_t level = get_level(first); level <= last_level; ++level) {
    while (log_begins_.size() <= level)
      log_begins_.push_back(known_.get_log_size());
    for (; assertion < batch.forms.size() && get_level(first + assertion) == level; ++assertion) {
      const Term* form = batch.forms[assertion];
      if (form == nullptr) continue;
      query.additions.push_back({level, form, first + assertion});
      tell(form, level, query);
    }
    if (level == get_level_of_assumptions()) {
      for (const Term* form : batch.kept)
        tell(form, level, query);
    }
    for (; step < steps.size() && steps_.get_steps()[steps[step]].level == level; ++step)
      restore_mentioned(steps_.get_steps()[steps[step]].step, first_step, level, query);
    const std::size_t end = level == get_level_of_assumptions() ? record.terms.size()
                            : assertion == 0                    ? 1
                                                                : record.num_nodes[assertion - 1];
    note_forms(eliminator, record, node, end);
    node = end;
  }
  query.assumptions = batch.kept;
  return query;
}

inline std::vector<std::size_t> IncrementalEliminator::Implementation::add_steps(const Batch& batch,
                                                                                 std::size_t first_assertion)
{
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < batch.steps.size(); ++i) {
    indices.push_back(steps_.get_steps().size());
    steps_.add_step(batch.steps[i], get_level(first_assertion + batch.step_assertions[i]));
  }
  for (std::size_t i = 0; i < batch.facts.size(); ++i)
    steps_.add_fact(batch.facts[i], get_level(first_assertion + batch.fact_assertions[i]));
  std::stable_sort(indices.begin(), indices.end(), [this](std::size_t a, std::size_t b) {
    return steps_.get_steps()[a].level < steps_.get_steps()[b].level;
  });
  return indices;
}

inline void IncrementalEliminator::Implementation::note_forms(Eliminator& eliminator,
                                                              const GraphRecord& record, std::size_t begin,
                                                              std::size_t end)
{
  for (std::size_t n = begin; n < end; ++n) {
    const Term* form = eliminator.find_form(static_cast<NodeIndex>(n));
    if (form != nullptr && form != record.terms[n] && known_.is_told(form))
      known_.add_form(record.terms[n], form);
  }
}

inline void IncrementalEliminator::Implementation::tell(const Term* root, std::size_t level, Query& query)
{
  stack_.assign(1, root);
  while (!stack_.empty()) {
    const Term* t = stack_.back();
    stack_.pop_back();
    const Kind kind = t->get_symbol()->get_kind();
    if (kind != Kind::kConstant && !is_operator(kind)) continue;
    if (!known_.tell(t)) continue;
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      stack_.push_back(t->get_arg(i));
    if (kind == Kind::kConstant) restore(t, level, query);
  }
}

inline void IncrementalEliminator::Implementation::restore(const Term* constant, std::size_t level,
                                                           Query& query)
{
  const KnownTerms::Taker taker = known_.get_taker(constant);
  if (taker == KnownTerms::kNobody) return;
  if (taker == KnownTerms::kFact) {
    query.additions.push_back({level, constant, kRestoration});
    return;
  }
  const std::size_t index = taker - KnownTerms::kFirstStep;
  if (steps_.get_steps()[index].is_restored) return;
  steps_.restore(index, level);
  const Term* equation = make_equation(mgr_, steps_.get_steps()[index].step);
  query.additions.push_back({level, equation, kRestoration});
  stack_.push_back(equation);
}

inline void IncrementalEliminator::Implementation::restore_mentioned(const Step& step, std::size_t end,
                                                                     std::size_t level, Query& query)
{
  mentioned_.clear();
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (!step.free[i]) mentioned_.push_back(step.application->get_arg(i));
  }
  while (!mentioned_.empty()) {
    const Term* t = mentioned_.back();
    mentioned_.pop_back();
    if (known_.is_told(t) || !known_.visit(t, num_walks_)) continue;
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      mentioned_.push_back(t->get_arg(i));
    const KnownTerms::Taker taker = known_.get_taker(t);
    if (taker >= KnownTerms::kFirstStep && taker - KnownTerms::kFirstStep < end) tell(t, level, query);
  }
}

// ------------------------------------------------------------------------------------------------------
// Models

inline void IncrementalEliminator::Implementation::extend(ModelStore& model) const
{
  check_manager(mgr_, model);
  for (const IncrementalSteps::Fact& fact : steps_.get_facts()) {
    if (!known_.is_told(fact.constant)) model.set_value(fact.constant, mgr_.make_true());
  }
  ModelStore::DefinitionStack defs;
  const std::vector<IncrementalSteps::LevelStep>& steps = steps_.get_steps();
  for (std::size_t i = steps.size(); i-- > 0;) {
    if (!steps[i].is_restored) extend_by(mgr_, steps[i].step, model, defs);
  }
}

inline Trail IncrementalEliminator::Implementation::get_trail() const
{
  Trail trail;
  for (const IncrementalSteps::LevelStep& step : steps_.get_steps())
    trail.steps.push_back(step.step);
  for (const IncrementalSteps::Fact& fact : steps_.get_facts())
    trail.facts.push_back(fact.constant);
  return trail;
}

inline IncrementalEliminator::Counts IncrementalEliminator::Implementation::get_counts() const
{
  const std::size_t num_restored = steps_.get_num_restored();
  return {assertions_.size(), steps_.get_steps().size() - num_restored, num_restored};
}

// ------------------------------------------------------------------------------------------------------
// The interface

IncrementalEliminator::IncrementalEliminator(TermManager& mgr, std::string_view prefix)
    : mgr_(mgr), prefix_(prefix), implementation_(std::make_unique<Implementation>(mgr, prefix_))
{}

IncrementalEliminator::~IncrementalEliminator() = default;

void IncrementalEliminator::push() { implementation_->push(); }

void IncrementalEliminator::pop(std::size_t num_levels) { implementation_->pop(num_levels); }

void IncrementalEliminator::reset() { implementation_ = std::make_unique<Implementation>(mgr_, prefix_); }

std::size_t IncrementalEliminator::get_num_levels() const { return implementation_->get_num_levels(); }

std::size_t IncrementalEliminator::add_assertion(const Term* t) { return implementation_->add_assertion(t); }

std::span<const Term* const> IncrementalEliminator::get_assertions() const
{
  return implementation_->get_assertions();
}

IncrementalEliminator::Query IncrementalEliminator::query(std::span<const Term* const> assumptions)
{
  return implementation_->query(assumptions);
}

void IncrementalEliminator::extend(ModelStore& model) const { implementation_->extend(model); }

Trail IncrementalEliminator::get_trail() const { return implementation_->get_trail(); }

IncrementalEliminator::Counts IncrementalEliminator::get_counts() const
{
  return implementation_->get_counts();
}

}  // namespace lumo
