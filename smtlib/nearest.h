#ifndef LUMO_SMTLIB_NEAREST_H
#define LUMO_SMTLIB_NEAREST_H

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace lumo::smtlib {

// What somebody may have meant who made a mistake in typing.

/// The least number of mistakes that make one word of the other: a character left out, put in or exchanged, or two
/// neighbours swapped, where no character is touched twice.
[[nodiscard]] std::size_t count_mistakes(std::string_view first, std::string_view second);

/// The word that is nearest to what was typed, the first of several; empty if none is near. Near is a word with
/// one mistake for each three characters typed, but no more than three, or one whose beginning was typed; upper
/// and lower case do not matter.
[[nodiscard]] std::string find_nearest(std::string_view typed, std::span<const std::string> words);

/// The same for the path of a file that is not there, component by component; what is returned is there. The
/// part of a file's name behind the dot may be missing or have two mistakes, but does not count for how much the
/// part before may have.
[[nodiscard]] std::string find_nearest_file(const std::filesystem::path& typed);

}  // namespace lumo::smtlib

#endif
