#ifndef LUMO_COMMANDS_TEXT_FILE_H
#define LUMO_COMMANDS_TEXT_FILE_H

#include <istream>
#include <string>

namespace lumo::commands {

/// The whole content of a file. Throws an `Exception` if it cannot be read, with the reason but without the name.
/// If the file does not exist, the text suggests the nearest existing one.
[[nodiscard]] std::string read_file(const std::string& name);
/// The rest of the stream.
[[nodiscard]] std::string read_stream(std::istream& in);

}  // namespace lumo::commands

#endif
