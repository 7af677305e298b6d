#ifndef LUMO_CLI_OPTIONS_H
#define LUMO_CLI_OPTIONS_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "smtlib/run_check.h"
#include "smtlib/run_dot.h"
#include "smtlib/run_extend.h"
#include "smtlib/run_simplify.h"
#include "smtlib/run_solve.h"

namespace lumo::cli {

enum class Command : std::uint8_t
{
  kSolve,
  kSimplify,
  kExtend,
  kCheck,
  kDot,
  kInvert,
};

/// What the commands were given.
struct Values
{
  smtlib::SolveOptions solve;
  smtlib::SimplifyOptions simplify;
  smtlib::ExtendOptions extend;
  smtlib::CheckOptions check;
  smtlib::DotOptions dot;
  std::vector<std::string> invert_files;
};

/// The one table of the commands and their options: it reads the command line, and help, manual page and
/// completion are made from it.
class Options
{
 public:
  Options();
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;

  /// Whatever CLI11 finds wrong, or is asked to print, is an exception of its own.
  void parse(int argc, const char* const* argv) { app_.parse(argc, argv); }

  [[nodiscard]] const CLI::App& get_app() const { return app_; }
  /// The command that was given, after a parse that found nothing wrong.
  [[nodiscard]] Command get_command() const;
  [[nodiscard]] const Values& get_values() const { return values_; }

 private:
  CLI::App* add_command(Command command, const std::string& name, const std::string& description);
  void add_solve();
  void add_simplify();
  void add_extend();
  void add_check();
  void add_dot();
  void add_invert();

  CLI::App app_;
  std::vector<std::pair<const CLI::App*, Command>> commands_;
  Values values_;
};

// -----------------------------------------------------------------------------------------------------------
// What the help, the manual page and the completion show

/// The commands in the table's order.
[[nodiscard]] std::vector<const CLI::App*> list_commands(const CLI::App& app);
/// The options that are given by name, that for help first.
[[nodiscard]] std::vector<const CLI::Option*> list_options(const CLI::App& app);
/// The arguments that are given by place.
[[nodiscard]] std::vector<const CLI::Option*> list_arguments(const CLI::App& app);
/// How an option may be called, dashes included, short names first.
[[nodiscard]] std::vector<std::string> list_names(const CLI::Option& option);

[[nodiscard]] inline bool takes_value(const CLI::Option& option)
{
  return option.get_items_expected_max() > 0;
}
[[nodiscard]] inline bool takes_several(const CLI::Option& option)
{
  return option.get_items_expected_max() > 1;
}

enum class ValueKind : std::uint8_t
{
  kScript,   ///< the name of a file, most often of an SMT-LIB 2 script
  kFile,     ///< the name of any file
  kCommand,  ///< a line for the shell
  kNumber,
};

/// What the value of an option is, by the name that help gives it.
[[nodiscard]] ValueKind get_value_kind(const CLI::Option& option);

struct ExitStatus
{
  int status;
  std::string_view meaning;
};

inline constexpr std::array<ExitStatus, 4> kExitStatuses = {{
    {smtlib::kAnswered, "an answer"},
    {smtlib::kRefused, "invert refused a request, or check found the model invalid"},
    {smtlib::kFailed, "bad input, a solver that failed, or output that cannot be written"},
    {smtlib::kCheckFailed, "a model of lumo's own did not pass lumo's own check"},
}};

}  // namespace lumo::cli

#endif
