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
/// Each assertion of each file is a request to the calculator of its operator. Writes the definitions that answer
/// them to `out`, as a script that a solver accepts together with the assertions. Writes requests without an answer
/// to `err`, one line each, and then returns kSomeRefused. If files cannot be read, writes a message for each of
/// them to `err` and nothing to `out`, and returns kFailed. Also returns kFailed if writing fails. The file name
/// `-` stands for `in`.
int run_invert(const std::vector<std::string>& files, std::istream& in, std::ostream& out, std::ostream& err,
               Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
