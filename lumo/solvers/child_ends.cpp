#include "lumo/solvers/child_ends.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

#include "lumo/solvers/descriptor.h"
#include "lumo/solvers/keeper.h"

namespace lumo::solvers {

void stop_keeper(const ForkedProcess& keeper)
{
  constexpr int kMostMilliseconds = 2000;
  keeper.signal(kKeeperStopSignal);
  pollfd alive{keeper.get_alive().get(), 0, 0};
  poll(&alive, 1, kMostMilliseconds);
  keeper.signal(SIGKILL);
}

int wait_for_keeper(ForkedProcess& keeper)
{
  int status = keeper.wait().value_or(SIGKILL);
  pid_t shell = -1;
  bool has_ended = false;
  KeeperReport report{};
  while (read(keeper.get_alive().get(), &report, sizeof report) == sizeof report) {
    if (report.event == KeeperEvent::kFailed) fail_without_process("/bin/sh", report.number);
    if (report.event == KeeperEvent::kStarted) shell = report.number;
    if (report.event == KeeperEvent::kEnded) {
      has_ended = true;
      status = report.number;
    }
  }
  // A keeper that something else has killed leaves its group.
  if (!has_ended && shell > 0) kill(-shell, SIGKILL);
  return status;
}

void become_streams(std::array<int, 3> ends, int alive)
{
  constexpr int kAlive = STDERR_FILENO + 1;
  for (int i = 0; i < 3; ++i)
    dup2(ends[static_cast<std::size_t>(i)], i);
  dup2(alive, kAlive);
  closefrom(kAlive + 1);
}

void write_all(int descriptor, std::string_view text)
{
  while (!text.empty()) {
    const ssize_t num_written = write(descriptor, text.data(), text.size());
    if (num_written < 0 && errno != EINTR) _exit(EXIT_FAILURE);
    if (num_written > 0) text.remove_prefix(static_cast<std::size_t>(num_written));
  }
}

}  // namespace lumo::solvers
