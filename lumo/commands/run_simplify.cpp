#include "lumo/commands/run_simplify.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumo/commands/certify.h"
#include "lumo/commands/result_file.h"
#include "lumo/commands/script_elimination.h"
#include "lumo/commands/subcommand.h"
#include "lumo/smtlib/trail_printer.h"

namespace lumo::commands {

namespace {

/// The files that are written.
class SimplifyResults
{
 public:
  /// Refuses names that cannot be written to, or that would overwrite the script or each other.
  explicit SimplifyResults(const SimplifyOptions& options) : rest_("rest", options.rest)
  {
    if (options.trail) trail_.emplace("trail", *options.trail);
    if (options.certificate) certificate_.emplace("certificate", *options.certificate);
    const std::vector<ResultFile*> all = list();
    check_results(options.file, {all.begin(), all.end()});
  }

  [[nodiscard]] bool prints()
  {
    const std::vector<ResultFile*> all = list();
    return std::any_of(all.begin(), all.end(), [](const ResultFile* file) { return file->prints(); });
  }
  /// Writes all of them, or none; `out` is the standard output.
  void write(std::ostream& out, Input& input, const ScriptElimination& rest);

 private:
  [[nodiscard]] std::vector<ResultFile*> list()
  {
    std::vector<ResultFile*> files{&rest_};
    if (trail_) files.push_back(&*trail_);
    if (certificate_) files.push_back(&*certificate_);
    return files;
  }

  ResultFile rest_;
  std::optional<ResultFile> trail_;
  std::optional<ResultFile> certificate_;
};

void SimplifyResults::write(std::ostream& out, Input& input, const ScriptElimination& rest)
{
  std::vector<ResultFile*> files = list();
  for (ResultFile* file : files)
    file->open();
  if (trail_) {
    trail_->write(out, [&](std::ostream& stream) {
      smtlib::print_trail(stream, input.script.constants, rest.elimination.trail);
    });
  }
  if (certificate_) {
    certificate_->write(out, [&](std::ostream& stream) {
      print_certificate(stream, input.mgr, input.script, rest.elimination);
    });
  }
  rest_.write(out, [&](std::ostream& stream) { print_rest(stream, rest); });

  std::reverse(files.begin(), files.end());
  for (ResultFile* file : files)
    file->commit();
}

}  // namespace

int run_simplify(const SimplifyOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
                 Progress* progress)
{
  PhaseClock clock(progress);
  return run_subcommand(err, [&] {
    SimplifyResults results(options);
    const std::unique_ptr<Input> input =
        read_input(options.file, in, err, clock, options.query, smtlib::ForeignText::kTaken);
    clock.enter(Phase::kEliminate, input->mgr.get_num_terms());
    const ScriptElimination rest =
        with_located_failures(input->name, [&] { return eliminate_script(input->mgr, input->script); });
    if ((options.trail || options.certificate) && !rest.needs.terms.empty()) {
      throw SubcommandFailure(input->name +
                              ": the assertions contain terms of other theories than Booleans and "
                              "bit-vectors, but trails and certificates can be made only of these");
    }

    clock.enter(results.prints() ? Phase::kPrint : Phase::kWrite);
    results.write(out, *input, rest);
    return kAnswered;
  });
}

}  // namespace lumo::commands
