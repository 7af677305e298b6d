#ifndef LUMO_COMMANDS_OUTPUT_FILE_H
#define LUMO_COMMANDS_OUTPUT_FILE_H

#include <filesystem>
#include <string>

#include "lumo/commands/descriptor_stream.h"
#include "lumo/commands/output_target.h"

namespace lumo::commands {

/// A file that a subcommand makes. What was there under its name stays as it was until the new content is
/// complete: that goes to a temporary file in the same folder, which `commit` puts in the place of the old one.
/// What this process has open already is written to as it is; so are devices and pipes.
///
/// What cannot be written is a SubcommandFailure that names the file.
class OutputFile
{
 public:
  /// The target is what the name means.
  OutputFile(const std::string& name, OutputTarget target);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Without `commit`, nothing is left of what was written.
  ~OutputFile();

  /// The stream is not buffered.
  [[nodiscard]] std::ostream& get_stream() { return stream_; }
  /// Makes sure that all of the content is written. Several files that belong together are all finished
  /// before the first is committed.
  void finish();
  /// Gives the finished content its name.
  void commit();

 private:
  [[nodiscard]] int open_target();
  [[nodiscard]] int make_temporary_file();
  void discard();
  [[noreturn]] void fail(int reason) const;

  std::string name_;  ///< as messages show it
  OutputTarget target_;
  std::filesystem::path temporary_;  ///< empty if the target is written to directly, or the work is done
  DescriptorStream stream_;
};

}  // namespace lumo::commands

#endif
