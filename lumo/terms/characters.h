#ifndef LUMO_TERMS_CHARACTERS_H
#define LUMO_TERMS_CHARACTERS_H

#include <array>
#include <cstdint>
#include <string_view>

namespace lumo {

// The classes of SMT-LIB 2's characters, in one table, since the lexer looks up every character of a text.

namespace detail {

enum : std::uint8_t
{
  kBlank = 1,
  kDigit = 2,
  kHexadecimalDigit = 4,
  kSymbol = 8,        ///< may occur in a symbol without bars
  kQuotable = 16,     ///< may occur in a symbol between bars
  kSymbolStart = 32,  ///< may begin a symbol without bars
};

constexpr std::array<std::uint8_t, 256> make_character_classes()
{
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](std::string_view characters, std::uint8_t bits) {
    for (const char c : characters)
      classes[static_cast<unsigned char>(c)] |= bits;
  };
  for (unsigned c = ' '; c < classes.size(); ++c)
    classes[c] |= kQuotable;
  classes[0x7f] = 0;
  classes['|'] = 0;
  classes['\\'] = 0;
  add("\t\n\r", kQuotable);
  add(" \t\n\r", kBlank);
  add("0123456789", kDigit | kHexadecimalDigit | kSymbol);
  add("abcdefABCDEF", kHexadecimalDigit);
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ~!@$%^&*_-+=<>.?/", kSymbol | kSymbolStart);
  return classes;
}

inline constexpr std::array<std::uint8_t, 256> kCharacterClasses = make_character_classes();

[[nodiscard]] constexpr bool has_class(char c, std::uint8_t bits)
{
  return (kCharacterClasses[static_cast<unsigned char>(c)] & bits) != 0;
}

}  // namespace detail

[[nodiscard]] constexpr bool is_blank(char c) { return detail::has_class(c, detail::kBlank); }
[[nodiscard]] constexpr bool is_digit(char c) { return detail::has_class(c, detail::kDigit); }
[[nodiscard]] constexpr bool is_binary_digit(char c) { return c == '0' || c == '1'; }
[[nodiscard]] constexpr bool is_hexadecimal_digit(char c)
{
  return detail::has_class(c, detail::kHexadecimalDigit);
}
/// Whether c may occur in a symbol without bars.
[[nodiscard]] constexpr bool is_symbol_character(char c) { return detail::has_class(c, detail::kSymbol); }
/// Whether c may begin a symbol without bars.
[[nodiscard]] constexpr bool is_symbol_start(char c) { return detail::has_class(c, detail::kSymbolStart); }
/// Whether c may occur in a symbol between bars.
[[nodiscard]] constexpr bool is_quotable_character(char c) { return detail::has_class(c, detail::kQuotable); }

}  // namespace lumo

#endif
