#ifndef LUMO_SMTLIB_NEAREST_WORD_H
#define LUMO_SMTLIB_NEAREST_WORD_H

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace lumo::smtlib {

// What somebody may have meant who made a mistake in typing.

/// The least number of mistakes that make one word of the other: a character left out, put in or exchanged, or two
/// neighbours swapped, where no character is touched twice.
[[nodiscard]] std::size_t count_mistakes(std::string_view first, std::string_view second);

/// The distance of two words that are not near.
inline constexpr std::size_t kNotNear = std::numeric_limits<std::size_t>::max();

/// How many mistakes a word of that length may have: one for each three characters, but no more than three.
[[nodiscard]] std::size_t get_most_mistakes(std::string_view typed);
/// The number of mistakes, if it is at most `most`; else kNotNear. Upper and lower case do not matter.
[[nodiscard]] std::size_t measure_mistakes(std::string_view typed, std::string_view word, std::size_t most);
/// The distance of a word from what was typed: the number of mistakes, at most 1 for a word whose beginning was
/// typed; kNotNear if there are more mistakes than a word of that length may have.
[[nodiscard]] std::size_t measure_word(std::string_view typed, std::string_view word);

/// The word with the least distance from what was typed, the first of several; empty if none is near.
[[nodiscard]] std::string find_nearest(std::string_view typed, std::span<const std::string> words);

}  // namespace lumo::smtlib

#endif
