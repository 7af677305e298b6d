#include "lumo/commands/run_simplify.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "lumo/commands/output_file.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/trail_printer.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

using Printer = std::function<void(std::ostream&)>;

/// None is opened for the standard output.
void open_output(std::optional<OutputFile>& file, const std::string& name)
{
  if (name != "-") file.emplace(name);
}

void write_to(std::optional<OutputFile>& file, std::ostream& out, const Printer& print)
{
  if (!file) {
    write_output(out, print);
  } else {
    print(file->get_stream());
    file->finish();
  }
}

/// Whether one of the two would take the place of the other.
bool is_one_file(const std::string& first, const std::string& second)
{
  if (first == "-" || second == "-") return first == second;
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(first, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) return false;
  return std::filesystem::weakly_canonical(first, ignored) ==
         std::filesystem::weakly_canonical(second, ignored);
}

/// Written over the script, neither output would be of use: `extend` needs the script, too.
void check_is_not_the_script(const std::string& output, const SimplifyOptions& options)
{
  if (output != "-" && is_one_file(output, options.file)) {
    throw SubcommandFailure("lumo: " + smtlib::make_excerpt(output) +
                            " would be written over, but it is the script that is read");
  }
}

void check_options(const SimplifyOptions& options)
{
  check_is_not_the_script(options.rest, options);
  if (options.trail) check_is_not_the_script(*options.trail, options);
  if (options.trail && is_one_file(options.rest, *options.trail)) {
    throw SubcommandFailure("lumo: the rest and the trail would both go to " +
                            smtlib::make_excerpt(*options.trail) + ", but two files were expected");
  }
}

}  // namespace

int run_simplify(const SimplifyOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
                 Progress* progress)
{
  return run_subcommand(err, [&] {
    check_options(options);
    const std::unique_ptr<Input> input = read_input(options.file, in, progress);
    enter(progress, Activity::kEliminating, input->mgr.get_num_terms());
    Elimination elimination;
    with_located_failures(input->name,
                          [&] { elimination = eliminate(input->mgr, input->script.get_asserted_terms()); });
    const std::vector<const Term*>& rest = elimination.assertions;

    const bool prints = options.rest == "-" || options.trail == "-";
    enter(progress, prints ? Activity::kPrinting : Activity::kWriting);
    std::optional<OutputFile> rest_file;
    std::optional<OutputFile> trail_file;
    open_output(rest_file, options.rest);
    if (options.trail) open_output(trail_file, *options.trail);
    if (options.trail) {
      write_to(trail_file, out, [&](std::ostream& stream) {
        smtlib::print_trail(stream, input->script.constants, elimination.trail);
      });
    }
    write_to(rest_file, out, [&](std::ostream& stream) {
      smtlib::print_script(stream, collect_constants(rest), rest, true);
    });

    if (trail_file) trail_file->commit();
    if (rest_file) rest_file->commit();
    return kAnswered;
  });
}

}  // namespace lumo::commands
