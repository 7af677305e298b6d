#ifndef LUMO_COMMANDS_EXIT_STATUS_H
#define LUMO_COMMANDS_EXIT_STATUS_H

namespace lumo::commands {

// What the subcommands of the program end with.

inline constexpr int kAnswered = 0;
inline constexpr int kRefused = 1;      ///< some request has no answer, or a model is not valid
inline constexpr int kFailed = 2;       ///< bad input, a solver that fails, or output that cannot be written
inline constexpr int kCheckFailed = 3;  ///< a model of our own did not pass our own check

}  // namespace lumo::commands

#endif
