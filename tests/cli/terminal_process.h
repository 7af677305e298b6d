#ifndef LUMO_TESTS_CLI_TERMINAL_PROCESS_H
#define LUMO_TESTS_CLI_TERMINAL_PROCESS_H

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace lumo::test {

/// A program that runs in a folder on a terminal of its own: all three streams are the terminal, save the standard
/// output if it has a file.
class TerminalProcess
{
 public:
  /// The terminal's name is what the variable TERM says, and its number of columns what the system says.
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

  /// Reads until the text has come, or nothing more comes; answers which.
  bool wait_for_text(std::string_view text);
  /// Types on the terminal's keyboard.
  void type(std::string_view text) const;
  void signal(int signal) const;
  /// Waits for the end, once; returns the exit status, or minus the number of the signal that ended it.
  int wait();
  /// All that has come on the terminal.
  [[nodiscard]] const std::string& get_text() const { return text_; }

 private:
  bool read_some();

  int terminal_ = -1;
  pid_t child_ = -1;
  bool is_silent_ = false;  ///< whether the last wait for text was in vain
  std::string text_;
};

/// The lines that a terminal shows in the end after such a text: carriage returns, line ends, the erasing of the
/// rest of a line, and characters.
[[nodiscard]] std::vector<std::string> show_on_screen(std::string_view text);

}  // namespace lumo::test

#endif
