#ifndef LUMO_MODEL_EVALUATOR_H
#define LUMO_MODEL_EVALUATOR_H

#include <cstdint>
#include <limits>
#include <vector>

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

/// Evaluates terms of one manager under given values of some of them. Results are kept, so that a term is
/// computed once however often it is asked for or shared; the walk is iterative, and memory grows with the
/// largest id met.
///
/// Values are numbers as `fold` takes them. Numerals, true and false denote themselves; any other term that
/// was given a value has it; a constant without one is 0 or false; an application follows from its arguments.
class Evaluator
{
 public:
  explicit Evaluator(const TermManager* mgr) : mgr_(mgr) {}

  /// Gives t a value in the range of its sort, in place of an earlier one; without effect on numerals, true
  /// and false. If t was seen with another value before, all results are forgotten, and what is asked for
  /// next is computed anew.
  void set_value(const Term* t, QNumber value);
  /// Good until the next call of a member.
  [[nodiscard]] const QNumber& evaluate(const Term* t);

 private:
  /// Results count if they are of the current epoch; given values, of every epoch.
  static constexpr std::uint64_t kGiven = std::numeric_limits<std::uint64_t>::max();

  struct Result
  {
    QNumber value;
    std::uint64_t epoch = 0;
  };

  [[nodiscard]] bool is_known(const Term* t) const
  {
    if (t->get_id() >= results_.size()) return false;
    const std::uint64_t epoch = results_[t->get_id()].epoch;
    return epoch == epoch_ || epoch == kGiven;
  }
  /// The place of t's result. Making room for it makes room for all that t contains, whose ids are smaller.
  Result& result_of(const Term* t);
  /// Computes t if all its arguments are known, else puts those that are not on the stack.
  void visit(const Term* t, std::vector<const Term*>& stack);

  const TermManager* mgr_;
  std::vector<Result> results_;  ///< by term id
  std::uint64_t epoch_ = 1;
};

}  // namespace lumo

#endif
