#include "smtlib/nearest.h"

#include <algorithm>
#include <array>
#include <limits>
#include <system_error>
#include <vector>

namespace lumo::smtlib {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kNotNear = std::numeric_limits<std::size_t>::max();
/// Longer names are not typed, and the time grows with the square.
constexpr std::size_t kLongestWord = 256;

std::size_t get_most_mistakes(std::string_view typed)
{
  constexpr std::size_t kMost = 3;
  return std::min(typed.size() / 3, kMost);
}

std::string make_lower_case(std::string_view word)
{
  std::string lower(word);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

/// The number of mistakes other than in upper and lower case, if it is no more than `most`.
std::size_t measure(std::string_view typed, std::string_view word, std::size_t most)
{
  const std::size_t num_mistakes = count_mistakes(make_lower_case(typed), make_lower_case(word));
  return num_mistakes <= most ? num_mistakes : kNotNear;
}

std::size_t measure_word(std::string_view typed, std::string_view word)
{
  constexpr std::size_t kShortestBeginning = 2;
  const std::size_t num_mistakes = measure(typed, word, get_most_mistakes(typed));
  const bool is_beginning = typed.size() >= kShortestBeginning && word.starts_with(typed);
  return is_beginning ? std::min<std::size_t>(num_mistakes, 1) : num_mistakes;
}

std::size_t measure_file_name(const fs::path& typed, const fs::path& name)
{
  constexpr std::size_t kMostInExtension = 2;
  const std::string stem = typed.stem().string();
  const std::size_t of_stem = measure(stem, name.stem().string(), get_most_mistakes(stem));
  const std::size_t of_extension =
      typed.has_extension() && name.has_extension()
          ? measure(typed.extension().string(), name.extension().string(), kMostInExtension)
          : static_cast<std::size_t>(typed.has_extension() != name.has_extension());
  return of_stem == kNotNear || of_extension == kNotNear ? kNotNear : of_stem + of_extension;
}

/// The name in a folder that is nearest, among those of folders or of everything else; of several, the first in
/// the order of the alphabet.
std::string find_nearest_entry(const fs::path& folder, const fs::path& typed, bool is_folder)
{
  constexpr std::size_t kMostEntries = 10000;
  std::string nearest;
  std::size_t least = kNotNear;
  std::error_code error;
  std::size_t num_entries = 0;
  for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
       !error && entry != end && num_entries < kMostEntries; entry.increment(error), ++num_entries)
  {
    std::error_code ignored;
    if (entry->is_directory(ignored) != is_folder) continue;
    const fs::path name = entry->path().filename();
    const std::size_t distance =
        is_folder ? measure_word(typed.string(), name.string()) : measure_file_name(typed, name);
    if (distance < least || (distance == least && distance != kNotNear && name.string() < nearest)) {
      nearest = name.string();
      least = distance;
    }
  }
  return nearest;
}

}  // namespace

std::size_t count_mistakes(std::string_view first, std::string_view second)
{
  if (std::max(first.size(), second.size()) > kLongestWord) return first == second ? 0 : kLongestWord;
  // Wagner and Fischer's table, a row for each beginning of the first word and a column for each of the second;
  // its last three rows are kept, the newest in front.
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

std::string find_nearest_file(const fs::path& typed)
{
  std::error_code ignored;
  if (!typed.has_filename()) return {};
  fs::path nearest;
  for (const fs::path& component : typed.parent_path()) {
    const bool is_there = fs::is_directory(nearest / component, ignored);
    const fs::path name = is_there ? component : fs::path(find_nearest_entry(nearest, component, true));
    if (name.empty()) return {};
    nearest /= name;
  }
  const fs::path file = nearest / typed.filename();
  if (fs::exists(file, ignored) && !fs::is_directory(file, ignored)) return file.string();
  const std::string name = find_nearest_entry(nearest, typed.filename(), false);
  return name.empty() ? name : (nearest / name).string();
}

}  // namespace lumo::smtlib
