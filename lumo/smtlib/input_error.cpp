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

std::string make_located_message(std::string_view file, Place place, std::string_view sentence)
{
  return make_excerpt(file) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " +
         std::string(sentence);
}

std::string make_located_message(std::string_view file, const InputError& error)
{
  return make_located_message(file, error.get_place(), error.what());
}

}  // namespace lumo::smtlib
