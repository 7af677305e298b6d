#include "lumo/smtlib/rewritten_text.h"

#include <algorithm>

namespace lumo::smtlib {

namespace {

/// The position of a place, or of the text's end if the place lies behind it.
std::size_t find_position(std::string_view text, Place place)
{
  std::size_t line_start = 0;
  for (std::size_t line = 1; line < place.line; ++line) {
    const std::size_t end = text.find('\n', line_start);
    if (end == std::string_view::npos) return text.size();
    line_start = end + 1;
  }
  return std::min(text.size(), line_start + place.column - 1);
}

}  // namespace

Place find_place(std::string_view text, std::size_t position)
{
  const std::string_view before = text.substr(0, position);
  const auto num_ends = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  // Without a line end, the search answers -1, and the column is the length and 1.
  return {num_ends + 1, before.size() - (before.rfind('\n') + 1) + 1};
}

Place RewrittenText::find_original(Place place) const
{
  const std::size_t position = find_position(text_, place);
  const auto behind =
      std::upper_bound(pieces_.begin(), pieces_.end(), position,
                       [](std::size_t wanted, const Piece& piece) { return wanted < piece.start; });
  if (behind == pieces_.begin()) return {};
  const Piece& piece = *(behind - 1);
  return find_place(original_, piece.original + (piece.is_kept ? position - piece.start : 0));
}

}  // namespace lumo::smtlib
