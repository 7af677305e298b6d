#ifndef LUMO_SOLVERS_DESCRIPTOR_H
#define LUMO_SOLVERS_DESCRIPTOR_H

#include <string_view>

namespace lumo::solvers {

/// A file descriptor that the object owns and closes.
class Descriptor
{
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& rhs) noexcept;
  Descriptor& operator=(Descriptor&& rhs) noexcept;
  ~Descriptor() { close(); }

  /// -1 if it is not open.
  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool is_open() const { return number_ >= 0; }
  void close();

 private:
  int number_ = -1;
};

struct Pipe
{
  Descriptor read_end;
  Descriptor write_end;
};

/// A program that a child executes gets neither end. Both have numbers above the standard streams, even if one of
/// those is closed, so a child can make each end one of its standard streams without overwriting another end.
/// Throws an `Exception` if no pipe can be made.
[[nodiscard]] Pipe make_pipe();

/// Makes reads and writes return immediately. Throws an `Exception` if the system refuses that.
void make_nonblocking(const Descriptor& descriptor);

/// Throws the `Exception` that no process can be made, with the failed operation and the text for errno.
[[noreturn]] void fail_without_process(std::string_view what, int code);

}  // namespace lumo::solvers

#endif
