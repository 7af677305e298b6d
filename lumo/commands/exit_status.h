#ifndef LUMO_COMMANDS_EXIT_STATUS_H
#define LUMO_COMMANDS_EXIT_STATUS_H

namespace lumo::commands {

// The exit statuses of the subcommands.

inline constexpr int kAnswered = 0;
inline constexpr int kRefused = 1;  ///< a request has no answer, or a model is not valid
inline constexpr int kFailed = 2;   ///< bad input, a solver that fails, or output that cannot be written
inline constexpr int kCheckFailed =
    3;  ///< a model of our own did not pass our own check, or a certificate was refuted

}  // namespace lumo::commands

#endif
