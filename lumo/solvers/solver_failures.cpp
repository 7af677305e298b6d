#include "lumo/solvers/solver_failures.h"

#include <algorithm>
#include <csignal>
#include <sstream>

#include "lumo/smtlib/input_error.h"

namespace lumo::solvers {

std::string make_one_line(std::string_view text)
{
  constexpr std::string_view kWhiteSpace = " \t\r\n\f\v";
  constexpr std::size_t kEnough = 1000;  // more than an excerpt shows
  std::string line;
  while (line.size() < kEnough) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    if (text.empty()) break;
    const std::string_view word = text.substr(0, std::min(text.find_first_of(kWhiteSpace), kEnough));
    if (!line.empty()) line += ' ';
    line += word;
    text.remove_prefix(word.size());
  }
  return smtlib::make_excerpt(line);
}

std::string explain_stop(ChildEnd end, const SolverLimits& limits)
{
  switch (end) {
    case ChildEnd::kTimeOver: {
      std::ostringstream reason;
      reason << "the time limit of " << limits.seconds.value_or(0) << " s was reached";
      return std::move(reason).str();
    }
    case ChildEnd::kInterrupted:
      return "the program was asked to end";
    case ChildEnd::kExit:
    case ChildEnd::kSignal:
    case ChildEnd::kTooVerbose:
      break;
  }
  return {};
}

std::string describe_end_without_answer(const ChildOutcome& outcome)
{
  const bool is_by_signal = outcome.end == ChildEnd::kSignal;
  std::string text = is_by_signal ? "was ended by signal " : "ended with status ";
  text += std::to_string(outcome.code);
  // The system sends this signal if it has no memory left.
  if (is_by_signal && outcome.code == SIGKILL) text += ", perhaps since memory ran out";
  if (!is_by_signal) text += " and without an answer";
  const std::string complaint = make_one_line(outcome.err);
  if (!complaint.empty()) text += ", and complained: " + complaint;
  return text;
}

}  // namespace lumo::solvers
