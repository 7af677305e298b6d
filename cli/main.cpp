// The lumo program: options in, exit status out. What it does is in the library.

#include <cerrno>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "smtlib/run_invert.h"

namespace {

constexpr int kFailed = lumo::smtlib::kFailed;

struct Options
{
  CLI::App app{"Gives values to the free arguments of applications over Booleans and bit-vectors.", "lumo"};
  CLI::App* invert = nullptr;
  std::vector<std::string> files;

  Options()
  {
    app.set_version_flag("--version", "lumo " LUMO_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(1);
    app.footer("Exit status: 0 if every request is solved, 1 if some are not, 2 if nothing could be done.");

    invert = app.add_subcommand(
        "invert",
        "Print definitions of constants that satisfy each assertion of the FILEs. An assertion (= t v)\n"
        "asks for values of t's arguments that make t equal to the literal v, (not t) for values that\n"
        "make t false, any other application t for values that make it true.");
    invert->add_option("FILE", files, "SMT-LIB 2 files; - is the standard input")->required();
  }
};

/// Prints a text that was asked for.
int print(const std::string& text)
{
  errno = 0;
  std::cout << text << std::flush;
  if (std::cout) return 0;
  if (errno != EPIPE) {
    std::cerr << "<stdout>: this cannot be written: " << std::generic_category().message(errno) << '\n';
  }
  return kFailed;
}

int run(int argc, char** argv)
{
  Options options;
  try {
    options.app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return print(options.app.help());
  } catch (const CLI::CallForVersion& e) {
    return print(std::string(e.what()) + "\n");
  } catch (const CLI::ParseError& e) {
    std::cerr << "lumo: " << e.what() << "; see lumo --help\n";
    return kFailed;
  }
  return lumo::smtlib::run_invert(options.files, std::cin, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv)
{
  std::ios::sync_with_stdio(false);
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "lumo: there is not enough memory\n";
  } catch (const std::exception& e) {
    std::cerr << "lumo: " << e.what() << '\n';
  }
  return kFailed;
}
