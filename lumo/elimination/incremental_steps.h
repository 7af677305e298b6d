#ifndef LUMO_ELIMINATION_INCREMENTAL_STEPS_H
#define LUMO_ELIMINATION_INCREMENTAL_STEPS_H

#include <cstddef>
#include <vector>

#include "lumo/elimination/known_terms.h"
#include "lumo/elimination/trail.h"

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

  // A shared library does not export the functions.
#pragma GCC visibility push(hidden)
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
#pragma GCC visibility pop

 private:
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

#pragma GCC visibility push(hidden)
  void note_begin(std::vector<Begin>& begins, std::size_t level, std::size_t index) const;
  void set_taker(const Step& step, KnownTerms::Taker taker);
  void pop_steps(std::size_t level);
  /// Corrects the indices of restorations that were recorded after `begin`; `moved` has the new indices of the
  /// steps from begin.index on.
  void move_restored(const Begin& begin, const std::vector<std::size_t>& moved);
  void pop_facts(std::size_t level);
#pragma GCC visibility pop

  std::vector<Begin> step_begins_;  ///< by level
  std::vector<Begin> fact_begins_;
};

}  // namespace lumo

#endif
