#ifndef LUMO_COMMANDS_RESULT_FILE_H
#define LUMO_COMMANDS_RESULT_FILE_H

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "lumo/commands/output_file.h"
#include "lumo/commands/output_target.h"

namespace lumo::commands {

/// One of several results of a subcommand: the standard output as a stream, or a file.
///
/// `write` all results before you `commit` the first one: then all files get their new content, or none.
class ResultFile
{
 public:
  /// `what` is the result in messages; the name `-` is the standard output. Throws a SubcommandFailure if no file can
  /// have that name.
  ResultFile(std::string what, std::string name);

  [[nodiscard]] const std::string& get_what() const { return what_; }
  [[nodiscard]] const std::string& get_name() const { return name_; }
  [[nodiscard]] const OutputTarget& get_target() const { return target_; }
  /// Whether it may appear on a terminal while it is written.
  [[nodiscard]] bool prints() const { return target_.kind == OutputTarget::Kind::kOpen; }
  /// Prepares the file. A SubcommandFailure if it cannot be written.
  void open();
  /// Writes the whole content; to `out` if the name is `-`. Precondition: the file is open.
  void write(std::ostream& out, const std::function<void(std::ostream&)>& print);
  void commit();

 private:
  std::string what_;
  std::string name_;
  OutputTarget target_;
  std::optional<OutputFile> file_;  ///< not for `-`
};

/// Refuses results that would overwrite the script, which is read, or each other, as a SubcommandFailure.
void check_results(const std::string& script, const std::vector<const ResultFile*>& results);

}  // namespace lumo::commands

#endif
