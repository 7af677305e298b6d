#include "lumo/solvers/answer.h"

namespace lumo::solvers {

const char* to_string(Answer answer)
{
  switch (answer) {
    case Answer::kSat:
      return "sat";
    case Answer::kUnsat:
      return "unsat";
    case Answer::kUnknown:
      break;
  }
  return "unknown";
}

}  // namespace lumo::solvers
