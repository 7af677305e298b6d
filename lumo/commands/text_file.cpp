#include "lumo/commands/text_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
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

/// Closes a descriptor at the end of a block.
class OpenFile
{
 public:
  explicit OpenFile(int file) : file_(file) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(file_); }

  [[nodiscard]] int get() const { return file_; }

 private:
  int file_;
};

/// Reads a descriptor to its end.
std::string read_all(int file)
{
  constexpr std::size_t kPiece = std::size_t{1} << 16U;
  std::string text;
  std::size_t num_read = 0;
  for (;;) {
    if (num_read == text.size()) text.resize(std::max(kPiece, 2 * text.size()));
    const ssize_t got = read(file, text.data() + num_read, text.size() - num_read);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) refuse_unreadable(errno);
    if (got == 0) break;
    num_read += static_cast<std::size_t>(got);
  }
  text.resize(num_read);
  return text;
}

}  // namespace

InputText InputText::read_stream(std::istream& in)
{
  std::string text;
  constexpr std::streamsize kPiece = 1 << 16;
  std::string piece(static_cast<std::size_t>(kPiece), '\0');
  errno = 0;
  while (in.read(piece.data(), kPiece) || in.gcount() > 0)
    text.append(piece, 0, static_cast<std::size_t>(in.gcount()));
  if (in.bad()) refuse_unreadable(errno);
  return InputText(std::move(text));
}

InputText InputText::read_file(const std::string& name)
{
  const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) refuse_unopened(name, errno);
  const OpenFile closed_at_end(file);
  return read_open_file(file);
}

InputText InputText::read_open_file(int file)
{
  struct stat status
  {};
  // Devices and pipes cannot be mapped, nor can files that the system makes up while they are read and says are empty.
  if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    void* text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (text != MAP_FAILED) return {static_cast<const char*>(text), size};
  }
  return InputText(read_all(file));
}

void InputText::give_back(std::size_t size) const
{
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  if (mapped_ == nullptr || size < page) return;
  madvise(const_cast<char*>(mapped_.get()), size / page * page, MADV_DONTNEED);  // NOLINT: it is not written
}

void InputText::Unmap::operator()(const char* text) const
{
  munmap(const_cast<char*>(text), size);  // NOLINT: likewise
}

}  // namespace lumo::commands
