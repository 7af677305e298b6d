#ifndef LUMO_TESTS_SUPPORT_PROCESS_H
#define LUMO_TESTS_SUPPORT_PROCESS_H

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace lumo::test {

/// How a run of a program ended, and what it printed.
struct Outcome
{
  int status;  ///< the exit status, or minus the number of the signal that ended it
  std::string out;
  std::string err;
};

/// The destination of a program's standard output
enum class Output
{
  kFile,        ///< to a file, whose content the outcome has
  kFullDevice,  ///< to /dev/full, where nothing can be written
  kClosed,      ///< nowhere: it is closed from the start
  kUnreadPipe,  ///< into a pipe whose reader has gone
};

/// A program that runs in a folder.
class Process
{
 public:
  Process(const std::string& program, const std::vector<std::string>& args,
          const std::filesystem::path& folder, std::string_view standard_input = "",
          Output output = Output::kFile);

  [[nodiscard]] pid_t get_id() const { return child_; }
  void signal(int signal) const;
  /// Waits for the end, once.
  [[nodiscard]] Outcome wait() const;

 private:
  // The streams are files in another folder than the one in which the program runs, so no pipe can fill up.
  TemporaryFolder streams_;
  pid_t child_ = -1;
};

/// Runs a program in a folder and waits for its end.
[[nodiscard]] Outcome run_program(const std::string& program, const std::vector<std::string>& args,
                                  const std::filesystem::path& folder, std::string_view standard_input = "",
                                  Output output = Output::kFile);

}  // namespace lumo::test

#endif
