// Makes the manual page and the completion from the table of options, while lumo is built:
//
//   lumo_reference man DATE > lumo.1
//   lumo_reference bash > lumo.bash

#include <exception>
#include <iostream>
#include <string_view>

#include "lumo/cli/bash_completion.h"
#include "lumo/cli/man_page.h"
#include "lumo/cli/options.h"

namespace {

bool print_reference(int argc, char** argv)
{
  const lumo::cli::Options options;
  const std::string_view kind = argc > 1 ? argv[1] : "";
  if (kind == "man" && argc == 3) {
    lumo::cli::print_man_page(std::cout, options.get_app(), argv[2]);
  } else if (kind == "bash" && argc == 2) {
    lumo::cli::print_bash_completion(std::cout, options.get_app());
  } else {
    return false;
  }
  return static_cast<bool>(std::cout.flush());
}

}  // namespace

int main(int argc, char** argv)
{
  try {
    if (print_reference(argc, argv)) return 0;
    std::cerr << "lumo_reference: man DATE or bash was expected, and an output that can be written\n";
  } catch (const std::exception& e) {
    std::cerr << "lumo_reference: " << e.what() << '\n';
  }
  return 1;
}
