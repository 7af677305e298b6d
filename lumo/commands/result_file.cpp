#include "lumo/commands/result_file.h"

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

#include "lumo/commands/subcommand.h"

namespace lumo::commands {

namespace {

/// Refuses to overwrite the script: `extend` needs it.
void check_is_not_the_script(const ResultFile& result, const std::string& script)
{
  const OutputTarget& target = result.get_target();
  std::error_code ignored;
  if (target.kind != OutputTarget::Kind::kFile || script == "-" ||
      std::filesystem::canonical(script, ignored) != target.path)
    return;
  throw SubcommandFailure("lumo: " + smtlib::make_excerpt(result.get_name()) +
                          " would be overwritten, but it is the script that is read");
}

}  // namespace

ResultFile::ResultFile(std::string what, std::string name)
    : what_(std::move(what)), name_(std::move(name)), target_(find_output_target(name_))
{}

void ResultFile::open()
{
  if (name_ != "-") file_.emplace(name_, target_);
}

void ResultFile::write(std::ostream& out, const std::function<void(std::ostream&)>& print)
{
  if (!file_) {
    write_output(out, print);
  } else {
    print(file_->get_stream());
    file_->finish();
  }
}

void ResultFile::commit()
{
  if (file_) file_->commit();
}

void check_results(const std::string& script, const std::vector<const ResultFile*>& results)
{
  for (std::size_t i = 0; i < results.size(); ++i) {
    const ResultFile& result = *results[i];
    check_is_not_the_script(result, script);
    for (std::size_t j = 0; j < i; ++j) {
      if (!is_one_output(results[j]->get_target(), result.get_target())) continue;
      throw SubcommandFailure("lumo: the " + results[j]->get_what() + " and the " + result.get_what() +
                              " would both go to " + smtlib::make_excerpt(result.get_name()) +
                              ", but two files were expected");
    }
  }
}

}  // namespace lumo::commands
