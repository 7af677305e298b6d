#include "tests/cli/terminal_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace lumo::test {

TerminalProcess::TerminalProcess(const std::string& program, const std::vector<std::string>& args,
                                 const std::filesystem::path& folder, const Terminal& terminal,
                                 const std::string& output_file)
{
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& arg : args)
    argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);

  winsize size{};
  size.ws_row = 24;
  size.ws_col = terminal.num_columns;
  child_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error("no terminal can be made; perhaps /dev/pts is not mounted");
  if (child_ == 0) {
    if (chdir(folder.c_str()) != 0 || setenv("TERM", terminal.name.c_str(), 1) != 0) _exit(126);
    if (!output_file.empty()) {
      const int file = open(output_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      if (file < 0 || dup2(file, STDOUT_FILENO) < 0) _exit(126);
    }
    execv(program.c_str(), argv.data());
    _exit(127);
  }
}

TerminalProcess::~TerminalProcess()
{
  close(terminal_);
  if (child_ < 0) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

bool TerminalProcess::wait_for_text(std::string_view text)
{
  while (text_.find(text) == std::string::npos) {
    if (!read_some()) return false;
  }
  return true;
}

void TerminalProcess::type(std::string_view text) const
{
  if (write(terminal_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
    throw std::runtime_error("the terminal takes no keys");
}

void TerminalProcess::signal(int signal) const { kill(child_, signal); }

int TerminalProcess::wait()
{
  while (read_some()) {
  }
  // A process that has not ended by now is stuck.
  if (is_silent_) kill(child_, SIGKILL);
  int status = 0;
  if (waitpid(child_, &status, 0) != child_) throw std::runtime_error("the program cannot be waited for");
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// The output has ended if no process has the terminal open any more, or if nothing was read for very long.
bool TerminalProcess::read_some()
{
  constexpr int kMilliseconds = 120'000;
  pollfd terminal = {terminal_, POLLIN, 0};
  is_silent_ = poll(&terminal, 1, kMilliseconds) == 0;
  if (is_silent_) return false;
  std::array<char, 4096> buffer{};
  const ssize_t num_read = read(terminal_, buffer.data(), buffer.size());
  if (num_read <= 0) return false;
  text_.append(buffer.data(), static_cast<std::size_t>(num_read));
  return true;
}

std::vector<std::string> show_on_screen(std::string_view text)
{
  constexpr std::string_view kEraseRest = "\x1b[K";
  std::vector<std::string> lines(1);
  std::size_t column = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string& line = lines.back();
    if (text.substr(i).starts_with(kEraseRest)) {
      line.resize(std::min(line.size(), column));
      i += kEraseRest.size() - 1;
    } else if (text[i] == '\r') {
      column = 0;
    } else if (text[i] == '\n') {
      lines.emplace_back();
      column = 0;
    } else {
      if (line.size() <= column) line.resize(column + 1, ' ');
      line[column++] = text[i];
    }
  }
  return lines;
}

}  // namespace lumo::test
