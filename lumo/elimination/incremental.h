#ifndef LUMO_ELIMINATION_INCREMENTAL_H
#define LUMO_ELIMINATION_INCREMENTAL_H

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// Elimination between pushes and pops: a stack of assertions, of which a solver gets an equisatisfiable form that
/// grows and shrinks with it.
///
/// The solver's stack has the same levels. `query` returns what must be asserted there: forms of the assertions that
/// are new since the last query, and *restorations*. A restoration is the equation u = t of a step that replaced the
/// application t by the fresh constant u, or a Boolean constant that was a whole assertion. It is necessary if
/// a new assertion contains a constant that the step has eliminated. All earlier additions stay valid.
/// docs/incremental.md has the argument.
///
/// A constant is eliminated if it has one use in all assertions and was not sent to the solver. Levels are counted
/// from 0, the level of assertions that no `pop` removes.
///
/// Every member that takes terms refuses null pointers, terms of another manager and terms that are not Boolean with an
/// `Exception`; then nothing has changed. After a `std::bad_alloc`, only `reset` and the destructor may be called.
/// Precondition for all calls: no `TermManager::release` or `clear` has destroyed a term that the object was given
/// or made.
class IncrementalEliminator
{
 public:
  /// `Addition::assertion` of a restoration.
  static constexpr std::size_t kRestoration = std::numeric_limits<std::size_t>::max();

  /// A term that must be sent to the solver.
  struct Addition
  {
    std::size_t level;      ///< the level on which it must be asserted
    const Term* term;       ///< the term that must be asserted
    std::size_t assertion;  ///< the index of the assertion whose form it is, or kRestoration
  };
  /// What a solver must be told for a query.
  struct Query
  {
    /// By ascending levels. Those of the highest level may belong to the assumptions: if there are assumptions,
    /// this level is get_num_levels() + 1, and the solver must pop it before the next query.
    std::vector<Addition> additions;
    /// The form of each assumption, in the order given.
    std::vector<const Term*> assumptions;
  };
  /// The current sizes.
  struct Counts
  {
    std::size_t assertions = 0;
    std::size_t steps = 0;     ///< eliminated applications, without those that are restored
    std::size_t restored = 0;  ///< steps whose equation was sent to the solver
  };

  /// The names of fresh constants are `<prefix>!<number>`. Choose a prefix that no name declared later starts with.
  explicit IncrementalEliminator(TermManager& mgr, std::string_view prefix = "u");
  ~IncrementalEliminator();
  IncrementalEliminator(const IncrementalEliminator&) = delete;
  IncrementalEliminator& operator=(const IncrementalEliminator&) = delete;

  /// Opens a level.
  void push();
  /// Removes the highest levels with their assertions. Throws an `Exception` if there are fewer.
  void pop(std::size_t num_levels = 1);
  /// Removes all assertions and levels.
  void reset();
  /// The number of levels that were pushed and not popped, which is the current level.
  [[nodiscard]] std::size_t get_num_levels() const;

  /// Asserts a Boolean term on the current level. Returns its index in `get_assertions`.
  std::size_t add_assertion(const Term* t);
  /// The assertions on all levels, in the order in which they were added.
  [[nodiscard]] std::span<const Term* const> get_assertions() const;

  /// Returns the additions that the solver needs to answer for all assertions and the assumptions, any Boolean
  /// terms, which hold for this query only. The answer is the same as for the assertions and the assumptions
  /// themselves.
  ///
  /// Time is linear in the new terms of the assertions and assumptions and in the restored terms. Terms that were
  /// sent to the solver are not walked again.
  [[nodiscard]] Query query(std::span<const Term* const> assumptions = {});

  /// Extends a model of the solver's assertions at the last query to a model of the assertions and assumptions of
  /// that query, as `lumo::extend` does: the model has values of the solver's constants, and gets those of
  /// eliminated ones. Constants without a value count as 0 or false.
  ///
  /// Precondition: since the last query, no assertion was added and nothing was popped. Refuses a model of
  /// another manager with an `Exception`.
  void extend(ModelStore& model) const;

  /// The steps and facts that are in force, restored ones included. In every model of the assertions and of the
  /// assumptions of the last query, what was sent to the solver is true if each step's constant has the value of the
  /// step's application; no application needs its own constant. The precondition is that of `extend`.
  [[nodiscard]] Trail get_trail() const;

  [[nodiscard]] Counts get_counts() const;

 private:
  class Implementation;

  TermManager& mgr_;
  std::string prefix_;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace lumo

#endif
