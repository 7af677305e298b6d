#include "lumo/commands/output_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/input_error.h"

namespace lumo::commands {

OutputFile::OutputFile(const std::string& name, OutputTarget target)
    : name_(make_input_name(name)), target_(std::move(target))
{
  stream_.get_buffer().open(open_target());
}

OutputFile::~OutputFile() { discard(); }

void OutputFile::finish()
{
  stream_.get_buffer().close();
  if (!stream_ || stream_.get_buffer().get_error() != 0) fail(stream_.get_buffer().get_error());
}

void OutputFile::commit()
{
  if (temporary_.empty()) return;
  std::error_code error;
  std::filesystem::rename(temporary_, target_.path, error);
  if (error) fail(error.value());
  temporary_.clear();
}

int OutputFile::open_target()
{
  if (target_.kind == OutputTarget::Kind::kFile) return make_temporary_file();
  // A duplicate shares its position with all other writers of the open file; opening it by name would not.
  const int descriptor = target_.kind == OutputTarget::Kind::kOpen
                             ? fcntl(target_.descriptor, F_DUPFD_CLOEXEC, 0)
                             : open(target_.path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) fail(errno);
  return descriptor;
}

int OutputFile::make_temporary_file()
{
  const std::string start = ".lumo-" + std::to_string(getpid()) + "-";
  int descriptor = -1;
  for (int i = 0; descriptor < 0; ++i) {
    temporary_ = target_.path.parent_path() / (start + std::to_string(i));
    descriptor = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno != EEXIST) {
      temporary_.clear();
      const int reason = errno;
      throw SubcommandFailure(name_ + ": this cannot be written: no file can be made in the folder " +
                              smtlib::make_excerpt(target_.path.parent_path().string()) + ": " +
                              std::generic_category().message(reason));
    }
  }
  // The new file gets the permissions of the old one.
  struct stat old_file
  {};
  constexpr mode_t kPermissions = 0777;
  if (stat(target_.path.c_str(), &old_file) == 0) fchmod(descriptor, old_file.st_mode & kPermissions);
  return descriptor;
}

void OutputFile::discard()
{
  std::error_code ignored;
  if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

void OutputFile::fail(int reason) const { throw_write_failure(name_, reason); }

}  // namespace lumo::commands
