#include "tests/support/process.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace lumo::test {

namespace {

/// In the child: redirects a descriptor to a file.
void redirect(int descriptor, const std::filesystem::path& path, int flags)
{
  const int file = open(path.c_str(), flags, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
  close(file);
}

void redirect_output(const std::filesystem::path& path, Output output)
{
  int ends[2];
  switch (output) {
    case Output::kFile:
      redirect(STDOUT_FILENO, path, O_WRONLY | O_CREAT | O_TRUNC);
      return;
    case Output::kFullDevice:
      redirect(STDOUT_FILENO, "/dev/full", O_WRONLY);
      return;
    case Output::kClosed:
      close(STDOUT_FILENO);
      return;
    case Output::kUnreadPipe:
      if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) _exit(126);
      close(ends[0]);
      close(ends[1]);
      return;
  }
}

int wait_for(pid_t child)
{
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("the program cannot be waited for");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& args,
                 const std::filesystem::path& folder, std::string_view standard_input, Output output)
{
  streams_.write("in", standard_input);
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& arg : args)
    argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  child_ = fork();
  if (child_ < 0) throw std::runtime_error("no process can be made");
  if (child_ == 0) {
    redirect(STDIN_FILENO, streams_.get_path() / "in", O_RDONLY);
    redirect(STDERR_FILENO, streams_.get_path() / "err", O_WRONLY | O_CREAT | O_TRUNC);
    redirect_output(streams_.get_path() / "out", output);
    if (chdir(folder.c_str()) != 0) _exit(126);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
}

void Process::signal(int signal) const { kill(child_, signal); }

Outcome Process::wait() const
{
  const int status = wait_for(child_);
  return {status, streams_.read("out"), streams_.read("err")};
}

Outcome run_program(const std::string& program, const std::vector<std::string>& args,
                    const std::filesystem::path& folder, std::string_view standard_input, Output output)
{
  return Process(program, args, folder, standard_input, output).wait();
}

}  // namespace lumo::test
