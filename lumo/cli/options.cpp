#include "lumo/cli/options.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

#include "lumo/version.h"

namespace lumo::cli {

namespace {

struct ValueName
{
  std::string_view name;
  ValueKind kind;
};

constexpr std::array<ValueName, 8> kValueNames = {{
    {"FILE", ValueKind::kScript},
    {"REST", ValueKind::kFile},
    {"TRAIL", ValueKind::kFile},
    {"CERT", ValueKind::kFile},
    {"MODEL", ValueKind::kFile},
    {"COMMAND", ValueKind::kCommand},
    {"SECONDS", ValueKind::kNumber},
    {"NUMBER", ValueKind::kNumber},
}};

void add_script(CLI::App* subcommand, std::string& file)
{
  subcommand->add_option("FILE", file, "SMT-LIB 2 script; - is the standard input")
      ->type_name("")
      ->required();
}

void add_query(CLI::App* subcommand, std::optional<std::size_t>& query)
{
  subcommand
      ->add_option("--query", query,
                   "Of a script with several queries, the one that this is about; else the last")
      ->type_name("NUMBER");
}

std::string_view describe_value(ValueKind kind)
{
  switch (kind) {
    case ValueKind::kScript:
    case ValueKind::kFile:
      return "the name of a file";
    case ValueKind::kCommand:
      return "a command";
    case ValueKind::kNumber:
      return "a number";
  }
  return {};  // GCOVR_EXCL_LINE: the switch handles all values
}

/// CLI11 treats an empty value as if the option were missing.
void refuse_empty_values(const std::vector<const CLI::Option*>& options)
{
  for (const CLI::Option* option : options) {
    const std::vector<std::string>& values = option->results();
    if (!takes_value(*option) || std::find(values.begin(), values.end(), "") == values.end()) continue;
    const std::string name = option->get_positional() ? option->get_name(true) : option->get_name();
    throw CLI::ValidationError("the value of " + name + " is empty, but " +
                               std::string(describe_value(get_value_kind(*option))) + " was expected");
  }
}

std::string make_footer()
{
  std::string footer = "Exit status:";
  for (const ExitStatus& status : kExitStatuses)
    footer += "\n  " + std::to_string(status.status) + "  " + std::string(status.meaning);
  return footer;
}

}  // namespace

Options::Options()
    : app_(
          "Eliminates unconstrained terms from SMT-LIB 2 scripts over Booleans and bit-vectors, and makes "
          "models\n"
          "of the scripts from models of the rest.",
          "lumo")
{
  app_.get_formatter()->label("REQUIRED", "(required)");
  app_.get_formatter()->label("Positionals", "Arguments");
  app_.set_version_flag("--version", "lumo " + std::string(kVersion), "Print the version and exit");
  app_.set_help_flag("-h,--help", "Print this help and exit");
  app_.require_subcommand(1);
  // passed on to the subcommands; without it, --model=FILE would be something about a truth value.
  app_.option_defaults()->disable_flag_override();
  app_.footer(make_footer());
  add_solve();
  add_simplify();
  add_extend();
  add_check();
  add_dot();
  add_invert();
  add_shell();
}

void Options::parse(int argc, const char* const* argv)
{
  app_.parse(argc, argv);
  for (const CLI::App* subcommand : app_.get_subcommands()) {
    refuse_empty_values(list_arguments(*subcommand));
    refuse_empty_values(list_options(*subcommand));
  }
}

Subcommand Options::get_subcommand() const
{
  for (const auto& [app, subcommand] : subcommands_) {
    if (app->parsed()) return subcommand;
  }
  throw std::logic_error("no subcommand was given");  // GCOVR_EXCL_LINE: without one, parsing fails
}

CLI::App* Options::add_subcommand(Subcommand subcommand, const std::string& name,
                                  const std::string& description)
{
  CLI::App* app = app_.add_subcommand(name, description)->group("Subcommands");
  subcommands_.emplace_back(app, subcommand);
  return app;
}

void Options::add_solve()
{
  commands::SolveOptions& solve = values_.solve;
  CLI::App* subcommand =
      add_subcommand(Subcommand::kSolve, "solve",
                     "Eliminate, let a solver solve the rest, and print sat, unsat or unknown.");
  add_script(subcommand, solve.file);
  subcommand->add_flag("--model", solve.wants_model, "Also print a checked model of all declared constants");
  add_method(subcommand, solve.method);
  subcommand
      ->add_option("--certificate", solve.certificate,
                   "If the answer is unsat, the file for a script that is unsatisfiable if and only if "
                   "what elimination left follows from the script")
      ->type_name("CERT");
  subcommand->add_flag("--stats", solve.wants_statistics,
                       "Print sizes, eliminated applications and times to standard error");
  subcommand->add_flag("--json", solve.wants_json, "Print answer, model and statistics as one JSON object");
}

void Options::add_method(CLI::App* subcommand, commands::SolveMethod& method)
{
  subcommand
      ->add_option("--solver", method.solver_command,
                   "The command of a solver that reads SMT-LIB 2; the default is Z3, if it is built in")
      ->type_name("COMMAND");
  subcommand->add_option("--timeout", method.seconds, "Stop the solver after this time")
      ->type_name("SECONDS");
  subcommand->add_flag_callback(
      "--no-elimination", [&method] { method.eliminates = false; }, "Give the solver the whole script");
  CLI::Option* certify = subcommand->add_flag("--certify", method.certification.is_wanted,
                                              "Have a second solver confirm the certificate of each unsat");
  subcommand
      ->add_option("--checker", method.certification.checker_command,
                   "The command of that solver; the default is Z3, if it is built in")
      ->type_name("COMMAND")
      ->needs(certify);
}

void Options::add_simplify()
{
  commands::SimplifyOptions& simplify = values_.simplify;
  CLI::App* subcommand = add_subcommand(Subcommand::kSimplify, "simplify",
                                        "Eliminate, and print the rest as a script for any solver.");
  add_script(subcommand, simplify.file);
  add_query(subcommand, simplify.query);
  subcommand
      ->add_option("-o,--output", simplify.rest, "The file for the rest; the default is standard output")
      ->type_name("REST");
  subcommand->add_option("--trail", simplify.trail, "The file for the trail, which extend needs")
      ->type_name("TRAIL");
  subcommand
      ->add_option("--certificate", simplify.certificate,
                   "The file for a script that is unsatisfiable if and only if the rest follows from FILE")
      ->type_name("CERT");
}

void Options::add_extend()
{
  commands::ExtendOptions& extend = values_.extend;
  CLI::App* subcommand = add_subcommand(
      Subcommand::kExtend, "extend",
      "Make a model of the script from a solver's model of the rest that simplify printed, and check it.");
  add_script(subcommand, extend.file);
  add_query(subcommand, extend.query);
  subcommand->add_option("--trail", extend.trail, "The trail that simplify wrote")
      ->type_name("TRAIL")
      ->required();
  subcommand->add_option("--model", extend.model, "The output of the solver")->type_name("MODEL")->required();
}

void Options::add_check()
{
  commands::CheckOptions& check = values_.check;
  CLI::App* subcommand = add_subcommand(Subcommand::kCheck, "check",
                                        "Say whether every assertion of the script is true under a model.");
  add_script(subcommand, check.file);
  add_query(subcommand, check.query);
  subcommand->add_option("--model", check.model, "The model, as solvers print it")
      ->type_name("MODEL")
      ->required();
}

void Options::add_dot()
{
  commands::DotOptions& dot = values_.dot;
  CLI::App* subcommand = add_subcommand(
      Subcommand::kDot, "dot", "Print the term graph for Graphviz, with the eliminated applications marked.");
  add_script(subcommand, dot.file);
  add_query(subcommand, dot.query);
  subcommand->add_flag("--after", dot.is_after,
                       "Show the rest, with the constants marked that replace applications");
}

void Options::add_invert()
{
  CLI::App* subcommand = add_subcommand(
      Subcommand::kInvert, "invert",
      "Print definitions of constants that satisfy each assertion of the FILEs. An assertion (= t v)\n"
      "requests values of t's arguments that make t equal to the literal v, (not t) values that\n"
      "make t false, any other application t values that make it true.");
  subcommand->add_option("FILE", values_.invert_files, "SMT-LIB 2 files; - is the standard input")
      ->type_name("")
      ->required();
}

void Options::add_shell()
{
  commands::ShellOptions& shell = values_.shell;
  CLI::App* subcommand =
      add_subcommand(Subcommand::kShell, "shell",
                     "Answer commands one by one, as they come, in front of a solver that keeps\n"
                     "what it has learnt; with push, pop and many queries.");
  subcommand->add_option("FILE", shell.file, "SMT-LIB 2 commands; -, the default, is the standard input")
      ->type_name("");
  add_method(subcommand, shell.method);
  subcommand
      ->add_option("--certificate", shell.certificate,
                   "The file for one such script for each unsat, separated by (reset)")
      ->type_name("CERT");
}

// -----------------------------------------------------------------------------------------------------------

std::vector<const CLI::App*> list_subcommands(const CLI::App& app)
{
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> list_options(const CLI::App& app)
{
  std::vector<const CLI::Option*> options =
      app.get_options([](const CLI::Option* option) { return option->nonpositional(); });
  std::stable_partition(options.begin(), options.end(),
                        [&](const CLI::Option* option) { return option == app.get_help_ptr(); });
  return options;
}

std::vector<const CLI::Option*> list_arguments(const CLI::App& app)
{
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<std::string> list_names(const CLI::Option& option)
{
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames())
    names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    names.push_back("--" + name);
  return names;
}

ValueKind get_value_kind(const CLI::Option& option)
{
  const std::string name = option.get_positional() ? option.get_name(true) : option.get_type_name();
  for (const ValueName& row : kValueNames) {
    if (row.name == name) return row.kind;
  }
  throw std::logic_error("there is no kind for the value " + name);  // GCOVR_EXCL_LINE
}

}  // namespace lumo::cli
