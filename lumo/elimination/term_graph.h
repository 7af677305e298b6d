#ifndef LUMO_ELIMINATION_TERM_GRAPH_H
#define LUMO_ELIMINATION_TERM_GRAPH_H

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "lumo/elimination/known_terms.h"
#include "lumo/elimination/node_map.h"
#include "lumo/terms/chunked_vector.h"
#include "lumo/terms/term_manager.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

using NodeIndex = std::uint32_t;

/// Marks an empty argument position.
inline constexpr NodeIndex kNoNode = std::numeric_limits<NodeIndex>::max();
/// Stands for the assertions, as the parent of all asserted nodes.
inline constexpr NodeIndex kAssertions = 0;

/// A term during elimination. Its meaning never changes, only its form: an application may become another
/// one with the same meaning, or the constant that stands for it.
struct Node
{
  using Arguments = std::array<NodeIndex, kMaxArity>;

  const Symbol* symbol = nullptr;
  /// A leaf: the term. An application: the term that it was made from, null if its form has changed since.
  const Term* term = nullptr;
  Arguments args{kNoNode, kNoNode, kNoNode};
  /// How often it is an argument or asserted, plus two for each time that it is kept.
  std::uint32_t num_uses = 0;
  /// The exclusive or of the parents, one for each use: if there is one use, its parent.
  NodeIndex parents = 0;
  /// Whether it had at most one use in the assertions before elimination.
  bool is_exclusive = true;
  bool is_asserted = false;
  /// Whether `term` is the final form of the node. Leaves are built from the start.
  bool is_built = false;
  /// The symbol's kind; a copy, to spare the memory access to the many symbols of constants.
  Kind kind = Kind::kConstant;

  void set_symbol(const Symbol* s, const Term* t)
  {
    symbol = s;
    term = t;
    kind = s->get_kind();
    is_built = !is_operator(kind);
  }
};

static_assert(sizeof(Node) == 40, "graphs have millions of nodes");

/// How a graph was made from terms, for callers that need the forms of these terms later.
struct GraphRecord
{
  std::vector<const Term*> terms;    ///< by node: the term that it was made from; null for kAssertions
  std::vector<NodeIndex> asserted;   ///< by assertion: its node
  std::vector<NodeIndex> num_nodes;  ///< by assertion: the number of nodes after it was added
};

/// The state before the assertions: a graph does not walk terms that have a fixed form.
struct Background
{
  const KnownTerms* known;
  GraphRecord* record;  ///< is filled
};

/// The graph of the asserted terms: one node for each distinct term, arguments first, followed by the nodes that
/// elimination adds. It counts uses, so it knows when a constant has a single use left.
class TermGraph
{
 public:
  /// Throws an `Exception` if an assertion or a kept term is refused. The background may be null; it is only used
  /// during the call.
  TermGraph(TermManager& mgr, std::span<const Term* const> assertions, std::span<const Term* const> kept,
            const Background* background = nullptr);

  [[nodiscard]] NodeIndex get_num_nodes() const { return static_cast<NodeIndex>(nodes_.size()); }
  [[nodiscard]] Node& operator[](NodeIndex n) { return nodes_[n]; }
  /// The distinct asserted nodes, in the order of their assertions
  [[nodiscard]] const std::vector<NodeIndex>& get_assertions() const { return assertions_; }
  /// The nodes of the kept terms, one for each. A kept node has two additional uses, by no node of the graph.
  /// So it is never free, exclusive or dropped.
  [[nodiscard]] const std::vector<NodeIndex>& get_kept() const { return kept_; }

  [[nodiscard]] Kind get_kind(NodeIndex n) const { return nodes_[n].kind; }
  [[nodiscard]] bool is_leaf(NodeIndex n) const { return !is_operator(get_kind(n)); }
  /// Whether it is a constant with a single use, and so may take any value.
  [[nodiscard]] bool is_free(NodeIndex n) const
  {
    return n != kNoNode && nodes_[n].num_uses == 1 && nodes_[n].kind == Kind::kConstant;
  }
  [[nodiscard]] bool is_numeral(NodeIndex n) const { return get_kind(n) == Kind::kNumeral; }
  [[nodiscard]] unsigned long get_width(NodeIndex n) const
  {
    return nodes_[n].symbol->get_output_type()->get_width();
  }

  /// A leaf without a use.
  NodeIndex add_leaf(const Term* t);
  /// An application without a use; it uses its arguments.
  NodeIndex add_application(const Symbol* s, const Node::Arguments& args);
  /// Adds a use of n by the parent.
  void add_use(NodeIndex n, NodeIndex parent);
  /// Removes the use. If none is left, the node's uses of its arguments are removed, too, and so on. Constants that
  /// are then left with a single use are appended to `freed`.
  void drop_use(NodeIndex n, NodeIndex parent, std::vector<NodeIndex>& freed);
  /// Makes an application a leaf, which uses no arguments. The caller drops the uses of the old arguments.
  void become_leaf(NodeIndex n, const Term* t);
  /// Gives an application another form. The caller updates the uses of old and new arguments.
  void become_application(NodeIndex n, const Symbol* s, const Node::Arguments& args);

  /// The final term of the node; null for an application without any arguments left. Nodes
  /// must not change after the first call.
  [[nodiscard]] const Term* build(NodeIndex n) { return nodes_[n].is_built ? nodes_[n].term : build_slow(n); }

 private:
  const Term* build_slow(NodeIndex n);
  NodeIndex add_node(const Symbol* s, const Term* t);
  void add_assertion(const Term* t, NodeMap& node_of);
  void add_kept(const Term* t, NodeMap& node_of);
  void add_terms(const Term* root, NodeMap& node_of);
  /// Adds a node for an application or a leaf whose arguments have nodes.
  void add_term(const Term* t, const Node::Arguments& args, NodeMap& node_of);
  /// Adds a leaf for t that is never free, if t has a fixed form.
  bool add_fixed(const Term* t, NodeMap& node_of);
  /// Takes one use away; returns whether none is left.
  bool lose_use(NodeIndex n, NodeIndex parent, std::vector<NodeIndex>& freed);
  /// Builds a node if its arguments are built; otherwise pushes those that are not on the stack.
  void visit(NodeIndex n);
  [[nodiscard]] const Term* make_term(const Node& node);

  TermManager& mgr_;
  const Background* background_;  ///< while the terms are added
  ChunkedVector<Node> nodes_;
  std::vector<NodeIndex> assertions_;
  std::vector<NodeIndex> kept_;
  std::vector<NodeIndex> stack_;
  std::vector<const Term*> stack_of_terms_;  ///< while the terms are added
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
