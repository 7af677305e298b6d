// The lumo program: options in, exit status out. What it does is in the library.

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "smtlib/run_check.h"
#include "smtlib/run_dot.h"
#include "smtlib/run_extend.h"
#include "smtlib/run_invert.h"
#include "smtlib/run_simplify.h"
#include "smtlib/run_solve.h"

namespace {

using lumo::smtlib::kFailed;

/// The command line: what each command takes, and what runs it.
class Options
{
 public:
  Options();
  void parse(int argc, char** argv) { app_.parse(argc, argv); }
  [[nodiscard]] std::string make_help() const { return app_.help(); }
  /// Runs the command that was given and returns its exit status.
  [[nodiscard]] int run_command() const;

 private:
  using Action = std::function<int()>;

  CLI::App* add_command(const std::string& name, const std::string& description, Action action);
  static void add_script(CLI::App* command, std::string& file)
  {
    command->add_option("FILE", file, "SMT-LIB 2 script; - is the standard input")->required();
  }
  void add_solve();
  void add_simplify();
  void add_extend();
  void add_check();
  void add_dot();
  void add_invert();

  CLI::App app_{
      "Eliminates unconstrained terms from SMT-LIB 2 scripts over Booleans and bit-vectors, and makes "
      "models of the scripts from models of what is left.",
      "lumo"};
  std::vector<std::pair<const CLI::App*, Action>> actions_;
  lumo::smtlib::SolveOptions solve_;
  lumo::smtlib::SimplifyOptions simplify_;
  lumo::smtlib::ExtendOptions extend_;
  lumo::smtlib::CheckOptions check_;
  lumo::smtlib::DotOptions dot_;
  std::vector<std::string> invert_files_;
};

Options::Options()
{
  app_.set_version_flag("--version", "lumo " LUMO_VERSION, "Print the version and exit");
  app_.set_help_flag("-h,--help", "Print this help and exit");
  app_.require_subcommand(1);
  app_.footer(
      "Exit status: 0 for an answer; 1 if invert refuses a request or check finds the model invalid;\n"
      "2 for bad input, a failing solver, or output that cannot be written; 3 if a model of lumo's own\n"
      "does not pass lumo's own check.");
  add_solve();
  add_simplify();
  add_extend();
  add_check();
  add_dot();
  add_invert();
}

int Options::run_command() const
{
  for (const auto& [command, action] : actions_) {
    if (command->parsed()) return action();
  }
  return kFailed;  // GCOVR_EXCL_LINE: without a command, parsing fails
}

CLI::App* Options::add_command(const std::string& name, const std::string& description, Action action)
{
  CLI::App* command = app_.add_subcommand(name, description);
  actions_.emplace_back(command, std::move(action));
  return command;
}

void Options::add_solve()
{
  CLI::App* command =
      add_command("solve", "Eliminate, let a solver answer the rest, and print sat, unsat or unknown.",
                  [this] { return run_solve(solve_, std::cin, std::cout, std::cerr); });
  add_script(command, solve_.file);
  command->add_flag("--model", solve_.wants_model, "Print a checked model of all declared constants, too");
  command
      ->add_option("--solver", solve_.method.solver_command,
                   "A command that reads SMT-LIB 2 and answers; else it is Z3 within lumo")
      ->type_name("COMMAND");
  command->add_option("--timeout", solve_.method.seconds, "Give up when the solver has taken so long")
      ->type_name("SECONDS");
  command->add_flag_callback(
      "--no-elimination", [this] { solve_.method.eliminates = false; }, "Give the solver all of the script");
  command->add_flag("--stats", solve_.wants_statistics,
                    "Print sizes, eliminated applications and times to standard error");
  command->add_flag("--json", solve_.wants_json, "Print answer, model and statistics as one JSON object");
}

void Options::add_simplify()
{
  CLI::App* command = add_command("simplify", "Eliminate, and print what is left as a script for any solver.",
                                  [this] { return run_simplify(simplify_, std::cin, std::cout, std::cerr); });
  add_script(command, simplify_.file);
  command->add_option("-o,--output", simplify_.rest, "The file for what is left; else it is standard output")
      ->type_name("REST");
  command->add_option("--trail", simplify_.trail, "The file for what extend needs to know")
      ->type_name("TRAIL");
}

void Options::add_extend()
{
  CLI::App* command = add_command(
      "extend", "Make a model of the script from a solver's model of what simplify left of it, and check it.",
      [this] { return run_extend(extend_, std::cin, std::cout, std::cerr); });
  add_script(command, extend_.file);
  command->add_option("--trail", extend_.trail, "What simplify wrote for this")
      ->type_name("TRAIL")
      ->required();
  command->add_option("--model", extend_.model, "What the solver answered")->type_name("MODEL")->required();
}

void Options::add_check()
{
  CLI::App* command = add_command("check", "Say whether every assertion of the script is true under a model.",
                                  [this] { return run_check(check_, std::cin, std::cout, std::cerr); });
  add_script(command, check_.file);
  command->add_option("--model", check_.model, "The model, as solvers print it")
      ->type_name("MODEL")
      ->required();
}

void Options::add_dot()
{
  CLI::App* command =
      add_command("dot", "Print the term graph for Graphviz, with the applications marked that will go.",
                  [this] { return run_dot(dot_, std::cin, std::cout, std::cerr); });
  add_script(command, dot_.file);
  command->add_flag("--after", dot_.is_after, "Show what is left, with what stands for the others marked");
}

void Options::add_invert()
{
  CLI::App* command = add_command(
      "invert",
      "Print definitions of constants that satisfy each assertion of the FILEs. An assertion (= t v)\n"
      "asks for values of t's arguments that make t equal to the literal v, (not t) for values that\n"
      "make t false, any other application t for values that make it true.",
      [this] { return lumo::smtlib::run_invert(invert_files_, std::cin, std::cout, std::cerr); });
  command->add_option("FILE", invert_files_, "SMT-LIB 2 files; - is the standard input")->required();
}

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
    options.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return print(options.make_help());
  } catch (const CLI::CallForVersion& e) {
    return print(std::string(e.what()) + "\n");
  } catch (const CLI::ParseError& e) {
    std::cerr << "lumo: " << e.what() << "; see lumo --help\n";
    return kFailed;
  }
  return options.run_command();
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

bool is_done = false;

/// Called at the program's end. If `main` is not done, it was Z3's parser that called `exit`, without a word,
/// because it got no memory.
void explain_early_exit()
{
  if (is_done) return;
  std::cerr << "lumo: there is not enough memory\n" << std::flush;
  _exit(kFailed);
}

}  // namespace

int main(int argc, char** argv)
{
  std::ios::sync_with_stdio(false);
  if (std::atexit(explain_early_exit) != 0) return kFailed;
  const int status = run_guarded(argc, argv);
  is_done = true;
  return status;
}
