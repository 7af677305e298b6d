#include "lumo/commands/text_file.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "lumo/commands/nearest_file.h"
#include "lumo/smtlib/input_error.h"
#include "lumo/terms/exception.h"

namespace lumo::commands {

namespace {

[[noreturn]] void refuse_unreadable(int reason)
{
  throw Exception("this cannot be read: " + std::generic_category().message(reason));
}

[[noreturn]] void refuse_unopened(const std::string& name, int reason)
{
  const std::string nearest = reason == ENOENT ? find_nearest_file(name) : "";
  if (nearest.empty()) refuse_unreadable(reason);
  throw Exception("this cannot be read: " + std::generic_category().message(reason) + "; perhaps " +
                  smtlib::make_excerpt(nearest) + " was meant");
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
  errno = 0;
  std::ifstream file(name, std::ios::binary);
  if (!file) refuse_unopened(name, errno);
  return read_stream(file);
}

}  // namespace lumo::commands
