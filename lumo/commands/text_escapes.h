#ifndef LUMO_COMMANDS_TEXT_ESCAPES_H
#define LUMO_COMMANDS_TEXT_ESCAPES_H

#include <cstddef>
#include <string>
#include <string_view>

namespace lumo::commands {

/// The number of bytes of the UTF-8 character at the start of the text; 0 if there is none or the text is empty.
[[nodiscard]] std::size_t get_character_length(std::string_view text);

/// The text as a JSON string with its quotes. Bytes that are not UTF-8 become `\udc80` to `\udcff`, so different
/// texts stay different, and a reader can restore the bytes.
[[nodiscard]] std::string make_json_string(std::string_view text);

/// The text as a Graphviz string with its quotes: on one line, and cut if it is long.
[[nodiscard]] std::string make_dot_string(std::string_view text);

}  // namespace lumo::commands

#endif
