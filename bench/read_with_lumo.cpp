// Reads a script with lumo, for reader_bench: read_with_lumo FILE

#include <cstdlib>

#include "lumo/commands/text_file.h"
#include "lumo/smtlib/script_reader.h"

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  lumo::TermManager mgr;
  const auto text = lumo::commands::InputText::read_file(argv[1]);
  const lumo::smtlib::Script script =
      lumo::smtlib::read_script(mgr, text.get(), [&text](std::size_t size) { text.give_back(size); });
  const bool is_read = !script.assertions.empty();
  std::_Exit(is_read ? 0 : 1);  // The peers do not release their terms either.
}
