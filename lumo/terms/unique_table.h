#ifndef LUMO_TERMS_UNIQUE_TABLE_H
#define LUMO_TERMS_UNIQUE_TABLE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace lumo {

/// Finds existing nodes that are structurally equal to a new one: an open-addressing hash set of the indices that
/// its owner gives to nodes. Each index is stored with 32 bits of its node's hash. So a node is only read
/// if it is very likely the wanted one, and growing the table reads no node.
class UniqueTable
{
 public:
  using Index = std::uint32_t;
  static constexpr Index kNone = std::numeric_limits<Index>::max();

  UniqueTable() = default;
  UniqueTable(UniqueTable&& rhs) noexcept { swap(rhs); }
  UniqueTable& operator=(UniqueTable&& rhs) noexcept
  {
    UniqueTable(std::move(rhs)).swap(*this);
    return *this;
  }

  /// The index with this hash for which matches(index) holds, or kNone.
  template <class Matches>
  [[nodiscard]] Index find(std::size_t hash, Matches matches) const
  {
    if (capacity_ == 0) return kNone;
    const Tag tag = make_tag(hash);
    for (std::size_t i = tag & mask(); entries_[i].tag != kEmpty; i = next(i)) {
      if (entries_[i].tag == tag && matches(entries_[i].index)) return entries_[i].index;
    }
    return kNone;
  }

  /// Reserves memory for one more index, so that the next `insert` cannot fail.
  void reserve_one()
  {
    if (4 * (size_ + 1) > 3 * capacity_) [[unlikely]]
      grow();
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
  static constexpr std::size_t kFirstCapacity = 64;

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
  [[nodiscard]] std::size_t mask() const { return capacity_ - 1; }
  [[nodiscard]] std::size_t next(std::size_t i) const { return (i + 1) & mask(); }
  void place(const Entry& entry) noexcept
  {
    std::size_t i = entry.tag & mask();
    while (entries_[i].tag != kEmpty)
      i = next(i);
    entries_[i] = entry;
  }

  /// Doubles the table in place: `realloc` remaps the pages of a large table instead of copying them.
  ///
  /// Entries are placed again in their order, starting after an empty place. All entries from an entry's old home up to
  /// its own place come before it in this order. So its new place is at most its old one, or at most that in the new
  /// half, and the search for it passes no entry that still has to move.
  void grow()
  {
    const std::size_t old_capacity = capacity_;
    const std::size_t new_capacity = std::max(kFirstCapacity, 2 * old_capacity);
    void* memory = std::realloc(entries_.get(), new_capacity * sizeof(Entry));
    if (memory == nullptr) throw std::bad_alloc();
    static_cast<void>(entries_.release());
    entries_.reset(static_cast<Entry*>(memory));
    std::fill(entries_.get() + old_capacity, entries_.get() + new_capacity, Entry());
    capacity_ = new_capacity;
    if (old_capacity == 0) return;

    std::size_t start = 0;
    while (entries_[start].tag != kEmpty)
      ++start;
    for (std::size_t i = 1; i < old_capacity; ++i) {
      const std::size_t old_place = (start + i) & (old_capacity - 1);
      Entry& entry = entries_[old_place];
      const bool stays = (entry.tag & mask()) == old_place;
      if (entry.tag != kEmpty && !stays) place(std::exchange(entry, Entry()));
    }
  }
  void swap(UniqueTable& other) noexcept
  {
    entries_.swap(other.entries_);
    std::swap(capacity_, other.capacity_);
    std::swap(size_, other.size_);
  }

  struct Free
  {
    void operator()(Entry* entries) const { std::free(entries); }
  };
  std::unique_ptr<Entry[], Free> entries_;
  std::size_t capacity_ = 0;  ///< a power of two, or 0; at most three quarters in use
  std::size_t size_ = 0;
};

}  // namespace lumo

#endif
