#include "lumo/commands/descriptor_stream.h"

#include <cerrno>
#include <unistd.h>

namespace lumo::commands {

void DescriptorBuffer::close()
{
  if (descriptor_ < 0) return;
  if (::close(descriptor_) != 0 && error_ == 0) error_ = errno;  // GCOVR_EXCL_LINE: remote file systems
  descriptor_ = -1;
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c)
{
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char text = traits_type::to_char_type(c);
  return xsputn(&text, 1) == 1 ? c : traits_type::eof();
}

std::streamsize DescriptorBuffer::xsputn(const char* text, std::streamsize size)
{
  std::streamsize num_written = 0;
  while (num_written < size && error_ == 0) {
    const ssize_t count =
        write(descriptor_, text + num_written, static_cast<std::size_t>(size - num_written));
    if (count >= 0) {
      num_written += count;
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  return num_written;
}

}  // namespace lumo::commands
