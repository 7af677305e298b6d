#ifndef LUMO_COMMANDS_SUBCOMMAND_H
#define LUMO_COMMANDS_SUBCOMMAND_H

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/phase_clock.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

// What the subcommands share: how they read, how they fail, and how they print.

/// Ends a subcommand. `what()` is the whole message for the standard error, without the end of the line; empty after
/// EPIPE: print nothing.
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

/// Runs a subcommand and returns its exit status; if it fails, err gets the message.
[[nodiscard]] int run_subcommand(std::ostream& err, const std::function<int()>& subcommand);

/// A message of the library as the end of a line.
[[nodiscard]] std::string make_sentence(const Exception& e);

/// To be called while an exception is handled: throws it again, as a SubcommandFailure that names the text it is about
/// and, if it is known, the place. What is no Exception stays as it is.
[[noreturn]] void rethrow_located(const std::string& name);

/// Runs an action on a text of that name and returns what it returns; an Exception that it throws becomes a
/// SubcommandFailure as above.
template <class Action>
auto with_located_failures(const std::string& name, const Action& action)
{
  try {
    return action();
  } catch (...) {
    rethrow_located(name);
  }
}

/// A file as messages show it.
[[nodiscard]] std::string make_input_name(const std::string& file);
/// The text of a file, or of `in` if the file is `-`; one that cannot be read is a SubcommandFailure.
[[nodiscard]] std::string read_input_text(const std::string& file, std::istream& in, PhaseClock& clock);
/// What `read` makes of the text of a file, or of `in` if the file is `-`; what cannot be read is a SubcommandFailure.
template <class Read>
auto read_located(const std::string& file, std::istream& in, PhaseClock& clock, const Read& read)
{
  const std::string text = read_input_text(file, in, clock);
  return with_located_failures(make_input_name(file), [&] { return read(text); });
}

/// One script: its terms and what it asserts over them.
struct Input
{
  std::string name;  ///< as messages show it
  TermManager mgr;
  smtlib::Script script;
};

/// Reads a script; one that cannot be read is a SubcommandFailure. A note to `err` names the commands that are skipped
/// because nothing answers them. `get-model` is not one of them: `solve` prints a model, and what `simplify` leaves asks
/// for one.
[[nodiscard]] std::unique_ptr<Input> read_input(const std::string& file, std::istream& in, std::ostream& err,
                                                PhaseClock& clock);

/// Refuses a subcommand that is to read the standard input, `-`, twice.
void check_one_standard_input(std::initializer_list<std::string> files);

/// To be called before something is printed to the standard output, and after it. Not all of it arriving is a
/// SubcommandFailure.
void begin_output();
void finish_output(std::ostream& out);
/// Lets `print` write to the standard output in between, and returns what it returns.
template <class Print>
auto write_output(std::ostream& out, const Print& print)
{
  begin_output();
  if constexpr (std::is_void_v<decltype(print(out))>) {
    print(out);
    finish_output(out);
  } else {
    const auto result = print(out);
    finish_output(out);
    return result;
  }
}
/// The failure of writing to something of that name, for a reason that errno gave. A reader that has closed the other
/// end of a pipe gets no message.
[[noreturn]] void throw_write_failure(const std::string& name, int reason);

}  // namespace lumo::commands

#endif
