#ifndef LUMO_COMMANDS_RUN_CHECK_H
#define LUMO_COMMANDS_RUN_CHECK_H

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct CheckOptions
{
  std::string file;
  std::string model;                   ///< in the form of a response to `get-model`
  std::optional<std::size_t> query{};  ///< of the file, counted from 1; else the last one
};

/// Does `lumo check` and returns its exit status. One of the files may be `-`, which stands for `in`.
///
/// If every assertion of the script is true under the model, writes `valid` to `out`; constants that the model
/// leaves out are 0 or false. Otherwise writes `invalid` to `out`, writes the first assertion that is not true and
/// the values of its constants to `err`, and returns kRefused.
int run_check(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
              Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
