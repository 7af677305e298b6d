#ifndef LUMO_TERMS_CHUNKED_VECTOR_H
#define LUMO_TERMS_CHUNKED_VECTOR_H

#include <cassert>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumo {

/// A sequence that grows at its end and never moves its elements: they lie in chunks of one size. Compared with a
/// vector, growth copies nothing and memory has no slack in proportion to the size.
template <class T>
class ChunkedVector
{
  static_assert(std::is_trivially_destructible_v<T>, "elements are not destroyed");

 public:
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] T& operator[](std::size_t i) { return *slot(i); }
  [[nodiscard]] const T& operator[](std::size_t i) const { return *slot(i); }
  [[nodiscard]] T& back() { return (*this)[size_ - 1]; }
  template <class... Args>
  void emplace_back(Args&&... args)
  {
    if (size_ == chunks_.size() << kChunkBits) chunks_.push_back(std::make_unique_for_overwrite<Chunk>());
    new (slot(size_)) T{std::forward<Args>(args)...};
    ++size_;
  }
  /// Keeps the memory of the removed element.
  void pop_back()
  {
    assert(size_ != 0 && "the sequence is not empty");
    --size_;
  }
  /// Also frees the memory.
  void clear()
  {
    chunks_.clear();
    size_ = 0;
  }

 private:
  static constexpr unsigned kChunkBits = 9;
  static constexpr std::size_t kOffsetMask = (std::size_t{1} << kChunkBits) - 1;

  /// Raw memory
  struct Chunk
  {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): elements may be pointers
    alignas(T) std::byte memory[sizeof(T) << kChunkBits];
  };

  [[nodiscard]] T* slot(std::size_t i) const
  {
    return reinterpret_cast<T*>(chunks_[i >> kChunkBits]->memory) + (i & kOffsetMask);
  }

  std::vector<std::unique_ptr<Chunk>> chunks_;
  std::size_t size_ = 0;
};

}  // namespace lumo

#endif
