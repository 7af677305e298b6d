#ifndef LUMO_SMTLIB_TEXT_BUFFER_H
#define LUMO_SMTLIB_TEXT_BUFFER_H

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>

namespace lumo::smtlib {

/// Collects text for a stream and writes it in large pieces, since a stream is slow for small ones.
/// Text that was not flushed before the destructor is lost.
class TextBuffer
{
 public:
  explicit TextBuffer(std::ostream& out) : out_(out), text_(std::make_unique_for_overwrite<char[]>(kSize)) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  TextBuffer& operator<<(std::string_view piece)
  {
    if (piece.size() > kSize - size_) [[unlikely]] {
      flush();
      if (piece.size() > kSize) {
        out_.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        return *this;
      }
    }
    copy(text_.get() + size_, piece.data(), piece.size());
    size_ += piece.size();
    return *this;
  }
  TextBuffer& operator<<(char c)
  {
    if (size_ == kSize) [[unlikely]]
      flush();
    text_[size_++] = c;
    return *this;
  }
  template <std::unsigned_integral T>
  TextBuffer& operator<<(T number)
  {
    std::array<char, 24> digits;
    const auto [end, failure] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return *this << std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
  }

  void flush()
  {
    out_.write(text_.get(), static_cast<std::streamsize>(size_));
    size_ = 0;
  }

 private:
  static constexpr std::size_t kSize = std::size_t{1} << 16U;

  /// Most pieces are short, and then a call of memcpy takes longer than the copying: two words that may overlap cover
  /// 8 to 16 bytes, two halves of a word 4 to 7.
  static void copy(char* to, const char* from, std::size_t size)
  {
    if (size > 16) {
      std::memcpy(to, from, size);
    } else if (size >= 8) {
      copy_ends<8>(to, from, size);
    } else if (size >= 4) {
      copy_ends<4>(to, from, size);
    } else {
      for (std::size_t i = 0; i < size; ++i)
        to[i] = from[i];
    }
  }
  template <std::size_t kPart>
  static void copy_ends(char* to, const char* from, std::size_t size)
  {
    std::array<char, kPart> first;
    std::array<char, kPart> last;
    std::memcpy(first.data(), from, kPart);
    std::memcpy(last.data(), from + size - kPart, kPart);
    std::memcpy(to, first.data(), kPart);
    std::memcpy(to + size - kPart, last.data(), kPart);
  }

  std::ostream& out_;
  std::unique_ptr<char[]> text_;
  std::size_t size_ = 0;
};

}  // namespace lumo::smtlib

#endif
