#ifndef LUMO_COMMANDS_SUBCOMMAND_H
#define LUMO_COMMANDS_SUBCOMMAND_H

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/phase_clock.h"
#include "lumo/commands/text_file.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::commands {

// Functions that the subcommands share for reading, failing and printing.

/// Ends a subcommand. `what()` is the whole message for the standard error, without a newline at the end; empty after
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

/// Runs a subcommand and returns its exit status. If it fails, writes the message to err.
[[nodiscard]] int run_subcommand(std::ostream& err, const std::function<int()>& subcommand);

/// The message of an exception as the rest of a line.
[[nodiscard]] std::string make_sentence(const Exception& e);

/// Call this while an exception is handled. Rethrows it as a SubcommandFailure that contains the name of the text
/// and, if it is known, the place. Rethrows anything but an Exception unchanged.
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

/// The name of a file in messages.
[[nodiscard]] std::string make_input_name(const std::string& file);
/// The text of a file, or of `in` if the file is `-`; throws a SubcommandFailure if it cannot be read.
[[nodiscard]] InputText read_input_text(const std::string& file, std::istream& in, PhaseClock& clock);
/// The result of `read` for the text of a file, or of `in` if the file is `-`; throws a SubcommandFailure if that
/// fails.
template <class Read>
auto read_located(const std::string& file, std::istream& in, PhaseClock& clock, const Read& read)
{
  const InputText text = read_input_text(file, in, clock);
  return with_located_failures(make_input_name(file), [&] { return read(text); });
}

/// One script: its terms and its assertions.
struct Input
{
  std::string name;  ///< for messages
  TermManager mgr;
  smtlib::Script script;
};

/// Makes an input of the text of a file; null if it makes several queries. A text that cannot be read is a
/// SubcommandFailure. A note to `err` names the commands that are skipped because nothing answers them. `get-model` is not
/// one of them: `solve` prints a model, and what `simplify` leaves asks for one.
[[nodiscard]] std::unique_ptr<Input> try_read_script(
    const std::string& file, const InputText& text, std::ostream& err,
    smtlib::ForeignText foreign = smtlib::ForeignText::kRefused);
/// Reads a file, and takes the query of that number, counted from 1, or else its last one. What cannot be read is a
/// SubcommandFailure. Notes are as above.
[[nodiscard]] std::unique_ptr<Input> read_input(const std::string& file, std::istream& in, std::ostream& err,
                                                PhaseClock& clock, std::optional<std::size_t> query = {},
                                                smtlib::ForeignText foreign = smtlib::ForeignText::kRefused);

/// The same for a file that must not make several queries.
[[nodiscard]] std::unique_ptr<Input> read_single_query(const std::string& file, std::istream& in,
                                                       std::ostream& err, PhaseClock& clock);

/// Refuses files of which more than one is the standard input, `-`.
void check_one_standard_input(std::initializer_list<std::string> files);

/// Call these before and after printing to the standard output. If not all of it could be written, throws a
/// SubcommandFailure.
void begin_output();
void finish_output(std::ostream& out);
/// Calls `print` between the two, and returns its result.
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
/// Throws the failure of a write to the output `name`; the reason is an errno. A reader that has closed the other
/// end of a pipe gets no message.
[[noreturn]] void throw_write_failure(const std::string& name, int reason);

}  // namespace lumo::commands

#endif
