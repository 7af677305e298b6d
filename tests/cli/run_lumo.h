#ifndef LUMO_TESTS_CLI_RUN_LUMO_H
#define LUMO_TESTS_CLI_RUN_LUMO_H

#include "tests/support/process.h"

namespace lumo::test {

/// Runs the program under test in a folder and waits for its end.
[[nodiscard]] inline Outcome run_lumo(const std::vector<std::string>& args,
                                      const std::filesystem::path& folder,
                                      std::string_view standard_input = "", Output output = Output::kFile)
{
  return run_program(LUMO_PROGRAM, args, folder, standard_input, output);
}

}  // namespace lumo::test

#endif
