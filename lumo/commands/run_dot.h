#ifndef LUMO_COMMANDS_RUN_DOT_H
#define LUMO_COMMANDS_RUN_DOT_H

#include <iosfwd>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct DotOptions
{
  std::string file;       ///< `-` stands for the standard input
  bool is_after = false;  ///< whether to show what eliminating has left
};

/// Does `lumo dot` and returns its exit status: prints the term graph before eliminating, in which the
/// applications that will go are marked, or the one after it, in which the constants that stand for them are.
int run_dot(const DotOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
            Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
