#ifndef LUMO_SMTLIB_CHUNKED_VECTOR_H
#define LUMO_SMTLIB_CHUNKED_VECTOR_H

#include <cassert>
#include <cstddef>
#include <memory>
#include <vector>

namespace lumo::smtlib {

/// A sequence in pieces of one size: it grows without moving what it holds, so it never takes the room of two. For
/// sequences that may be most of a program's memory.
///
/// T is trivial. What is popped keeps its room.
template <class T>
class ChunkedVector
{
 public:
  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] T& operator[](std::size_t i) { return chunks_[i >> kBits][i & kMask]; }
  [[nodiscard]] const T& operator[](std::size_t i) const { return chunks_[i >> kBits][i & kMask]; }
  [[nodiscard]] T& back() { return (*this)[size_ - 1]; }

  void push_back(const T& value)
  {
    if (size_ >> kBits == chunks_.size()) chunks_.push_back(std::make_unique_for_overwrite<T[]>(kMask + 1));
    ++size_;
    back() = value;
  }
  void pop_back()
  {
    assert(size_ != 0 && "something is there to be popped");
    --size_;
  }
  /// Gives the room back, too.
  void clear()
  {
    chunks_.clear();
    size_ = 0;
  }

 private:
  static constexpr unsigned kBits = 12;
  static constexpr std::size_t kMask = (std::size_t{1} << kBits) - 1;

  std::vector<std::unique_ptr<T[]>> chunks_;
  std::size_t size_ = 0;
};

}  // namespace lumo::smtlib

#endif
