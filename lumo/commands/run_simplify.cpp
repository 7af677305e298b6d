#include "lumo/commands/run_simplify.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "lumo/commands/output_file.h"
#include "lumo/commands/output_target.h"
#include "lumo/commands/subcommand.h"
#include "lumo/elimination/eliminate.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/trail_printer.h"

namespace lumo::commands {

namespace {

/// One of the two outputs: the standard output as a stream, or a file.
class Output
{
 public:
  explicit Output(const std::string& name) : name_(name), target_(find_output_target(name)) {}

  [[nodiscard]] const OutputTarget& get_target() const { return target_; }
  /// Whether it may appear on a terminal while it is written.
  [[nodiscard]] bool prints() const { return target_.kind == OutputTarget::Kind::kOpen; }
  void open()
  {
    if (name_ != "-") file_.emplace(name_, target_);
  }
  void write(std::ostream& out, const std::function<void(std::ostream&)>& print)
  {
    if (!file_) {
      write_output(out, print);
    } else {
      print(file_->get_stream());
      file_->finish();
    }
  }
  void commit()
  {
    if (file_) file_->commit();
  }

 private:
  std::string name_;
  OutputTarget target_;
  std::optional<OutputFile> file_;  ///< not for `-`
};

/// Refuses to overwrite the script: `extend` needs it.
void check_is_not_the_script(const OutputTarget& target, const std::string& name, const std::string& script)
{
  std::error_code ignored;
  if (target.kind != OutputTarget::Kind::kFile || script == "-" ||
      std::filesystem::canonical(script, ignored) != target.path)
    return;
  throw SubcommandFailure("lumo: " + smtlib::make_excerpt(name) +
                          " would be overwritten, but it is the script that is read");
}

void check_outputs(const SimplifyOptions& options, const Output& rest, const std::optional<Output>& trail)
{
  check_is_not_the_script(rest.get_target(), options.rest, options.file);
  if (!trail) return;
  check_is_not_the_script(trail->get_target(), *options.trail, options.file);
  if (is_one_output(rest.get_target(), trail->get_target())) {
    throw SubcommandFailure("lumo: the rest and the trail would both go to " +
                            smtlib::make_excerpt(*options.trail) + ", but two files were expected");
  }
}

}  // namespace

int run_simplify(const SimplifyOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
                 Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    Output rest_output(options.rest);
    std::optional<Output> trail_output;
    if (options.trail) trail_output.emplace(*options.trail);
    check_outputs(options, rest_output, trail_output);

    const std::unique_ptr<Input> input = read_input(options.file, in, err, clock, options.query);
    clock.enter(Phase::kEliminate, input->mgr.get_num_terms());
    const Elimination elimination = with_located_failures(
        input->name, [&] { return eliminate(input->mgr, input->script.get_asserted_terms()); });
    const std::vector<const Term*>& rest = elimination.assertions;

    const bool prints = rest_output.prints() || (trail_output && trail_output->prints());
    clock.enter(prints ? Phase::kPrint : Phase::kWrite);
    rest_output.open();
    if (trail_output) {
      trail_output->open();
      trail_output->write(out, [&](std::ostream& stream) {
        smtlib::print_trail(stream, input->script.constants, elimination.trail);
      });
    }
    rest_output.write(out, [&](std::ostream& stream) { smtlib::print_script(stream, {}, rest, true); });

    if (trail_output) trail_output->commit();
    rest_output.commit();
    return kAnswered;
  });
}

}  // namespace lumo::commands
