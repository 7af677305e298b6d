#ifndef LUMO_SMTLIB_INPUT_ERROR_H
#define LUMO_SMTLIB_INPUT_ERROR_H

#include <cstddef>
#include <string>
#include <string_view>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

/// A place in a text. Both numbers count from 1; columns count bytes.
struct Place
{
  std::size_t line = 1;
  std::size_t column = 1;

  friend bool operator==(const Place&, const Place&) = default;
};

/// Thrown for a text that the reader does not accept. `what()` is one sentence that says what was found and what
/// was expected, and the place is where it was found.
class InputError : public Exception
{
 public:
  InputError(Place place, const std::string& sentence) : Exception(sentence), place_(place) {}

  [[nodiscard]] Place get_place() const { return place_; }

 private:
  Place place_;
};

/// A piece of input for a message: on one line, and cut if it is long.
[[nodiscard]] std::string make_excerpt(std::string_view text);

/// The form of every message about a place in a text: `file:line:column: sentence`.
[[nodiscard]] std::string make_located_message(std::string_view file, Place place, std::string_view sentence);
[[nodiscard]] std::string make_located_message(std::string_view file, const InputError& error);

}  // namespace lumo::smtlib

#endif
