#ifndef LUMO_COMMANDS_DESCRIPTOR_STREAM_H
#define LUMO_COMMANDS_DESCRIPTOR_STREAM_H

#include <ostream>
#include <streambuf>

namespace lumo::commands {

/// Writes to a file descriptor, which it owns, without a buffer: for text that comes in large pieces.
///
/// Short and interrupted writes are continued. After a failure nothing more is written.
class DescriptorBuffer : public std::streambuf
{
 public:
  DescriptorBuffer() = default;
  DescriptorBuffer(const DescriptorBuffer&) = delete;
  DescriptorBuffer& operator=(const DescriptorBuffer&) = delete;
  ~DescriptorBuffer() override { close(); }

  /// Takes ownership of a descriptor. Precondition: it has none.
  void open(int descriptor) { descriptor_ = descriptor; }
  /// Closes the descriptor, if it has one. An error of closing counts as a failure of writing.
  void close();
  /// The errno of the first failure, or 0.
  [[nodiscard]] int get_error() const { return error_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  int descriptor_ = -1;
  int error_ = 0;
};

/// A stream to a file descriptor.
class DescriptorStream : public std::ostream
{
 public:
  DescriptorStream() : std::ostream(nullptr) { rdbuf(&buffer_); }

  /// See DescriptorBuffer.
  [[nodiscard]] DescriptorBuffer& get_buffer() { return buffer_; }

 private:
  DescriptorBuffer buffer_;
};

}  // namespace lumo::commands

#endif
