#ifndef LUMO_COMMANDS_OUTPUT_TARGET_H
#define LUMO_COMMANDS_OUTPUT_TARGET_H

#include <filesystem>
#include <string>

namespace lumo::commands {

/// The meaning of the name of an output.
struct OutputTarget
{
  enum class Kind
  {
    kOpen,     ///< a file descriptor of this process, written to directly: `-`, /dev/stdout, /dev/fd/5
    kSpecial,  ///< a device or a pipe, opened by its name
    kFile,     ///< a regular file, or a new name
  };

  Kind kind = Kind::kFile;
  int descriptor = -1;         ///< of kOpen
  std::filesystem::path path;  ///< otherwise: the folder's canonical path and the name in it, not a link
};

/// Finds out what a name means. Throws a SubcommandFailure if no file can be written under the name, for example if
/// it is a folder or in a folder that does not exist.
[[nodiscard]] OutputTarget find_output_target(const std::string& name);

/// Whether the output to one of the two would replace the output to the other, or mix with it. A
/// character device, for example /dev/null, accepts several outputs.
[[nodiscard]] bool is_one_output(const OutputTarget& first, const OutputTarget& second);

}  // namespace lumo::commands

#endif
