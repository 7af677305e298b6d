#ifndef LUMO_COMMANDS_SUBCOMMAND_H
#define LUMO_COMMANDS_SUBCOMMAND_H

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

// What the commands of the program share: how they read, how they fail, and how they print.

/// Ends a command. `what()` is the whole message for the standard error, without the end of the line; if it is
/// empty, nobody is left who would read one.
class SubcommandFailure : public Exception
{
 public:
  explicit SubcommandFailure(const std::string& message, int status = kFailed)
      : Exception(message), status_(status)
  {}

  [[nodiscard]] int get_status() const { return status_; }

 private:
  int status_;
};

/// Runs a command and returns its exit status; if it fails, err gets the message.
[[nodiscard]] int run_subcommand(std::ostream& err, const std::function<int()>& command);

/// A message of the library as the end of a line.
[[nodiscard]] std::string make_sentence(const Exception& e);
/// The form of a message on a place of a file: `file:line:column: sentence`.
[[nodiscard]] std::string make_message(std::string_view file_name, smtlib::Place place,
                                       const std::string& sentence);

/// Runs an action on a text of that name; whatever it throws becomes a SubcommandFailure that names the text and,
/// if it is known, the place.
void with_located_failures(const std::string& name, const std::function<void()>& action);

/// A file as messages show it.
[[nodiscard]] std::string make_input_name(const std::string& file);
/// The text of a file, or of `in` if the file is `-`; one that cannot be read is a SubcommandFailure.
[[nodiscard]] std::string read_input_text(const std::string& file, std::istream& in,
                                          Progress* progress = nullptr);

/// One script: its terms and what it asserts over them.
struct Input
{
  std::string name;  ///< as messages show it
  TermManager mgr;
  smtlib::Script script;
};

/// Reads a script; one that cannot be read is a SubcommandFailure.
[[nodiscard]] std::unique_ptr<Input> read_input(const std::string& file, std::istream& in,
                                                Progress* progress = nullptr);

/// Refuses a command that is to read the standard input, `-`, twice.
void check_one_standard_input(std::initializer_list<std::string> files);

/// Lets `print` write to the standard output and makes sure that all of it arrives, else it is a SubcommandFailure.
void write_output(std::ostream& out, const std::function<void(std::ostream&)>& print);
/// The failure of writing to something of that name, for a reason that errno gave. Whoever closed the other
/// end of a pipe has seen enough and wants no message.
[[nodiscard]] SubcommandFailure make_write_failure(const std::string& name, int reason);

}  // namespace lumo::commands

#endif
