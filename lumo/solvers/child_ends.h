#ifndef LUMO_SOLVERS_CHILD_ENDS_H
#define LUMO_SOLVERS_CHILD_ENDS_H

#include <array>
#include <string_view>

#include "lumo/solvers/forked_process.h"

namespace lumo::solvers {

// What every child process needs at its start and at its end.

/// In a child: makes the pipes its standard streams and closes all other descriptors but one.
void become_streams(std::array<int, 3> ends, int alive);
/// In a child: writes all of a text; if that cannot be done, the child ends.
void write_all(int descriptor, std::string_view text);

/// Makes a keeper end all that it keeps, and waits for that, but not for long.
void stop_keeper(const ForkedProcess& keeper);
/// Waits for a keeper that has ended or been stopped, and returns the shell's status. An `Exception` says that the
/// keeper could not start the shell.
[[nodiscard]] int wait_for_keeper(ForkedProcess& keeper);

}  // namespace lumo::solvers

#endif
