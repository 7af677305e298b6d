#ifndef LUMO_COMMANDS_RUN_EXTEND_H
#define LUMO_COMMANDS_RUN_EXTEND_H

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct ExtendOptions
{
  std::string file;                    ///< the script before `lumo simplify`
  std::string trail;                   ///< the trail that `lumo simplify` wrote
  std::string model;                   ///< the output of a solver for the rest
  std::optional<std::size_t> query{};  ///< of the file, counted from 1; else the last one
};

/// Does `lumo extend` and returns its exit status. One of the files may be `-`, which stands for `in`.
///
/// Writes the model of the script to `out` if every assertion is true under it; otherwise returns kCheckFailed.
int run_extend(const ExtendOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
