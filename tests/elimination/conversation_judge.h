#ifndef LUMO_TESTS_ELIMINATION_CONVERSATION_JUDGE_H
#define LUMO_TESTS_ELIMINATION_CONVERSATION_JUDGE_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "lumo/elimination/incremental.h"
#include "lumo/terms/term_manager.h"
#include "tests/elimination/enumeration_judge.h"

namespace lumo::test {

/// One query: the assertions and assumptions, and the terms on the solver's stack for it.
struct ConversationQuery
{
  Terms originals;
  Terms assumptions;
  Terms sent;
  Terms assumption_forms;
};

/// Plays both sides of a conversation: client and solver. Keeps the terms that are sent to the solver, level by
/// level.
class Conversation
{
 public:
  explicit Conversation(TermManager& mgr) : mgr_(mgr), eliminator_(mgr), sent_(1) {}

  void push();
  void pop(std::size_t num_levels = 1);
  void add_assertion(const Term* t) { eliminator_.add_assertion(t); }
  /// Makes a query, and returns it. Throws std::logic_error if an addition is out of order.
  ConversationQuery query(const Terms& assumptions = {});

  [[nodiscard]] const IncrementalEliminator& get_eliminator() const { return eliminator_; }
  [[nodiscard]] std::size_t get_num_levels() const { return eliminator_.get_num_levels(); }
  /// The additions of the last query.
  [[nodiscard]] const std::vector<IncrementalEliminator::Addition>& get_additions() const
  {
    return additions_;
  }

 private:
  TermManager& mgr_;
  IncrementalEliminator eliminator_;
  std::vector<Terms> sent_;  ///< by level
  std::vector<IncrementalEliminator::Addition> additions_;
};

/// Tries every assignment to the constants of a small query. Returns an empty text if
/// - the assertions and assumptions have a model if and only if the sent terms, with the forms, have one;
/// - every such model is extended to one of the assertions and assumptions;
/// and otherwise the mistake.
[[nodiscard]] std::string judge_query(TermManager& mgr, const IncrementalEliminator& eliminator,
                                      const ConversationQuery& query);

}  // namespace lumo::test

#endif
