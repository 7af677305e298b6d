#ifndef LUMO_COMMANDS_RUN_DOT_H
#define LUMO_COMMANDS_RUN_DOT_H

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct DotOptions
{
  std::string file;                    ///< `-` stands for the standard input
  bool is_after = false;               ///< whether to show the rest after elimination
  std::optional<std::size_t> query{};  ///< of the file, counted from 1; else the last one
};

/// Does `lumo dot` and returns its exit status. Prints the term graph before elimination, with the applications
/// marked that will be eliminated, or the graph after it, with the constants marked that replace them.
int run_dot(const DotOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
            Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
