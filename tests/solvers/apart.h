#ifndef LUMO_TESTS_SOLVERS_APART_H
#define LUMO_TESTS_SOLVERS_APART_H

#include <csignal>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumo::test {

/// A child process of the test that runs an action
class Apart
{
 public:
  template <class Action>
  explicit Apart(Action action) : process_(fork())
  {
    if (process_ != 0) return;
    action();
    _exit(7);
  }

  [[nodiscard]] pid_t get_id() const { return process_; }
  void signal(int signal) const { kill(process_, signal); }
  /// The exit status, or minus the number of the signal that ended the process.
  [[nodiscard]] int wait() const
  {
    int status = 0;
    waitpid(process_, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
  }

 private:
  pid_t process_;
};

}  // namespace lumo::test

#endif
