#ifndef LUMO_TERMS_UNIQUE_TABLE_H
#define LUMO_TERMS_UNIQUE_TABLE_H

#include <cstddef>
#include <vector>

namespace lumo {

/// The index by which structurally equal nodes are found again: an open-addressing hash set of node pointers,
/// which it does not own. `Hash` gives a node's hash; nodes are never removed.
template <class Node, class Hash>
class UniqueTable
{
 public:
  /// The node of this hash for which matches(node) holds, or null.
  template <class Matches>
  [[nodiscard]] const Node* find(std::size_t hash, Matches matches) const
  {
    if (slots_.empty()) return nullptr;
    for (std::size_t i = hash & mask(); slots_[i] != nullptr; i = (i + 1) & mask()) {
      if (matches(*slots_[i])) return slots_[i];
    }
    return nullptr;
  }

  /// Makes room for one more node, so that the next `insert` cannot fail.
  void reserve_one()
  {
    if (2 * (size_ + 1) <= slots_.size()) return;
    std::vector<const Node*> old(slots_.empty() ? kFirstSize : 2 * slots_.size());
    old.swap(slots_);
    for (const Node* node : old) {
      if (node != nullptr) place(Hash{}(*node), node);
    }
  }

  /// Adds a node that is not yet in the table; room for it must have been made.
  void insert(std::size_t hash, const Node* node) noexcept
  {
    place(hash, node);
    ++size_;
  }

  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  static constexpr std::size_t kFirstSize = 64;

  [[nodiscard]] std::size_t mask() const { return slots_.size() - 1; }
  void place(std::size_t hash, const Node* node) noexcept
  {
    std::size_t i = hash & mask();
    while (slots_[i] != nullptr)
      i = (i + 1) & mask();
    slots_[i] = node;
  }

  std::vector<const Node*> slots_;  ///< a power of two, at most half of them taken
  std::size_t size_ = 0;
};

}  // namespace lumo

#endif
