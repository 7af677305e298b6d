#ifndef LUMO_TESTS_COMMANDS_SUBCOMMAND_RUN_H
#define LUMO_TESTS_COMMANDS_SUBCOMMAND_RUN_H

#include <sstream>
#include <string>

namespace lumo::test {

/// How a subcommand ended, and what it printed.
struct SubcommandRun
{
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs a subcommand, one of the functions `run_...` that take options and streams.
template <class Subcommand, class Options>
[[nodiscard]] SubcommandRun run(Subcommand subcommand, const Options& options,
                                const std::string& standard_input = "")
{
  std::istringstream in(standard_input);
  std::ostringstream out;
  std::ostringstream err;
  const int status = subcommand(options, in, out, err, nullptr);
  return {status, out.str(), err.str()};
}

}  // namespace lumo::test

#endif
