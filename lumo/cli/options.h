#ifndef LUMO_CLI_OPTIONS_H
#define LUMO_CLI_OPTIONS_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "lumo/commands/run_check.h"
#include "lumo/commands/run_dot.h"
#include "lumo/commands/run_extend.h"
#include "lumo/commands/run_shell.h"
#include "lumo/commands/run_simplify.h"
#include "lumo/commands/run_solve.h"

namespace lumo::cli {

enum class Subcommand : std::uint8_t
{
  kSolve,
  kSimplify,
  kExtend,
  kCheck,
  kDot,
  kInvert,
  kShell,
};

/// The values of the options and arguments of all subcommands.
struct Values
{
  commands::SolveOptions solve;
  commands::SimplifyOptions simplify;
  commands::ExtendOptions extend;
  commands::CheckOptions check;
  commands::DotOptions dot;
  std::vector<std::string> invert_files;
  commands::ShellOptions shell;
};

/// The only table of the subcommands and their options: it reads the command line, and help, manual page and
/// completion are made from it.
class Options
{
 public:
  Options();
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;

  /// Throws CLI11's exceptions for mistakes, for help and version, and for empty values.
  void parse(int argc, const char* const* argv);

  [[nodiscard]] const CLI::App& get_app() const { return app_; }
  /// The given subcommand. Precondition: `parse` succeeded.
  [[nodiscard]] Subcommand get_subcommand() const;
  [[nodiscard]] const Values& get_values() const { return values_; }

 private:
  CLI::App* add_subcommand(Subcommand subcommand, const std::string& name, const std::string& description);
  void add_solve();
  void add_simplify();
  void add_extend();
  void add_check();
  void add_dot();
  void add_invert();
  void add_shell();
  static void add_method(CLI::App* subcommand, commands::SolveMethod& method);

  CLI::App app_;
  std::vector<std::pair<const CLI::App*, Subcommand>> subcommands_;
  Values values_;
};

// -----------------------------------------------------------------------------------------------------------
// Access for the help, the manual page and the completion

/// The subcommands in the table's order.
[[nodiscard]] std::vector<const CLI::App*> list_subcommands(const CLI::App& app);
/// The options with names, `--help` first.
[[nodiscard]] std::vector<const CLI::Option*> list_options(const CLI::App& app);
/// The positional arguments.
[[nodiscard]] std::vector<const CLI::Option*> list_arguments(const CLI::App& app);
/// The names of an option with their dashes, short names first.
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
  kScript,   ///< the name of a file, usually of an SMT-LIB 2 script
  kFile,     ///< the name of any file
  kCommand,  ///< a shell command
  kNumber,
};

/// The kind of an option's value, by the name of the value in the help.
[[nodiscard]] ValueKind get_value_kind(const CLI::Option& option);

struct ExitStatus
{
  int status;
  std::string_view meaning;
};

inline constexpr std::array<ExitStatus, 4> kExitStatuses = {{
    {commands::kAnswered, "an answer"},
    {commands::kRefused,
     "invert refused a request, check found the model invalid, or shell printed an error"},
    {commands::kFailed, "bad input, a solver that failed, or output that cannot be written"},
    {commands::kCheckFailed,
     "a model of lumo's own did not pass lumo's own check, or a certificate of unsat was refuted"},
}};

}  // namespace lumo::cli

#endif
