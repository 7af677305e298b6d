#include "lumo/smtlib/nearest_word.h"

#include <algorithm>
#include <array>
#include <vector>

namespace lumo::smtlib {

namespace {

/// Nobody types longer names, and the time is quadratic.
constexpr std::size_t kLongestWord = 256;

std::string make_lower_case(std::string_view word)
{
  std::string lower(word);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace

std::size_t count_mistakes(std::string_view first, std::string_view second)
{
  if (std::max(first.size(), second.size()) > kLongestWord) return first == second ? 0 : kLongestWord;
  // Wagner and Fischer's table, a row for each prefix of the first word and a column for each prefix of the second;
  // only the last three rows are kept, the newest first.
  std::array<std::vector<std::size_t>, 3> rows;
  for (std::vector<std::size_t>& row : rows)
    row.resize(second.size() + 1);
  for (std::size_t j = 0; j <= second.size(); ++j)
    rows[0][j] = j;
  for (std::size_t i = 1; i <= first.size(); ++i) {
    std::rotate(rows.begin(), rows.end() - 1, rows.end());
    rows[0][0] = i;
    for (std::size_t j = 1; j <= second.size(); ++j) {
      const std::size_t exchanged = rows[1][j - 1] + (first[i - 1] == second[j - 1] ? 0 : 1);
      rows[0][j] = std::min({exchanged, rows[1][j] + 1, rows[0][j - 1] + 1});
      const bool is_swap = i > 1 && j > 1 && first[i - 1] == second[j - 2] && first[i - 2] == second[j - 1];
      if (is_swap) rows[0][j] = std::min(rows[0][j], rows[2][j - 2] + 1);
    }
  }
  return rows[0][second.size()];
}

std::size_t get_most_mistakes(std::string_view typed)
{
  constexpr std::size_t kMost = 3;
  return std::min(typed.size() / 3, kMost);
}

std::size_t measure_mistakes(std::string_view typed, std::string_view word, std::size_t most)
{
  const std::size_t difference =
      typed.size() < word.size() ? word.size() - typed.size() : typed.size() - word.size();
  if (difference > most) return kNotNear;  // Each mistake changes the length by at most 1.
  const std::size_t num_mistakes = count_mistakes(make_lower_case(typed), make_lower_case(word));
  return num_mistakes <= most ? num_mistakes : kNotNear;
}

std::size_t measure_word(std::string_view typed, std::string_view word)
{
  constexpr std::size_t kShortestBeginning = 2;
  const std::size_t num_mistakes = measure_mistakes(typed, word, get_most_mistakes(typed));
  const bool is_beginning = typed.size() >= kShortestBeginning && word.starts_with(typed);
  return is_beginning ? std::min<std::size_t>(num_mistakes, 1) : num_mistakes;
}

std::string find_nearest(std::string_view typed, std::span<const std::string> words)
{
  std::string nearest;
  std::size_t least = kNotNear;
  for (const std::string& word : words) {
    const std::size_t distance = measure_word(typed, word);
    if (distance >= least) continue;
    nearest = word;
    least = distance;
  }
  return nearest;
}

}  // namespace lumo::smtlib
