#ifndef LUMO_SMTLIB_MODEL_FILE_H
#define LUMO_SMTLIB_MODEL_FILE_H

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "smtlib/answer.h"
#include "smtlib/progress.h"
#include "terms/term_manager.h"

namespace lumo::smtlib {

/// Reads a model of some of the constants from a file, or from `in` if the file is `-`. What cannot be read is
/// a CommandFailure.
[[nodiscard]] std::vector<ModelValue> read_model_file(TermManager& mgr,
                                                      std::span<const Term* const> constants,
                                                      const std::string& file, std::istream& in,
                                                      Progress* progress = nullptr);

}  // namespace lumo::smtlib

#endif
