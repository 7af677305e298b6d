#ifndef LUMO_COMMANDS_QUERY_SOURCE_H
#define LUMO_COMMANDS_QUERY_SOURCE_H

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include "lumo/elimination/trail.h"
#include "lumo/model/model_store.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

/// Something that a solver must be told.
struct Addition
{
  static constexpr std::size_t kNoAssertion = std::numeric_limits<std::size_t>::max();

  std::size_t level;      ///< on which it must be asserted
  const Term* term;       ///< what must be asserted there
  std::size_t assertion;  ///< the index of the assertion that it stands for, or kNoAssertion
};

/// What a solver must be told before it answers, and the forms of the assumptions, in the order given.
struct SolverQuery
{
  std::vector<Addition> additions;  ///< by ascending levels
  std::vector<const Term*> assumptions;
};

/// A stack of assertions, and what of it a solver is told: everything, or what elimination leaves.
///
/// Levels are counted from 0, and the solver has the same ones. What is told to it for assumptions has the level
/// after the highest one, and is popped before the next query.
class QuerySource
{
 public:
  QuerySource() = default;
  QuerySource(const QuerySource&) = delete;
  QuerySource& operator=(const QuerySource&) = delete;
  virtual ~QuerySource() = default;

  virtual void push() = 0;
  /// Takes back the highest levels. Precondition: there are as many.
  virtual void pop(std::size_t num_levels) = 0;
  /// Takes everything back.
  virtual void reset() = 0;
  /// Asserts a Boolean term on the highest level.
  virtual void add_assertion(const Term* t) = 0;
  /// The assertions on all levels, in their order.
  [[nodiscard]] virtual std::span<const Term* const> get_assertions() const = 0;
  /// What is to be added to what the solver was told by earlier queries and was not popped.
  [[nodiscard]] virtual SolverQuery query(std::span<const Term* const> assumptions) = 0;
  /// Makes a model of what the solver was told a model of the assertions and assumptions of the last query.
  virtual void extend(ModelStore& model) const = 0;
  /// The eliminations that lie between the assertions and assumptions of the last query and what the solver was told.
  [[nodiscard]] virtual Trail get_trail() const = 0;
};

/// A source that eliminates unconstrained applications. The manager must outlive it, and no constant that is declared
/// later may have a name that starts with `lumo!`.
[[nodiscard]] std::unique_ptr<QuerySource> make_eliminating_queries(TermManager& mgr);
/// A source that leaves the assertions as they are.
[[nodiscard]] std::unique_ptr<QuerySource> make_plain_queries();

}  // namespace lumo::commands

#endif
