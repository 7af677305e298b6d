#include "lumo/smtlib/input_error.h"

#include <algorithm>

namespace lumo::smtlib {

std::string make_excerpt(std::string_view text)
{
  constexpr std::size_t kLongest = 200;
  std::string excerpt(text.substr(0, kLongest));
  std::replace_if(
      excerpt.begin(), excerpt.end(),
      [](char c) { return (static_cast<unsigned char>(c) < ' ') || c == '\x7f'; }, '?');
  if (text.size() > kLongest) excerpt += "...";
  return excerpt;
}

std::string make_located_message(std::string_view file, const InputError& error)
{
  const Place place = error.get_place();
  return make_excerpt(file) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " +
         error.what();
}

}  // namespace lumo::smtlib
