#ifndef LUMO_TESTS_CLI_PROCESS_H
#define LUMO_TESTS_CLI_PROCESS_H

#include <filesystem>
#include <string>
#include <string_view>
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
