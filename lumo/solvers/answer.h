#ifndef LUMO_SOLVERS_ANSWER_H
#define LUMO_SOLVERS_ANSWER_H

#include <cstdint>
#include <string>
#include <vector>

#include "lumo/model/model_value.h"
#include "lumo/terms/exception.h"

namespace lumo::solvers {

enum class Answer : std::uint8_t
{
  kSat,
  kUnsat,
  kUnknown,
};

/// `sat`, `unsat` or `unknown`.
[[nodiscard]] const char* to_string(Answer answer);

/// The result of a solver for a script.
struct Solution
{
  Answer answer = Answer::kUnknown;
  std::vector<ModelValue> model;  ///< if the answer is sat and a model was requested; may leave constants out
  std::string reason;  ///< why the answer is unknown, as a clause after `since`; empty if not known
  /// For a script with foreign terms: what else the model declares and defines, as the solver has written it.
  std::vector<std::string> definitions{};
};

/// Thrown if a solver gives no answer: it cannot be started, dies, or its output cannot be understood. `what()` is
/// one sentence with the reason.
class SolverError : public Exception
{
 public:
  using Exception::Exception;
};

}  // namespace lumo::solvers

#endif
