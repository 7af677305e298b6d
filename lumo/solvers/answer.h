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

/// What a solver says of a script.
struct Solution
{
  Answer answer = Answer::kUnknown;
  std::vector<ModelValue>
      model;  ///< if the answer is sat and a model was asked for; constants may be missing
  std::string
      reason;  ///< if the answer is unknown: why, as a clause after `since`; empty if that is not known
};

/// A solver that gives no answer: it cannot be started, dies, or prints what cannot be understood. `what()` is
/// one sentence that says which.
class SolverError : public Exception
{
 public:
  using Exception::Exception;
};

}  // namespace lumo::solvers

#endif
