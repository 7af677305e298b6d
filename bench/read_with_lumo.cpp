// Reads a script with lumo, for reader_bench: read_with_lumo FILE

#include <cstdlib>

#include "lumo/commands/text_file.h"
#include "lumo/smtlib/script_reader.h"

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  lumo::TermManager mgr;
  const std::string text = lumo::commands::read_file(argv[1]);
  const bool is_read = !lumo::smtlib::read_script(mgr, text).assertions.empty();
  std::_Exit(is_read ? 0 : 1);  // The peers do not release their terms either.
}
