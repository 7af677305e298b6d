#ifndef LUMO_TERMS_TERM_ARENA_H
#define LUMO_TERMS_TERM_ARENA_H

#include <cstddef>
#include <memory>
#include <vector>

namespace lumo {

/// Memory for terms, which live until the arena ends: one behind the other in chunks of one size, so that what is
/// reserved beyond the terms does not grow with their number.
class TermArena
{
 public:
  /// Memory that is aligned as pointers are. size is a multiple of theirs and at most a chunk's.
  [[nodiscard]] void* allocate(std::size_t size)
  {
    if (size > num_left_) [[unlikely]]
      add_chunk();
    void* memory = next_;
    next_ += size;
    num_left_ -= size;
    return memory;
  }

 private:
  /// With what an allocator adds in front of it, four pages
  static constexpr std::size_t kChunkSize = std::size_t{4} * 4096 - 2 * sizeof(void*);

  void add_chunk()
  {
    chunks_.push_back(std::make_unique_for_overwrite<std::byte[]>(kChunkSize));
    next_ = chunks_.back().get();
    num_left_ = kChunkSize;
  }

  std::vector<std::unique_ptr<std::byte[]>> chunks_;
  std::byte* next_ = nullptr;
  std::size_t num_left_ = 0;
};

}  // namespace lumo

#endif
