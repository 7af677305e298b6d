#ifndef LUMO_ELIMINATION_TERM_GRAPH_H
#define LUMO_ELIMINATION_TERM_GRAPH_H

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "lumo/terms/term_manager.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

using NodeIndex = std::uint32_t;

/// No node: an argument position that is empty.
inline constexpr NodeIndex kNoNode = std::numeric_limits<NodeIndex>::max();
/// Stands for the assertions, as the parent of whatever is asserted.
inline constexpr NodeIndex kAssertions = 0;

/// A term in the course of elimination. What it means never changes, only the form in which it says it: an
/// application may become another one with the same meaning, or the constant that stands for it.
struct Node
{
  using Arguments = std::array<NodeIndex, kMaxArity>;

  const Symbol* symbol;
  /// A leaf: the term. An application: the term that it was made from, null if its form has changed since.
  const Term* term;
  Arguments args{kNoNode, kNoNode, kNoNode};
  /// How often it is an argument, or asserted.
  std::uint32_t num_uses = 0;
  /// The exclusive or of the parents, one for each use: if there is one use, its parent.
  NodeIndex parents = 0;
  /// Whether it never had more than one use.
  bool is_exclusive = true;
  bool is_asserted = false;
  bool is_built = false;
};

/// The graph of the asserted terms: one node for each distinct term, in an order in which arguments come first,
/// and those that elimination adds. It counts uses, so that one sees when a constant is left with a single one.
class TermGraph
{
 public:
  /// Leaves the graph empty if an assertion is refused, with the `Exception` that says why.
  TermGraph(TermManager& mgr, std::span<const Term* const> assertions);

  [[nodiscard]] NodeIndex get_num_nodes() const { return static_cast<NodeIndex>(nodes_.size()); }
  [[nodiscard]] Node& operator[](NodeIndex n) { return nodes_[n]; }
  /// The distinct asserted nodes, in the order of their assertions
  [[nodiscard]] const std::vector<NodeIndex>& get_assertions() const { return assertions_; }

  [[nodiscard]] Kind get_kind(NodeIndex n) const { return nodes_[n].symbol->get_kind(); }
  /// Whether it is a constant with a single use, and so may take any value.
  [[nodiscard]] bool is_free(NodeIndex n) const
  {
    return n != kNoNode && nodes_[n].num_uses == 1 && get_kind(n) == Kind::kConstant;
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
  /// Gives the argument its use by the parent.
  void add_use(NodeIndex n, NodeIndex parent);
  /// Takes it away, with all uses by what is then used no more. Constants that are left with a single use go to
  /// the end of `freed`.
  void drop_use(NodeIndex n, NodeIndex parent, std::vector<NodeIndex>& freed);
  /// Makes an application a leaf, which uses no arguments; the uses are to be dropped before.
  void become_leaf(NodeIndex n, const Term* t);
  /// Gives an application another form; the uses of old and new arguments are the caller's.
  void become_application(NodeIndex n, const Symbol* s, const Node::Arguments& args);

  /// The term that the node has become, which is null for an application whose arguments are all gone. Nodes
  /// change no more after the first call.
  [[nodiscard]] const Term* build(NodeIndex n);

 private:
  NodeIndex add_node(const Symbol* s, const Term* t);
  void add_assertion(const Term* t, std::vector<NodeIndex>& node_of);
  void add_terms(const Term* root, std::vector<NodeIndex>& node_of);
  /// Builds a node whose arguments are built, else puts those that are not on the stack.
  void visit(NodeIndex n);
  [[nodiscard]] const Term* make_term(const Node& node);

  TermManager& mgr_;
  std::vector<Node> nodes_;
  std::vector<NodeIndex> assertions_;
  std::vector<NodeIndex> stack_;
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
