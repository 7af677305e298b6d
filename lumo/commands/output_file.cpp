#include "lumo/commands/output_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "lumo/commands/subcommand.h"

namespace lumo::commands {

namespace {

/// The file that a name means; of a symbolic link to nothing, the link's target.
std::filesystem::path resolve(const std::filesystem::path& file)
{
  std::error_code error;
  std::filesystem::path resolved = file;
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(resolved, error); ++i)
    resolved = resolved.parent_path() / std::filesystem::read_symlink(resolved, error);
  return resolved;
}

}  // namespace

OutputFile::OutputFile(const std::string& file) : name_(make_input_name(file)), target_(resolve(file))
{
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(target_, error);
  if (std::filesystem::is_directory(status)) fail(EISDIR);
  if (!target_.has_filename()) fail(ENOENT);
  const bool is_special = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
  if (!is_special) make_temporary_file();

  errno = 0;
  stream_.open(is_special ? target_ : temporary_, std::ios::binary);
  if (!stream_) {
    const int reason = errno;
    discard();
    fail(reason);
  }
}

OutputFile::~OutputFile() { discard(); }

void OutputFile::finish()
{
  stream_.close();
  if (!stream_) fail(errno);
}

void OutputFile::commit()
{
  if (temporary_.empty()) return;
  std::error_code error;
  std::filesystem::rename(temporary_, target_, error);
  if (error) fail(error.value());
  temporary_.clear();
}

void OutputFile::make_temporary_file()
{
  const std::string start = ".lumo-" + std::to_string(getpid()) + "-";
  int descriptor = -1;
  for (int i = 0; descriptor < 0; ++i) {
    temporary_ = target_.parent_path() / (start + std::to_string(i));
    descriptor = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno != EEXIST) {
      temporary_.clear();
      fail(errno);
    }
  }
  // The new file is as open to others as the old one.
  struct stat old_file
  {};
  constexpr mode_t kPermissions = 0777;
  if (stat(target_.c_str(), &old_file) == 0) fchmod(descriptor, old_file.st_mode & kPermissions);
  close(descriptor);
}

void OutputFile::discard()
{
  std::error_code ignored;
  if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

void OutputFile::fail(int reason) const { throw make_write_failure(name_, reason); }

}  // namespace lumo::commands
