#ifndef LUMO_TERMS_UNIQUE_TABLE_H
#define LUMO_TERMS_UNIQUE_TABLE_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace lumo {

/// Finds existing nodes that are structurally equal to a new one: an open-addressing hash set of the indices that
/// its owner gives to nodes. Each index is stored with 32 bits of its node's hash. So a node is only read
/// if it is very likely the wanted one, and growing the table reads no node.
class UniqueTable
{
 public:
  using Index = std::uint32_t;
  static constexpr Index kNone = std::numeric_limits<Index>::max();

  /// The index with this hash for which matches(index) holds, or kNone.
  template <class Matches>
  [[nodiscard]] Index find(std::size_t hash, Matches matches) const
  {
    if (entries_.empty()) return kNone;
    const Tag tag = make_tag(hash);
    for (std::size_t i = tag & mask(); entries_[i].tag != kEmpty; i = next(i)) {
      if (entries_[i].tag == tag && matches(entries_[i].index)) return entries_[i].index;
    }
    return kNone;
  }

  /// Reserves memory for one more index, so that the next `insert` cannot fail.
  void reserve_one()
  {
    if (4 * (size_ + 1) <= 3 * entries_.size()) [[likely]]
      return;
    std::vector<Entry> old_entries(entries_.empty() ? kFirstSize : 2 * entries_.size());
    old_entries.swap(entries_);
    for (const Entry& entry : old_entries) {
      if (entry.tag != kEmpty) place(entry);
    }
  }

  /// Adds an index. Precondition: it is not in the table, and `reserve_one` was called.
  void insert(std::size_t hash, Index index) noexcept
  {
    place({make_tag(hash), index});
    ++size_;
  }

  /// Removes an index that is in the table. The entries after it move towards their home places
  /// (D. E. Knuth, The Art of Computer Programming, volume 3, section 6.4, algorithm R).
  void erase(std::size_t hash, Index index) noexcept
  {
    std::size_t gap = make_tag(hash) & mask();
    while (entries_[gap].index != index || entries_[gap].tag == kEmpty)
      gap = next(gap);
    for (std::size_t i = next(gap); entries_[i].tag != kEmpty; i = next(i)) {
      const std::size_t distance_from_home = (i - (entries_[i].tag & mask())) & mask();
      if (distance_from_home < ((i - gap) & mask())) continue;
      entries_[gap] = entries_[i];
      gap = i;
    }
    entries_[gap] = Entry();
    --size_;
  }

  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  using Tag = std::uint32_t;
  static constexpr Tag kEmpty = 0;
  static constexpr std::size_t kFirstSize = 64;

  struct Entry
  {
    Tag tag = kEmpty;
    Index index = 0;
  };

  [[nodiscard]] static Tag make_tag(std::size_t hash)
  {
    const Tag tag = static_cast<Tag>(hash);
    return tag == kEmpty ? 1 : tag;
  }
  [[nodiscard]] std::size_t mask() const { return entries_.size() - 1; }
  [[nodiscard]] std::size_t next(std::size_t i) const { return (i + 1) & mask(); }
  void place(const Entry& entry) noexcept
  {
    std::size_t i = entry.tag & mask();
    while (entries_[i].tag != kEmpty)
      i = next(i);
    entries_[i] = entry;
  }

  std::vector<Entry> entries_;  ///< a power of two, at most three quarters in use
  std::size_t size_ = 0;
};

}  // namespace lumo

#endif
