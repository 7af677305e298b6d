#ifndef LUMO_ELIMINATION_CHAINS_H
#define LUMO_ELIMINATION_CHAINS_H

#include <cstdint>
#include <limits>
#include <vector>

#include "lumo/elimination/term_graph.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Nested applications of one associative and commutative operator. All except the outermost have no other use, so
/// they may be regrouped. The other arguments of these applications are the chain's leaves.
struct Chain
{
  NodeIndex root;     ///< the outermost application, or kAssertions: those are a chain of `and`
  NodeIndex pending;  ///< a free leaf that waits for a partner, or kNoNode
  std::uint32_t num_leaves;
};

/// The chains of a graph: a union-find forest over the applications in them (R. E. Tarjan, Efficiency of a good
/// but not linear set union algorithm, Journal of the ACM 22, 1975; with path halving).
class Chains
{
 public:
  /// No node is in a chain yet, except in that of the assertions.
  explicit Chains(NodeIndex num_nodes) : link_(num_nodes, kNone) { start(kAssertions); }

  [[nodiscard]] bool contains(NodeIndex n) const { return n < link_.size() && link_[n] != kNone; }
  /// Makes an application of two arguments a chain of its own.
  void start(NodeIndex n);
  /// The chain that contains n.
  [[nodiscard]] Chain& find(NodeIndex n) { return chains_[find_index(n)]; }
  /// Merges the chain with the root n into the chain that contains the parent, and returns the result. The
  /// result keeps its pending leaf.
  Chain& unite(NodeIndex n, NodeIndex parent);

 private:
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  [[nodiscard]] std::uint32_t find_index(NodeIndex n);

  std::vector<std::uint32_t> link_;  ///< by node: its original chain
  std::vector<std::uint32_t> up_;    ///< by chain: the chain that it was merged into, or itself
  std::vector<Chain> chains_;
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
