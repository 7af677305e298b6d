#ifndef LUMO_COMMANDS_OUTPUT_FILE_H
#define LUMO_COMMANDS_OUTPUT_FILE_H

#include <filesystem>
#include <string>

#include "lumo/commands/descriptor_stream.h"
#include "lumo/commands/output_target.h"

namespace lumo::commands {

/// A file that a subcommand writes. An existing file of that name stays unchanged until the new content is
/// complete: the content is written to a temporary file in the same folder, and `commit` replaces the old file by
/// it. Descriptors that this process already has open, devices and pipes are written to directly.
///
/// Throws a SubcommandFailure that names the file if it cannot be written.
class OutputFile
{
 public:
  /// The target is the meaning of the name.
  OutputFile(const std::string& name, OutputTarget target);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Without `commit`, deletes what was written.
  ~OutputFile();

  /// The stream is not buffered.
  [[nodiscard]] std::ostream& get_stream() { return stream_; }
  /// Ensures that all of the content is written. If several files belong together, finish all of them
  /// before you commit the first one.
  void finish();
  /// Renames the finished content to the name.
  void commit();

 private:
  [[nodiscard]] int open_target();
  [[nodiscard]] int make_temporary_file();
  void discard();
  [[noreturn]] void fail(int reason) const;

  std::string name_;  ///< for messages
  OutputTarget target_;
  std::filesystem::path temporary_;  ///< empty if the target is written to directly, or the work is done
  DescriptorStream stream_;
};

}  // namespace lumo::commands

#endif
