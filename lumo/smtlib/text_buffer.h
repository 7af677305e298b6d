#ifndef LUMO_SMTLIB_TEXT_BUFFER_H
#define LUMO_SMTLIB_TEXT_BUFFER_H

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace lumo::smtlib {

/// Collects text for a stream and hands it over in large pieces, since a stream takes long for each small one.
/// What was not flushed at the object's end is lost.
class TextBuffer
{
 public:
  explicit TextBuffer(std::ostream& out) : out_(out) { text_.reserve(kFull); }
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;

  TextBuffer& operator<<(std::string_view piece)
  {
    if (text_.size() + piece.size() > kFull) flush();
    text_ += piece;
    return *this;
  }
  TextBuffer& operator<<(char c) { return *this << std::string_view(&c, 1); }
  template <std::unsigned_integral T>
  TextBuffer& operator<<(T number)
  {
    std::array<char, 24> digits;
    const auto [end, failure] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return *this << std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
  }

  void flush()
  {
    out_ << text_;
    text_.clear();
  }

 private:
  static constexpr std::size_t kFull = std::size_t{1} << 16U;

  std::ostream& out_;
  std::string text_;
};

}  // namespace lumo::smtlib

#endif
