// The lumo program: parses the options, calls the subcommand, and returns its exit status.

#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <gmp.h>

#include "lumo/cli/messages.h"
#include "lumo/cli/options.h"
#include "lumo/cli/progress_line.h"
#include "lumo/commands/run_invert.h"
#include "lumo/commands/run_shell.h"
#include "lumo/commands/subcommand.h"

namespace {

using lumo::cli::Options;
using lumo::cli::ProgressLine;
using lumo::cli::Subcommand;
using lumo::commands::kFailed;

/// Prints a text on request, such as the help.
int print(const std::string& text)
{
  return lumo::commands::run_subcommand(std::cerr, [&] {
    lumo::commands::write_output(std::cout, [&](std::ostream& out) { out << text; });
    return lumo::commands::kAnswered;
  });
}

/// Runs the given subcommand and returns its exit status.
int run_subcommand(const Options& options)
{
  const lumo::cli::Values& values = options.get_values();
  ProgressLine line;
  lumo::cli::LineStopper stopper(line, std::cerr);
  std::ostream err(&stopper);
  switch (options.get_subcommand()) {
    case Subcommand::kSolve:
      return lumo::commands::run_solve(values.solve, std::cin, std::cout, err, &line);
    case Subcommand::kSimplify:
      return lumo::commands::run_simplify(values.simplify, std::cin, std::cout, err, &line);
    case Subcommand::kExtend:
      return lumo::commands::run_extend(values.extend, std::cin, std::cout, err, &line);
    case Subcommand::kCheck:
      return lumo::commands::run_check(values.check, std::cin, std::cout, err, &line);
    case Subcommand::kDot:
      return lumo::commands::run_dot(values.dot, std::cin, std::cout, err, &line);
    case Subcommand::kInvert:
      return lumo::commands::run_invert(values.invert_files, std::cin, std::cout, err, &line);
    case Subcommand::kShell:
      return lumo::commands::run_shell(values.shell, std::cin, std::cout, err);
  }
  return kFailed;  // GCOVR_EXCL_LINE: the switch handles all values
}

int run(int argc, char** argv)
{
  Options options;
  try {
    options.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return print(options.get_app().help());
  } catch (const CLI::CallForVersion& e) {
    return print(std::string(e.what()) + "\n");
  } catch (const CLI::ParseError& e) {
    std::cerr << lumo::cli::explain(options.get_app(), e) << '\n';
    return kFailed;
  }
  return run_subcommand(options);
}

int run_guarded(int argc, char** argv)
{
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "lumo: there is not enough memory\n";
  } catch (const std::exception& e) {
    std::cerr << "lumo: " << e.what() << '\n';
  }
  return kFailed;
}

// -----------------------------------------------------------------------------------------------------------
// Out of memory where no exception can be thrown

/// Ends the program as a std::bad_alloc would.
[[noreturn]] void end_without_memory()
{
  ProgressLine::stop_current();
  std::cerr << "lumo: there is not enough memory\n" << std::flush;
  _exit(kFailed);
}

// By default, GMP would print its own message and abort.

void* allocate(std::size_t size)
{
  void* block = std::malloc(size);
  if (block == nullptr) end_without_memory();
  return block;
}

void* reallocate(void* old_block, std::size_t, std::size_t size)
{
  void* block = std::realloc(old_block, size);
  if (block == nullptr) end_without_memory();
  return block;
}

}  // namespace

int main(int argc, char** argv)
{
  std::ios::sync_with_stdio(false);
  mp_set_memory_functions(allocate, reallocate, nullptr);
  return run_guarded(argc, argv);
}
