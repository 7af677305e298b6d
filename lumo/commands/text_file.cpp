#include "lumo/commands/text_file.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "lumo/commands/nearest_file.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/exception.h"

namespace lumo::commands {

namespace {

[[noreturn]] void refuse_unreadable(int reason)
{
  if (reason == ENOMEM) throw std::bad_alloc();
  throw Exception("this cannot be read: " + std::generic_category().message(reason));
}

[[noreturn]] void refuse_unopened(const std::string& name, int reason)
{
  const std::string nearest = reason == ENOENT ? find_nearest_file(name) : "";
  if (nearest.empty()) refuse_unreadable(reason);
  throw Exception("this cannot be read: " + std::generic_category().message(reason) + "; perhaps " +
                  smtlib::make_excerpt(nearest) + " was meant");
}

/// Reads a descriptor to its end; returns 0 or the errno of a failure.
int read_all(int file, std::string& text)
{
  constexpr std::size_t kPiece = std::size_t{1} << 16U;
  struct stat status
  {};
  const bool has_size = fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
  // Request one byte more than the file has, to detect its end.
  std::size_t size = has_size ? static_cast<std::size_t>(status.st_size) + 1 : kPiece;
  std::size_t num_read = 0;
  for (;;) {
    text.resize(size);
    const ssize_t got = read(file, text.data() + num_read, size - num_read);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      const int failure = got < 0 ? errno : 0;
      text.resize(num_read);
      return failure;
    }
    num_read += static_cast<std::size_t>(got);
    if (num_read == size) size *= 2;
  }
}

}  // namespace

std::string read_stream(std::istream& in)
{
  std::string text;
  constexpr std::streamsize kPiece = 1 << 16;
  std::string piece(static_cast<std::size_t>(kPiece), '\0');
  errno = 0;
  while (in.read(piece.data(), kPiece) || in.gcount() > 0)
    text.append(piece, 0, static_cast<std::size_t>(in.gcount()));
  if (in.bad()) refuse_unreadable(errno);
  return text;
}

std::string read_file(const std::string& name)
{
  const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) refuse_unopened(name, errno);
  std::string text;
  const int failure = read_all(file, text);
  close(file);
  if (failure != 0) refuse_unreadable(failure);
  return text;
}

}  // namespace lumo::commands
