#ifndef LUMO_COMMANDS_OUTPUT_TARGET_H
#define LUMO_COMMANDS_OUTPUT_TARGET_H

#include <filesystem>
#include <string>

namespace lumo::commands {

/// What the name of an output means.
struct OutputTarget
{
  enum class Kind
  {
    kOpen,     ///< a file descriptor of this process, written to as it is: `-`, /dev/stdout, /dev/fd/5
    kSpecial,  ///< a device or a pipe, opened under its name
    kFile,     ///< a regular file, or a name that is free
  };

  Kind kind = Kind::kFile;
  int descriptor = -1;         ///< of kOpen
  std::filesystem::path path;  ///< else: the folder's canonical path and the name in it, no symbolic link
};

/// Finds out what a name means. A name under which no file can be written, as that of a folder or one in a folder
/// that does not exist, is a SubcommandFailure.
[[nodiscard]] OutputTarget find_output_target(const std::string& name);

/// Whether what is written to one of the two would take the place of what is written to the other, or mix with it. A
/// character device, as /dev/null, takes several outputs.
[[nodiscard]] bool is_one_output(const OutputTarget& first, const OutputTarget& second);

}  // namespace lumo::commands

#endif
