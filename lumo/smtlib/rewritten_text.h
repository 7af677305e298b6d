#ifndef LUMO_SMTLIB_REWRITTEN_TEXT_H
#define LUMO_SMTLIB_REWRITTEN_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/smtlib/input_error.h"

namespace lumo::smtlib {

/// The place at a position of a text.
[[nodiscard]] Place find_place(std::string_view text, std::size_t position);

/// A text put together from pieces of another one and from insertions. It remembers where its pieces come
/// from, so that a message on it can name the place that its reader knows.
class RewrittenText
{
 public:
  /// The original must outlive the object.
  explicit RewrittenText(std::string_view original) : original_(original) {}

  /// Appends the original's characters from position `first` up to `last`.
  void keep(std::size_t first, std::size_t last)
  {
    pieces_.push_back({text_.size(), first, true});
    text_.append(original_, first, last - first);
  }
  /// Appends characters that stand for something at that position of the original.
  void insert(std::string_view characters, std::size_t position)
  {
    pieces_.push_back({text_.size(), position, false});
    text_ += characters;
  }

  [[nodiscard]] const std::string& get_text() const { return text_; }
  /// Where in the original a place in the rewritten text comes from.
  [[nodiscard]] Place find_original(Place place) const;

 private:
  struct Piece
  {
    std::size_t start;     ///< position in the rewritten text
    std::size_t original;  ///< position in the original
    bool is_kept;
  };

  std::string_view original_;
  std::string text_;
  std::vector<Piece> pieces_;
};

}  // namespace lumo::smtlib

#endif
