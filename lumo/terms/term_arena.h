#ifndef LUMO_TERMS_TERM_ARENA_H
#define LUMO_TERMS_TERM_ARENA_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "lumo/terms/exception.h"

namespace lumo {

/// Memory for terms: blocks one after another in chunks of one size, so that the memory reserved beyond the terms
/// does not grow with their number. Each block has an index of 32 bits.
class TermArena
{
 public:
  using Index = std::uint32_t;

  struct Block
  {
    void* memory;
    Index index;
  };
  /// The end of the arena at some time
  struct Position
  {
    std::size_t num_chunks = 0;
    std::size_t num_left = 0;  ///< bytes in the last chunk
  };

  /// Memory that is aligned like pointers. size is a multiple of a pointer's size and at most a chunk. Throws an
  /// `Exception` if the arena already has the 32 GiB that indices can address.
  [[nodiscard]] Block allocate(std::size_t size)
  {
    if (size > num_left_) [[unlikely]]
      add_chunk();
    const std::size_t offset = kChunkSize - num_left_;
    num_left_ -= size;
    return {chunks_.back().memory.get() + offset,
            static_cast<Index>(((chunks_.size() - 1) << kIndexBits) + offset / kUnit)};
  }
  /// The block of an index.
  [[nodiscard]] void* at(Index index) const
  {
    return chunks_[index >> kIndexBits].memory.get() + (index & kOffsetMask) * kUnit;
  }

  [[nodiscard]] Position get_position() const { return {chunks_.size(), num_left_}; }
  /// Calls visit(memory, index), which returns the block's size, for each block after the position.
  template <class Visitor>
  void for_each_after(const Position& position, Visitor visit) const
  {
    const std::size_t first = position.num_chunks == 0 ? 0 : position.num_chunks - 1;
    for (std::size_t i = first; i < chunks_.size(); ++i) {
      const std::size_t num_unused = i + 1 == chunks_.size() ? num_left_ : chunks_[i].num_unused;
      std::size_t offset = i + 1 == position.num_chunks ? kChunkSize - position.num_left : 0;
      while (offset < kChunkSize - num_unused) {
        const auto index = static_cast<Index>((i << kIndexBits) + offset / kUnit);
        offset += visit(chunks_[i].memory.get() + offset, index);
      }
    }
  }
  /// Frees all blocks after the position.
  void release(const Position& position) noexcept
  {
    chunks_.resize(position.num_chunks);
    num_left_ = position.num_left;
  }

 private:
  static constexpr std::size_t kUnit = sizeof(void*);
  static constexpr unsigned kIndexBits = 11;  ///< units of a chunk
  static constexpr std::size_t kOffsetMask = (std::size_t{1} << kIndexBits) - 1;
  static constexpr std::size_t kMaxNumChunks = std::size_t{1} << (32 - kIndexBits);
  /// Four pages, including the header that an allocator adds
  static constexpr std::size_t kChunkSize = (kUnit << kIndexBits) - 2 * sizeof(void*);

  struct Chunk
  {
    std::unique_ptr<std::byte[]> memory;
    std::size_t num_unused = 0;  ///< bytes at the end of a chunk that is not the last
  };

  void add_chunk()
  {
    if (chunks_.size() == kMaxNumChunks)
      throw Exception("a term manager holds at most 32 GiB of applications and constants");
    Chunk chunk{std::make_unique_for_overwrite<std::byte[]>(kChunkSize)};
    chunks_.push_back(std::move(chunk));
    if (chunks_.size() > 1) chunks_[chunks_.size() - 2].num_unused = num_left_;
    num_left_ = kChunkSize;
  }

  std::vector<Chunk> chunks_;
  std::size_t num_left_ = 0;  ///< bytes in the last chunk
};

}  // namespace lumo

#endif
