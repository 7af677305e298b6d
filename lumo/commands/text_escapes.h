#ifndef LUMO_COMMANDS_TEXT_ESCAPES_H
#define LUMO_COMMANDS_TEXT_ESCAPES_H

#include <cstddef>
#include <string>
#include <string_view>

namespace lumo::commands {

/// How many bytes the UTF-8 character has that the text starts with; 0 if it starts with none. A text without
/// content starts with none.
[[nodiscard]] std::size_t get_character_length(std::string_view text);

/// The text as a JSON string with its quotes. Bytes that are no UTF-8 become `\udc80` to `\udcff`, so that no
/// two texts become one and whoever knows this gets the bytes back.
[[nodiscard]] std::string make_json_string(std::string_view text);

/// The text as a Graphviz string with its quotes: on one line, and cut if it is long.
[[nodiscard]] std::string make_dot_string(std::string_view text);

}  // namespace lumo::commands

#endif
