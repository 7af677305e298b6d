#ifndef LUMO_TERMS_UNIQUE_TABLE_H
#define LUMO_TERMS_UNIQUE_TABLE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumo {

/// The index by which structurally equal nodes are found again: an open-addressing hash set of node pointers,
/// which it does not own. Nodes are never removed.
///
/// A part of each hash stands beside the pointers, so that a node is only looked at if it is very likely the
/// wanted one, and none is when the table grows.
template <class Node>
class UniqueTable
{
 public:
  /// The node of this hash for which matches(node) holds, or null.
  template <class Matches>
  [[nodiscard]] const Node* find(std::size_t hash, Matches matches) const
  {
    if (nodes_.empty()) return nullptr;
    const Tag tag = make_tag(hash);
    for (std::size_t i = tag & mask(); tags_[i] != kEmpty; i = (i + 1) & mask()) {
      if (tags_[i] == tag && matches(*nodes_[i])) return nodes_[i];
    }
    return nullptr;
  }

  /// Makes room for one more node, so that the next `insert` cannot fail.
  void reserve_one()
  {
    if (4 * (size_ + 1) <= 3 * nodes_.size()) return;
    const std::size_t new_size = nodes_.empty() ? kFirstSize : 2 * nodes_.size();
    std::vector<Tag> old_tags(new_size, kEmpty);
    std::vector<const Node*> old_nodes(new_size);
    old_tags.swap(tags_);
    old_nodes.swap(nodes_);
    for (std::size_t i = 0; i < old_tags.size(); ++i) {
      if (old_tags[i] != kEmpty) place(old_tags[i], old_nodes[i]);
    }
  }

  /// Adds a node that is not yet in the table; room for it must have been made.
  void insert(std::size_t hash, const Node* node) noexcept
  {
    place(make_tag(hash), node);
    ++size_;
  }

  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  using Tag = std::uint32_t;

  static constexpr std::size_t kFirstSize = 64;
  static constexpr Tag kEmpty = 0;

  [[nodiscard]] static Tag make_tag(std::size_t hash)
  {
    const Tag tag = static_cast<Tag>(hash);
    return tag == kEmpty ? 1 : tag;
  }
  [[nodiscard]] std::size_t mask() const { return nodes_.size() - 1; }
  void place(Tag tag, const Node* node) noexcept
  {
    std::size_t i = tag & mask();
    while (tags_[i] != kEmpty)
      i = (i + 1) & mask();
    tags_[i] = tag;
    nodes_[i] = node;
  }

  std::vector<Tag> tags_;           ///< as many as nodes, kEmpty where there is none
  std::vector<const Node*> nodes_;  ///< a power of two, at most three quarters of them taken
  std::size_t size_ = 0;
};

}  // namespace lumo

#endif
