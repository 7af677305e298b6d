#ifndef LUMO_TESTS_CLI_PROCESS_H
#define LUMO_TESTS_CLI_PROCESS_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumo::test {

/// A folder of its own that goes away with the object and all that is in it.
class TemporaryFolder
{
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::filesystem::path& get_path() const { return path_; }
  /// Writes a file into the folder.
  void write(const std::string& name, std::string_view text) const;

 private:
  std::filesystem::path path_;
};

/// How a run of a program ended, and what it printed.
struct Outcome
{
  int status;  ///< the exit status, or minus the number of the signal that ended it
  std::string out;
  std::string err;
};

/// Where the standard output of a program goes
enum class Output
{
  kFile,        ///< to a file, whose content the outcome has
  kFullDevice,  ///< to /dev/full, where nothing can be written
  kClosed,      ///< nowhere: it is closed from the start
  kUnreadPipe,  ///< into a pipe whose reader has gone
};

/// Runs a program in a folder and waits for its end.
[[nodiscard]] Outcome run_program(const std::string& program, const std::vector<std::string>& args,
                                  const std::filesystem::path& folder, std::string_view standard_input = "",
                                  Output output = Output::kFile);

}  // namespace lumo::test

#endif
