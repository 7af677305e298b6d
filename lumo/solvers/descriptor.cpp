#include "lumo/solvers/descriptor.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

#include "lumo/terms/exception.h"

namespace lumo::solvers {

Descriptor::Descriptor(Descriptor&& rhs) noexcept : number_(std::exchange(rhs.number_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& rhs) noexcept
{
  std::swap(number_, rhs.number_);
  return *this;
}

void Descriptor::close()
{
  if (is_open()) ::close(number_);
  number_ = -1;
}

Pipe make_pipe()
{
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) fail_without_process("no pipe", errno);
  const Descriptor low_read(ends[0]);
  const Descriptor low_write(ends[1]);
  Pipe result{Descriptor(fcntl(ends[0], F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
              Descriptor(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1))};
  if (!result.read_end.is_open() || !result.write_end.is_open()) fail_without_process("no pipe", errno);
  return result;
}

void make_nonblocking(const Descriptor& descriptor)
{
  const int flags = fcntl(descriptor.get(), F_GETFL);
  if (flags < 0 || fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) != 0)
    fail_without_process("no pipe", errno);
}

void fail_without_process(std::string_view what, int code)
{
  throw Exception("no process can be made: " + std::string(what) + ": " + std::strerror(code));
}

}  // namespace lumo::solvers
