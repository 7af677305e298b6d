#ifndef LUMO_TESTS_SUPPORT_NUMBERED_H
#define LUMO_TESTS_SUPPORT_NUMBERED_H

#include <cstddef>
#include <string>
#include <string_view>

namespace lumo::test {

/// The text followed by a number. Appending avoids the false alarm that g++ 12 raises when it optimises
/// the sum of a literal and a string (its bug 105651).
[[nodiscard]] inline std::string numbered(std::string_view text, std::size_t n)
{
  std::string result(text);
  result += std::to_string(n);
  return result;
}

}  // namespace lumo::test

#endif
