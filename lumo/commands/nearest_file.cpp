#include "lumo/commands/nearest_file.h"

#include <cstddef>
#include <system_error>

#include "lumo/smtlib/nearest_word.h"

namespace lumo::commands {

namespace {

namespace fs = std::filesystem;
using smtlib::get_most_mistakes;
using smtlib::kNotNear;
using smtlib::measure_mistakes;
using smtlib::measure_word;

std::size_t measure_file_name(const fs::path& typed, const fs::path& name)
{
  constexpr std::size_t kMostInExtension = 2;
  const std::string stem = typed.stem().string();
  const std::size_t of_stem = measure_mistakes(stem, name.stem().string(), get_most_mistakes(stem));
  const std::size_t of_extension =
      typed.has_extension() && name.has_extension()
          ? measure_mistakes(typed.extension().string(), name.extension().string(), kMostInExtension)
          : static_cast<std::size_t>(typed.has_extension() != name.has_extension());
  return of_stem == kNotNear || of_extension == kNotNear ? kNotNear : of_stem + of_extension;
}

/// The nearest name in a folder, either among folders or among everything else; of several, the first in
/// alphabetical order.
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

}  // namespace lumo::commands
