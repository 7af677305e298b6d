#ifndef LUMO_COMMANDS_TEXT_FILE_H
#define LUMO_COMMANDS_TEXT_FILE_H

#include <cstddef>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

namespace lumo::commands {

/// A text that is read from a file or a stream. A regular file is mapped: its pages are those that the system has of it
/// anyway, and take memory only while they are used. A file must not become shorter while it is mapped, since the system
/// kills a program that reads beyond the end.
class InputText
{
 public:
  /// The content of a file. Throws an `Exception` if it cannot be read, with the reason but without the name.
  /// If the file does not exist, the text suggests the nearest existing one.
  [[nodiscard]] static InputText read_file(const std::string& name);
  /// The rest of the stream.
  [[nodiscard]] static InputText read_stream(std::istream& in);

  [[nodiscard]] std::string_view get() const
  {
    return mapped_ != nullptr ? std::string_view(mapped_.get(), mapped_.get_deleter().size) : held_;
  }
  /// Gives back the memory of the first `size` characters of a mapped text; they can still be read.
  void give_back(std::size_t size) const;

 private:
  struct Unmap
  {
    std::size_t size;
    void operator()(const char* text) const;
  };

  explicit InputText(std::string text) : held_(std::move(text)) {}
  /// A text that is mapped
  InputText(const char* text, std::size_t size) : mapped_(text, Unmap{size}) {}

  [[nodiscard]] static InputText read_open_file(int file);

  std::string held_;  ///< the text unless it is mapped
  std::unique_ptr<const char, Unmap> mapped_{nullptr, Unmap{0}};
};

}  // namespace lumo::commands

#endif
