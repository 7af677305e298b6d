#ifndef LUMO_COMMANDS_RUN_EXTEND_H
#define LUMO_COMMANDS_RUN_EXTEND_H

#include <iosfwd>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct ExtendOptions
{
  std::string file;   ///< the script before `lumo simplify`
  std::string trail;  ///< what `lumo simplify` wrote beside the rest
  std::string model;  ///< what a solver answered to the rest
};

/// Does `lumo extend` and returns its exit status. One of the files may be `-`, which stands for `in`.
///
/// The model of the script goes to `out` if every assertion is true under it; else the status is kCheckFailed.
int run_extend(const ExtendOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
