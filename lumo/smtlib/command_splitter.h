#ifndef LUMO_SMTLIB_COMMAND_SPLITTER_H
#define LUMO_SMTLIB_COMMAND_SPLITTER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lumo/smtlib/input_error.h"

namespace lumo::smtlib {

/// The text of a command, or of something that stands where a command was expected.
struct CommandText
{
  std::string_view text;
  Place place;  ///< of its first character
};

/// Cuts a text that arrives piece by piece into commands, each as soon as its last parenthesis is there. Parentheses
/// in comments, strings and symbols between bars do not count.
///
/// Each character is looked at once. Memory is that of the longest command and the longest piece.
class CommandSplitter
{
 public:
  /// Takes the next piece of the text. Texts that were taken out are not valid any more.
  void add(std::string_view piece);
  /// Notes that the text has ended: what is left of it is the last command, complete or not.
  void finish() { is_finished_ = true; }

  /// The next command, or nothing if none is complete. Outside of parentheses, each word is taken for one, and so is a
  /// closing parenthesis. The text is valid until the next call of `add`.
  [[nodiscard]] std::optional<CommandText> take();
  /// Whether some of a command has arrived that is not complete.
  [[nodiscard]] bool has_begun() const { return !is_between_; }

 private:
  enum class State : std::uint8_t
  {
    kInside,  ///< none of the others
    kComment,
    kString,
    kQuotedSymbol,
  };

  /// Goes to the first character of the next command; false if it is not there yet.
  bool begin();
  /// False if it is not known yet whether the text begins with one.
  bool skip_byte_order_mark();
  /// Goes past one character of a command; true if it was the last one.
  bool step(char c);
  /// Goes past what stands before the next command.
  void skip(std::size_t count);
  [[nodiscard]] CommandText cut();

  std::string text_;
  std::size_t start_ = 0;  ///< of the command in `text_`; what comes before is done
  std::size_t next_ = 0;   ///< the character that is looked at next
  Place place_;            ///< of the character at `start_`
  State state_ = State::kInside;
  bool is_between_ = true;  ///< whether no command has begun
  bool is_first_ = true;    ///< whether the start of the whole text comes next
  bool is_finished_ = false;
  std::size_t depth_ = 0;  ///< of parentheses
};

}  // namespace lumo::smtlib

#endif
