#ifndef LUMO_SMTLIB_NEAREST_WORD_H
#define LUMO_SMTLIB_NEAREST_WORD_H

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace lumo::smtlib {

// Finds the intended word for a mistyped one.

/// The edit distance: the least number of mistakes that turn one word into the other. A mistake is a character left
/// out, inserted or replaced, or two neighbours swapped; no character is changed twice.
[[nodiscard]] std::size_t count_mistakes(std::string_view first, std::string_view second);

/// Stands for the distance of two words that are not near.
inline constexpr std::size_t kNotNear = std::numeric_limits<std::size_t>::max();

/// The maximal number of mistakes in a word of that length: one for each three characters, but at most three.
[[nodiscard]] std::size_t get_most_mistakes(std::string_view typed);
/// The number of mistakes, if it is at most `most`; otherwise kNotNear. Upper and lower case do not matter.
[[nodiscard]] std::size_t measure_mistakes(std::string_view typed, std::string_view word, std::size_t most);
/// The distance of a word from the typed text: the number of mistakes, at most 1 if the beginning of the word was
/// typed; kNotNear if there are more mistakes than a word of that length may have.
[[nodiscard]] std::size_t measure_word(std::string_view typed, std::string_view word);

/// The word with the least distance from the typed text, the first of several; empty if none is near.
[[nodiscard]] std::string find_nearest(std::string_view typed, std::span<const std::string> words);

}  // namespace lumo::smtlib

#endif
