#ifndef LUMO_COMMANDS_NEAREST_FILE_H
#define LUMO_COMMANDS_NEAREST_FILE_H

#include <filesystem>
#include <string>

namespace lumo::commands {

/// The existing file whose path is nearest to that of a file that does not exist, component by component; empty if
/// none is near. The distances are those of smtlib::find_nearest. The extension may be missing or have two
/// mistakes; it does not count for the number of mistakes that the rest of the file's name may have.
[[nodiscard]] std::string find_nearest_file(const std::filesystem::path& typed);

}  // namespace lumo::commands

#endif
