#ifndef LUMO_COMMANDS_TEXT_FILE_H
#define LUMO_COMMANDS_TEXT_FILE_H

#include <istream>
#include <string>

namespace lumo::commands {

/// The whole content of a file. One that cannot be read is an `Exception` that says why, without the
/// name, and what file may have been meant by that of one that is not there.
[[nodiscard]] std::string read_file(const std::string& name);
/// Everything that the stream still holds.
[[nodiscard]] std::string read_stream(std::istream& in);

}  // namespace lumo::commands

#endif
