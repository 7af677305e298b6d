#ifndef LUMO_SMTLIB_INPUT_ERROR_H
#define LUMO_SMTLIB_INPUT_ERROR_H

#include <cstddef>
#include <string>
#include <string_view>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

/// A place in a text: both count from 1, columns in bytes.
struct Place
{
  std::size_t line = 1;
  std::size_t column = 1;

  friend bool operator==(const Place&, const Place&) = default;
};

/// A text that is not what the reader takes. `what()` is one sentence that says what was found and what was
/// expected; the place is where it was found.
class InputError : public Exception
{
 public:
  InputError(Place place, const std::string& sentence) : Exception(sentence), place_(place) {}

  [[nodiscard]] Place get_place() const { return place_; }

 private:
  Place place_;
};

/// A piece of input as a message shows it: on one line, and cut if it is long.
[[nodiscard]] std::string make_excerpt(std::string_view text);

/// The one form of a message on a place of a text: `file:line:column: sentence`.
[[nodiscard]] std::string make_located_message(std::string_view file, Place place, std::string_view sentence);
[[nodiscard]] std::string make_located_message(std::string_view file, const InputError& error);

}  // namespace lumo::smtlib

#endif
