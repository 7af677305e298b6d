#ifndef LUMO_SMTLIB_ANSWER_H
#define LUMO_SMTLIB_ANSWER_H

#include <cstdint>
#include <string>
#include <vector>

#include "terms/exception.h"
#include "terms/term_manager.h"

namespace lumo::smtlib {

enum class Answer : std::uint8_t
{
  kSat,
  kUnsat,
  kUnknown,
};

/// `sat`, `unsat` or `unknown`.
[[nodiscard]] const char* to_string(Answer answer);

/// A constant and its value: a numeral, true or false.
struct ModelValue
{
  const Term* constant;
  const Term* value;
};

/// What a solver says of a script.
struct Solution
{
  Answer answer = Answer::kUnknown;
  std::vector<ModelValue>
      model;  ///< if the answer is sat and a model was asked for; constants may be missing
};

/// A solver that gives no answer: it cannot be started, dies, or prints what cannot be understood. `what()` is
/// one sentence that says which.
class SolverError : public Exception
{
 public:
  using Exception::Exception;
};

}  // namespace lumo::smtlib

#endif
