#ifndef LUMO_TERMS_TERM_TABLE_H
#define LUMO_TERMS_TERM_TABLE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace lumo {

/// Data on the terms of one manager, by their ids. Entries are stored in pages of 2^kPageBits neighbouring ids. The
/// first access to an entry makes its page, with all entries as `T()` makes them. So memory is proportional to the
/// number of pages in use, not to the largest id, and terms that were made one after another cost little more than
/// in an array. Entries never move.
///
/// The pages are found by an open-addressing hash table from page numbers to pages. As long as at least one page in
/// kDensity is in use, most of them are also in a list by number, which is faster.
template <class T, unsigned kPageBits = 5>
class TermTable
{
 public:
  TermTable() = default;
  TermTable(TermTable&& other) noexcept { swap(other); }
  TermTable& operator=(TermTable&& other) noexcept
  {
    TermTable taken(std::move(other));
    swap(taken);
    return *this;
  }
  TermTable(const TermTable& other) { copy_from(other); }
  TermTable& operator=(const TermTable& other)
  {
    TermTable copy(other);
    swap(copy);
    return *this;
  }
  ~TermTable() = default;

  /// The entry of an id, or null if its page does not exist.
  [[nodiscard]] T* find(std::size_t id)
  {
    return const_cast<T*>(static_cast<const TermTable*>(this)->find(id));
  }
  [[nodiscard]] const T* find(std::size_t id) const
  {
    const std::size_t number = id >> kPageBits;
    if (number < by_number_.size()) [[likely]] {
      const Page* page = by_number_[number];
      return page != nullptr ? &(*page)[id & kOffsetMask] : nullptr;
    }
    if (slots_.empty()) return nullptr;
    for (std::size_t i = get_home(number);; i = (i + 1) & mask()) {
      const Slot& slot = slots_[i];
      if (slot.page == nullptr) return nullptr;
      if (slot.number == number) [[likely]]
        return &(*slot.page)[id & kOffsetMask];
    }
  }
  /// The entry of an id; makes its page if necessary.
  [[nodiscard]] T& operator[](std::size_t id)
  {
    T* entry = find(id);
    return entry != nullptr ? *entry : (*add_page(id >> kPageBits))[id & kOffsetMask];
  }
  /// Calls the visitor with every entry of every page, in the order of ids.
  template <class Visitor>
  void for_each_entry(Visitor visit)
  {
    std::vector<Slot> pages;
    std::copy_if(slots_.begin(), slots_.end(), std::back_inserter(pages),
                 [](const Slot& slot) { return slot.page != nullptr; });
    std::sort(pages.begin(), pages.end(), [](const Slot& a, const Slot& b) { return a.number < b.number; });
    for (const Slot& slot : pages) {
      for (T& entry : *slot.page)
        visit(entry);
    }
  }

 private:
  static constexpr std::size_t kOffsetMask = (std::size_t{1} << kPageBits) - 1;
  static constexpr unsigned kFirstBits = 3;
  static constexpr std::size_t kMaxBlock = 16;  ///< pages
  static constexpr std::size_t kDensity = 16;

  using Page = std::array<T, std::size_t{1} << kPageBits>;
  struct Slot
  {
    std::size_t number = 0;
    Page* page = nullptr;  ///< null if the slot is empty
  };

  [[nodiscard]] std::size_t mask() const { return slots_.size() - 1; }
  /// The top bits of the product with the golden ratio (D. E. Knuth, The Art of Computer Programming, volume 3,
  /// section 6.4) spread neighbouring pages as well as pages at distances that are powers of two.
  [[nodiscard]] std::size_t get_home(std::size_t number) const
  {
    return (number * 0x9e3779b97f4a7c15UL) >> (64 - bits_);
  }

  /// Adds a page. Precondition: it does not exist.
  [[nodiscard]] Page* add_page(std::size_t number)
  {
    if (slots_.empty() || 4 * (num_pages_ + 1) > 3 * slots_.size()) grow();
    if (num_spare_ == 0) {
      const std::size_t num_new = num_pages_ < kMaxBlock ? num_pages_ + 1 : kMaxBlock;
      blocks_.push_back(std::make_unique<Page[]>(num_new));
      num_spare_ = num_new;
    }
    --num_spare_;
    ++num_pages_;
    Page* page = &blocks_.back()[num_spare_];
    find_vacancy(number).page = page;
    if (number < by_number_.size()) by_number_[number] = page;
    return page;
  }
  void grow()
  {
    const unsigned bits = slots_.empty() ? kFirstBits : bits_ + 1;
    std::vector<Slot> old_slots(std::size_t{1} << bits);
    old_slots.swap(slots_);
    bits_ = bits;
    for (Slot& slot : old_slots) {
      if (slot.page != nullptr) find_vacancy(slot.number).page = slot.page;
    }
    list_by_number();
  }
  /// Rebuilds the list: up to the largest number, or empty if too few pages are in use.
  void list_by_number()
  {
    std::size_t size = 0;
    for (const Slot& slot : slots_) {
      if (slot.page != nullptr) size = std::max(size, slot.number + 1);
    }
    by_number_.assign(size <= kDensity * num_pages_ ? size : 0, nullptr);
    for (const Slot& slot : slots_) {
      if (slot.page != nullptr && slot.number < by_number_.size()) by_number_[slot.number] = slot.page;
    }
  }
  /// The slot for the page of that number, which is not in the table yet.
  Slot& find_vacancy(std::size_t number)
  {
    std::size_t i = get_home(number);
    while (slots_[i].page != nullptr)
      i = (i + 1) & mask();
    slots_[i].number = number;
    return slots_[i];
  }
  void swap(TermTable& other) noexcept
  {
    slots_.swap(other.slots_);
    std::swap(bits_, other.bits_);
    by_number_.swap(other.by_number_);
    std::swap(num_pages_, other.num_pages_);
    blocks_.swap(other.blocks_);
    std::swap(num_spare_, other.num_spare_);
  }
  /// Precondition: this table is empty.
  void copy_from(const TermTable& other)
  {
    for (const Slot& slot : other.slots_) {
      if (slot.page != nullptr) *add_page(slot.number) = *slot.page;
    }
  }

  std::vector<Slot> slots_;  ///< none, or 2^bits_, of which at most three quarters are taken
  unsigned bits_ = 0;
  std::vector<Page*> by_number_;  ///< for the smallest numbers; null if the page does not exist
  std::size_t num_pages_ = 0;
  std::vector<std::unique_ptr<Page[]>> blocks_;  ///< the memory of the pages
  std::size_t num_spare_ = 0;                    ///< pages at the front of the last block that are not in use
};

}  // namespace lumo

#endif
