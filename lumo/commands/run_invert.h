#ifndef LUMO_COMMANDS_RUN_INVERT_H
#define LUMO_COMMANDS_RUN_INVERT_H

#include <iosfwd>
#include <string>
#include <vector>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

inline constexpr int kAllSolved = kAnswered;
inline constexpr int kSomeRefused = kRefused;

/// Does `lumo invert` and returns its exit status.
///
/// Each assertion of each file is a request to the calculator of its operator. The definitions that answer
/// them go to `out`, as a script that a solver accepts together with the assertions; what has no answer goes
/// to `err`, one line each, and makes the status kSomeRefused. If a file cannot be read, every one that
/// cannot is named on `err`, nothing at all goes to `out`, and the status is kFailed; so it is if writing
/// fails. The file name `-` stands for `in`.
int run_invert(const std::vector<std::string>& files, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
