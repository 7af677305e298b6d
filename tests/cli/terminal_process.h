#ifndef LUMO_TESTS_CLI_TERMINAL_PROCESS_H
#define LUMO_TESTS_CLI_TERMINAL_PROCESS_H

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace lumo::test {

/// A program that runs in a folder on its own terminal: all three streams are the terminal, except the standard
/// output if it is a file.
class TerminalProcess
{
 public:
  /// The variable TERM gets the terminal's name, and the system reports its number of columns.
  struct Terminal
  {
    std::string name = "xterm";
    unsigned short num_columns = 80;
  };

  TerminalProcess(const std::string& program, const std::vector<std::string>& args,
                  const std::filesystem::path& folder, const Terminal& terminal,
                  const std::string& output_file = "");
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;
  ~TerminalProcess();

  /// Reads until the text was read or the output ends; returns whether the text was read.
  bool wait_for_text(std::string_view text);
  /// Types on the terminal's keyboard.
  void type(std::string_view text) const;
  void signal(int signal) const;
  /// Waits for the end; call it once. Returns the exit status, or minus the number of the signal that ended it.
  int wait();
  /// The whole output on the terminal.
  [[nodiscard]] const std::string& get_text() const { return text_; }

 private:
  bool read_some();

  int terminal_ = -1;
  pid_t child_ = -1;
  bool is_silent_ = false;  ///< whether the last wait for text was in vain
  std::string text_;
};

/// The lines that a terminal finally shows for a text: interprets carriage returns, line ends, the erasing of the
/// rest of a line, and characters.
[[nodiscard]] std::vector<std::string> show_on_screen(std::string_view text);

}  // namespace lumo::test

#endif
