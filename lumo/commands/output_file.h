#ifndef LUMO_COMMANDS_OUTPUT_FILE_H
#define LUMO_COMMANDS_OUTPUT_FILE_H

#include <filesystem>
#include <fstream>
#include <string>

namespace lumo::commands {

/// A file that a command makes. What was there under its name stays as it was until the new content is
/// complete: that goes to a temporary file in the same folder, which `commit` puts in the place of the old one.
/// Devices, pipes and the like are written to directly.
///
/// What cannot be written is a SubcommandFailure that names the file.
class OutputFile
{
 public:
  explicit OutputFile(const std::string& file);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Without `commit`, nothing is left of what was written.
  ~OutputFile();

  [[nodiscard]] std::ostream& get_stream() { return stream_; }
  /// Makes sure that all of the content is written. Several files that belong together are all finished
  /// before the first is committed.
  void finish();
  /// Gives the finished content its name.
  void commit();

 private:
  void make_temporary_file();
  void discard();
  [[noreturn]] void fail(int reason) const;

  std::string name_;                 ///< as messages show it
  std::filesystem::path target_;     ///< what the name means, behind symbolic links
  std::filesystem::path temporary_;  ///< empty if the target is written to directly, or the work is done
  std::ofstream stream_;
};

}  // namespace lumo::commands

#endif
