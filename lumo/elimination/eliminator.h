#ifndef LUMO_ELIMINATION_ELIMINATOR_H
#define LUMO_ELIMINATION_ELIMINATOR_H

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "lumo/elimination/chains.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/elimination/term_graph.h"
#include "lumo/terms/chunked_vector.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// The result of eliminating in assertions that follow others. Steps and facts belong to the first assertion that
/// needs them; the number of assertions represents the kept terms.
struct Batch
{
  std::vector<const Term*> forms;  ///< by assertion; null if nothing remains
  std::vector<const Term*> kept;   ///< the forms of the kept terms
  std::vector<Step> steps;
  std::vector<std::size_t> step_assertions;
  std::vector<const Term*> facts;
  std::vector<std::size_t> fact_assertions;
};

/// One run of `eliminate`, or of one query of a conversation.
///
/// Free constants wait in a work list. Each is taken from it once, and its only use is examined. If a rule applies,
/// the application becomes a leaf, its arguments lose a use, and constants that then have one use are added to the
/// list. So every application is eliminated, and every use dropped, at most once.
///
/// When a model is extended, the steps are processed from the newest to the oldest. This order works because of two
/// invariants:
///
/// I1. An argument of a step that is not free is a node of the graph, built only after all steps are made. Its
///     constants have their values when the step is processed: a constant that a step makes free is not in the
///     graph after that step, so only that step and older ones can contain it.
/// I2. A node that a step contains keeps its meaning. Regrouping a chain changes the meaning of all its
///     applications except the root, so only applications that never had another use become parts of a chain.
class Eliminator
{
 public:
  /// The options' memory must outlive the object.
  Eliminator(TermManager& mgr, std::span<const Term* const> assertions, const EliminationOptions& options,
             const Background* background = nullptr);

  [[nodiscard]] Elimination run();
  /// The same, for assertions that follow others, which the background describes. `record` is that of the
  /// background.
  [[nodiscard]] Batch run_batch(const GraphRecord& record);
  /// After a run: the term that a node has become, with the same meaning, or null if there is none.
  [[nodiscard]] const Term* find_form(NodeIndex n);

 private:
  /// An application of a step that is built at the end, since an argument may still change its form.
  struct PendingApplication
  {
    std::size_t step;  ///< the index of the step
    const Symbol* symbol;
    Node::Arguments args;
  };

  void apply_rules();
  /// Determines which nodes are exclusive, which are free, and which chains they belong to.
  void prepare_nodes();
  [[nodiscard]] bool is_chain_operator(NodeIndex n);
  /// Merges the chain whose root is n into the one around it, if there is one and the merge is allowed.
  void join_chain(NodeIndex n);

  /// Examines the only use of a free constant.
  void visit(NodeIndex n);
  [[nodiscard]] FreeArguments get_free(NodeIndex n);
  /// Makes a step for the application, and replaces it by the step's constant.
  void eliminate_application(NodeIndex n, FreeArguments free);
  void add_step(NodeIndex owner, const Symbol* s, const Node::Arguments& args, FreeArguments free,
                const Term* original);
  /// The same, with a new leaf for the step's constant.
  NodeIndex add_step_leaf(NodeIndex owner, const Symbol* s, const Node::Arguments& args, FreeArguments free,
                          const Term* original);
  void add_fact(const Term* constant, NodeIndex owner);
  /// The application of the input that n is a part of, or n itself if it is not a new one.
  [[nodiscard]] NodeIndex get_owner(NodeIndex n) const;
  /// Turns the application into the leaf t, and drops its uses of its arguments.
  void replace_by_leaf(NodeIndex n, const Term* t);
  /// Turns the application into another one with the same meaning.
  void replace_by_application(NodeIndex n, const Symbol* s, const Node::Arguments& args);

  void visit_chain_leaf(NodeIndex n, NodeIndex parent);
  /// Removes a free leaf from its chain.
  void remove_leaf(NodeIndex n);
  void merge_leaves(Chain& chain, NodeIndex a, NodeIndex b);

  void visit_ite(NodeIndex n);
  void visit_order_atom(NodeIndex n);
  /// A new application, part of the term that replaces the owner.
  NodeIndex add_application(NodeIndex owner, const Symbol* s, const Node::Arguments& args);
  void guard_order_atom(NodeIndex n, std::size_t free_position);

  void rewrite_shift(NodeIndex n);
  void rewrite_product(NodeIndex n);
  /// Turns the application into a free x, shifted by k bits in the given direction; 0 < k < w.
  void replace_by_moved(NodeIndex n, Kind direction, NodeIndex x, unsigned long k, const Term* original);

  /// The application of a step; the forms of its arguments are final.
  [[nodiscard]] const Term* build_application(const Symbol* s, const Node::Arguments& args,
                                              const Term* original);
  [[nodiscard]] std::vector<Step> build_steps();
  [[nodiscard]] std::vector<const Term*> build_assertions();
  [[nodiscard]] std::vector<const Term*> build_kept();
  /// The forms of assertions, null if nothing remains. The constants that are whole assertions become facts.
  void build_forms(const GraphRecord& record, Batch& batch);

  TermManager& mgr_;
  std::string prefix_;  ///< of fresh constants
  TermGraph graph_;
  Chains chains_;
  std::vector<NodeIndex> work_;
  ChunkedVector<Step> steps_;
  std::vector<PendingApplication> pending_;  ///< of steps without an application yet
  std::vector<const Term*> facts_;
  /// For a batch: the applications of the input that steps and facts belong to
  const bool keeps_owners_;
  std::unordered_map<NodeIndex, NodeIndex> owners_;  ///< of applications that were added
  std::vector<NodeIndex> step_owners_;
  std::vector<NodeIndex> fact_owners_;
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
