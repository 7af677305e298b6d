#ifndef LUMO_ELIMINATION_INCREMENTAL_STEPS_H
#define LUMO_ELIMINATION_INCREMENTAL_STEPS_H

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "lumo/elimination/known_terms.h"
#include "lumo/elimination/trail.h"
#include "lumo/terms/exception.h"

namespace lumo {

/// The steps and facts of a conversation, each on the level of the assertions that need it. Records in the table of
/// known terms which constants they eliminate.
class IncrementalSteps
{
 public:
  struct LevelStep
  {
    Step step;
    std::size_t level;
    bool is_restored;
  };
  struct Fact
  {
    const Term* constant;
    std::size_t level;
  };

  explicit IncrementalSteps(KnownTerms& known) : known_(known) {}

  [[nodiscard]] const std::vector<LevelStep>& get_steps() const { return steps_; }
  [[nodiscard]] const std::vector<Fact>& get_facts() const { return facts_; }
  [[nodiscard]] std::size_t get_num_restored() const { return restored_.size(); }

  void add_step(const Step& step, std::size_t level);
  void add_fact(const Term* constant, std::size_t level);
  /// Records that the step's equation is sent to the solver. Levels never decrease between two calls of `pop`.
  void restore(std::size_t index, std::size_t level);

  /// Removes steps, facts and restorations above the level. Takes time in proportion to what was added since the
  /// first of them.
  void pop(std::size_t level);

 private:
  static constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

  struct Restoration
  {
    std::size_t index;
    std::size_t level;
  };

  KnownTerms& known_;
  std::vector<LevelStep> steps_;
  std::vector<Fact> facts_;
  std::vector<Restoration> restored_;
  /// The start of the steps or facts of a level: no index is smaller.
  struct Begin
  {
    std::size_t index;
    std::size_t num_restored;  ///< the number of restorations at that time
  };

  void note_begin(std::vector<Begin>& begins, std::size_t level, std::size_t index) const;
  void set_taker(const Step& step, KnownTerms::Taker taker);
  void pop_steps(std::size_t level);
  /// Corrects the indices of restorations that were recorded after `begin`; `moved` has the new indices of the
  /// steps from begin.index on.
  void move_restored(const Begin& begin, const std::vector<std::size_t>& moved);
  void pop_facts(std::size_t level);

  std::vector<Begin> step_begins_;  ///< by level
  std::vector<Begin> fact_begins_;
};

// Inline functions are not exported from a shared library.

inline void IncrementalSteps::note_begin(std::vector<Begin>& begins, std::size_t level,
                                         std::size_t index) const
{
  while (begins.size() <= level)
    begins.push_back({index, restored_.size()});
}

inline void IncrementalSteps::add_step(const Step& step, std::size_t level)
{
  if (steps_.size() >= std::numeric_limits<KnownTerms::Taker>::max() - KnownTerms::kFirstStep)
    throw Exception("the assertions lead to more than 2^32 - 3 eliminations");
  note_begin(step_begins_, level, steps_.size());
  steps_.push_back({step, level, false});
  set_taker(step, static_cast<KnownTerms::Taker>(steps_.size() - 1 + KnownTerms::kFirstStep));
}

inline void IncrementalSteps::add_fact(const Term* constant, std::size_t level)
{
  note_begin(fact_begins_, level, facts_.size());
  facts_.push_back({constant, level});
  known_.set_taker(constant, KnownTerms::kFact);
}

inline void IncrementalSteps::restore(std::size_t index, std::size_t level)
{
  steps_[index].is_restored = true;
  restored_.push_back({index, level});
}

inline void IncrementalSteps::set_taker(const Step& step, KnownTerms::Taker taker)
{
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (step.free[i]) known_.set_taker(step.application->get_arg(i), taker);
  }
}

inline void IncrementalSteps::pop(std::size_t level)
{
  for (; !restored_.empty() && restored_.back().level > level; restored_.pop_back())
    steps_[restored_.back().index].is_restored = false;
  pop_steps(level);
  pop_facts(level);
}

/// One query may have added steps on several levels, in any order, so those of the lower ones move down.
inline void IncrementalSteps::pop_steps(std::size_t level)
{
  if (step_begins_.size() <= level + 1) return;
  const Begin begin = step_begins_[level + 1];
  step_begins_.resize(level + 1);
  std::size_t end = begin.index;
  std::vector<std::size_t> moved;  // by index, counted from begin.index
  for (std::size_t i = begin.index; i < steps_.size(); ++i) {
    if (steps_[i].level > level) {
      moved.push_back(std::size_t{kNowhere});
      set_taker(steps_[i].step, KnownTerms::kNobody);
    } else {
      moved.push_back(end);
      steps_[end] = steps_[i];
      set_taker(steps_[end].step, static_cast<KnownTerms::Taker>(end + KnownTerms::kFirstStep));
      ++end;
    }
  }
  steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(end), steps_.end());
  move_restored(begin, moved);
}

/// A restoration can be on a lower level than its step, if one query made the step and restored it for an older one. It
/// then outlives the step, as a definition that constrains nothing else.
inline void IncrementalSteps::move_restored(const Begin& begin, const std::vector<std::size_t>& moved)
{
  std::size_t end = std::min(begin.num_restored, restored_.size());
  for (std::size_t i = end; i < restored_.size(); ++i) {
    Restoration restoration = restored_[i];
    if (restoration.index >= begin.index) restoration.index = moved[restoration.index - begin.index];
    if (restoration.index != kNowhere) restored_[end++] = restoration;
  }
  restored_.erase(restored_.begin() + static_cast<std::ptrdiff_t>(end), restored_.end());
}

inline void IncrementalSteps::pop_facts(std::size_t level)
{
  if (fact_begins_.size() <= level + 1) return;
  std::size_t end = fact_begins_[level + 1].index;
  fact_begins_.resize(level + 1);
  for (std::size_t i = end; i < facts_.size(); ++i) {
    if (facts_[i].level > level) {
      known_.set_taker(facts_[i].constant, KnownTerms::kNobody);
    } else {
      facts_[end++] = facts_[i];
    }
  }
  facts_.erase(facts_.begin() + static_cast<std::ptrdiff_t>(end), facts_.end());
}

}  // namespace lumo

#endif
