#include "lumo/commands/text_escapes.h"

#include <array>
#include <cstdint>

namespace lumo::commands {

namespace {

constexpr unsigned kContinuationBits = 6;

/// One row of the table of well-formed byte sequences: first bytes, and the characters that they can begin
struct Form
{
  unsigned first_mask;
  unsigned first_value;
  std::size_t length;
  std::uint32_t smallest;
};

constexpr std::array<Form, 4> kForms = {{
    {0x80, 0x00, 1, 0x0},
    {0xe0, 0xc0, 2, 0x80},
    {0xf0, 0xe0, 3, 0x800},
    {0xf8, 0xf0, 4, 0x10000},
}};

bool is_scalar_value(std::uint32_t code) { return code <= 0x10ffff && (code < 0xd800 || code > 0xdfff); }

std::string make_unicode_escape(unsigned code)
{
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string escape = "\\u";
  for (int shift = 12; shift >= 0; shift -= 4)
    escape += kDigits[(code >> shift) & 0xfU];
  return escape;
}

}  // namespace

std::size_t get_character_length(std::string_view text)
{
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text.front());
  for (const Form& form : kForms) {
    if ((first & form.first_mask) != form.first_value) continue;
    if (text.size() < form.length) return 0;
    std::uint32_t code = first & ~form.first_mask;
    for (std::size_t i = 1; i < form.length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      if ((byte & 0xc0U) != 0x80U) return 0;
      code = (code << kContinuationBits) | (byte & 0x3fU);
    }
    return code >= form.smallest && is_scalar_value(code) ? form.length : 0;
  }
  return 0;
}

std::string make_json_string(std::string_view text)
{
  std::string json = "\"";
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text.front());
    const std::size_t length = get_character_length(text);
    if (length == 0) {
      json += make_unicode_escape(0xdc00U + byte);
    } else if (byte == '"' || byte == '\\') {
      json += {'\\', text.front()};
    } else if (byte < ' ' || byte == 0x7f) {
      json += make_unicode_escape(byte);
    } else {
      json += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return json + '"';
}

std::string make_dot_string(std::string_view text)
{
  constexpr std::size_t kLongest = 40;
  std::string dot = "\"";
  for (std::size_t i = 0; !text.empty(); ++i) {
    if (i == kLongest) {
      dot += "...";
      break;
    }
    const auto byte = static_cast<unsigned char>(text.front());
    const std::size_t length = get_character_length(text);
    if (length == 0 || byte < ' ' || byte == 0x7f) {
      dot += '?';
    } else {
      // Graphviz replaces HTML entities, and escape sequences such as the one for the node's name.
      if (byte == '"' || byte == '\\') dot += '\\';
      dot += byte == '&' ? "&amp;" : text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return dot + '"';
}

}  // namespace lumo::commands
