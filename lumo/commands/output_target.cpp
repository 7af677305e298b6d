#include "lumo/commands/output_target.h"

#include <cerrno>
#include <charconv>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "lumo/commands/subcommand.h"

namespace lumo::commands {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name, int reason)
{
  throw_write_failure(make_input_name(name), reason);
}

/// The descriptor that a path denotes, if the path is in the system's folder of this process's descriptors.
std::optional<int> find_descriptor(const fs::path& path)
{
  std::error_code error;
  if (path.parent_path() != fs::canonical("/proc/self/fd", error) || error) return {};
  const std::string digits = path.filename().string();
  int descriptor = -1;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), descriptor);
  const bool is_number = failure == std::errc() && end == digits.data() + digits.size() && descriptor >= 0;
  return is_number ? std::optional(descriptor) : std::nullopt;
}

/// The same file, by its folder's canonical path.
fs::path make_canonical(const std::string& name, const fs::path& path)
{
  if (!path.has_filename()) fail(name, ENOENT);
  std::error_code error;
  const fs::path folder = fs::canonical(path.has_parent_path() ? path.parent_path() : ".", error);
  if (error) fail(name, error.value());
  return folder / path.filename();
}

/// The target of a symbolic link, or nothing: links to open files of processes look like links to paths, but the
/// text of such a link is not a path.
std::optional<fs::path> follow(const fs::path& link)
{
  std::error_code error;
  const fs::path target = link.parent_path() / fs::read_symlink(link, error);
  const bool is_dangling = !fs::exists(link, error);
  return is_dangling || fs::equivalent(link, target, error) ? std::optional(target) : std::nullopt;
}

OutputTarget classify(const std::string& name, const fs::path& path)
{
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (fs::is_directory(status)) fail(name, EISDIR);
  const bool is_special = fs::exists(status) && !fs::is_regular_file(status);
  return {is_special ? OutputTarget::Kind::kSpecial : OutputTarget::Kind::kFile, -1, path};
}

/// Whether two names or descriptors denote one file that is not a character device.
bool is_one_file(const struct stat& first, const struct stat& second)
{
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino && !S_ISCHR(first.st_mode);
}

bool get_status(const OutputTarget& target, struct stat& status)
{
  return (target.kind == OutputTarget::Kind::kOpen ? fstat(target.descriptor, &status)
                                                   : stat(target.path.c_str(), &status)) == 0;
}

}  // namespace

OutputTarget find_output_target(const std::string& name)
{
  if (name == "-") return {OutputTarget::Kind::kOpen, STDOUT_FILENO, {}};
  std::error_code error;
  if (fs::is_directory(name, error)) fail(name, EISDIR);
  fs::path path = make_canonical(name, name);
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    if (const std::optional<int> descriptor = find_descriptor(path))
      return {OutputTarget::Kind::kOpen, *descriptor, {}};
    if (!fs::is_symlink(path, error)) return classify(name, path);
    const std::optional<fs::path> target = follow(path);
    if (!target) return {OutputTarget::Kind::kSpecial, -1, path};
    path = make_canonical(name, *target);
  }
  fail(name, ELOOP);
}

bool is_one_output(const OutputTarget& first, const OutputTarget& second)
{
  using Kind = OutputTarget::Kind;
  // Two names of one file are different outputs: each name is replaced by a new file, and the old file is not
  // written to.
  if (first.kind == Kind::kFile && second.kind == Kind::kFile) return first.path == second.path;
  if (first.kind == Kind::kOpen && second.kind == Kind::kOpen && first.descriptor == second.descriptor)
    return true;
  struct stat first_status
  {};
  struct stat second_status
  {};
  return get_status(first, first_status) && get_status(second, second_status) &&
         is_one_file(first_status, second_status);
}

}  // namespace lumo::commands
