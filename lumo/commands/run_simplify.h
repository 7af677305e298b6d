#ifndef LUMO_COMMANDS_RUN_SIMPLIFY_H
#define LUMO_COMMANDS_RUN_SIMPLIFY_H

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>

#include "lumo/commands/exit_status.h"
#include "lumo/commands/progress.h"

namespace lumo::commands {

struct SimplifyOptions
{
  std::string file;                    ///< `-` stands for the standard input
  std::string rest = "-";              ///< the file for the rest; `-` is the standard output
  std::optional<std::string> trail;    ///< the file for the trail, if any; `-` is the standard output
  std::optional<std::size_t> query{};  ///< of the file, counted from 1; else the last one
  /// The file for the certificate, if any; `-` is the standard output
  std::optional<std::string> certificate{};
};

/// Does `lumo simplify` and returns its exit status.
///
/// Either all outputs are written, or the status is kFailed. Existing files stay unchanged
/// until all are complete.
int run_simplify(const SimplifyOptions& options, std::istream& in, std::ostream& out, std::ostream& err,
                 Progress* progress = nullptr);

}  // namespace lumo::commands

#endif
