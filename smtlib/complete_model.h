#ifndef LUMO_SMTLIB_COMPLETE_MODEL_H
#define LUMO_SMTLIB_COMPLETE_MODEL_H

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "elimination/eliminate.h"
#include "model/model_store.h"
#include "smtlib/answer.h"
#include "smtlib/progress.h"
#include "smtlib/reader.h"
#include "smtlib/statistics.h"
#include "terms/term_manager.h"

namespace lumo::smtlib {

/// What should have become a model of a script did not.
class CheckFailure : public Exception
{
 public:
  /// The place is that of the assertion that is not true, if it came to the check.
  CheckFailure(std::optional<Place> place, const std::string& sentence) : Exception(sentence), place_(place)
  {}

  [[nodiscard]] std::optional<Place> get_place() const { return place_; }

 private:
  std::optional<Place> place_;
};

/// Gives values to constants of a model.
void define_values(ModelStore& model, std::span<const ModelValue> values);

/// Makes a model of a script from values of the constants that an elimination has left: extends it and checks it.
///
/// The result has a value for each constant of the script, in the order of their declaration, and every assertion
/// is true under them; else it is a CheckFailure, which also tells whether what is left was true. The statistics
/// get the times that it took.
[[nodiscard]] std::vector<ModelValue> complete_model(TermManager& mgr, const Script& script,
                                                     const Elimination& elimination,
                                                     std::span<const ModelValue> values,
                                                     Statistics& statistics, Progress* progress = nullptr);

}  // namespace lumo::smtlib

#endif
