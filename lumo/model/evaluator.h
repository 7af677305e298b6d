#ifndef LUMO_MODEL_EVALUATOR_H
#define LUMO_MODEL_EVALUATOR_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/term_manager.h"
#include "lumo/terms/term_table.h"

namespace lumo {

/// Evaluates terms of one manager under given values of some of them.
///
/// Values are numbers as `fold` takes them. Numerals, true and false denote themselves; any other term that
/// was given a value has it; a constant without one is 0 or false; an application follows from its arguments.
///
/// Results are kept, so each term is computed once, however often it is shared or asked for. The walk is
/// iterative. Memory and time are linear in the number of terms that were given a value or evaluated; the number
/// of the manager's terms does not matter.
class Evaluator
{
 public:
  /// A term that was given a value, and the value.
  struct Given
  {
    const Term* term;
    const QNumber& number;
  };

  explicit Evaluator(const TermManager* mgr) : mgr_(mgr) {}

  [[nodiscard]] const TermManager* get_manager() const { return mgr_; }

  /// Gives t a value in the range of its sort, which replaces an earlier one; without effect on numerals, true
  /// and false. If t was evaluated to another value before, all computed results are forgotten. `value` is the
  /// numeral, true or false that denotes the number, or null; with it, `evaluate_to_term` needs to make none.
  void set_value(const Term* t, QNumber number, const Term* value = nullptr);
  /// Takes the given value of t away; without effect on a term that has none.
  void unset_value(const Term* t);
  /// Whether t was given a value.
  [[nodiscard]] bool has_value(const Term* t) const;

  /// The value of t. The reference is good until the next call of a member that is not const.
  [[nodiscard]] const QNumber& evaluate(const Term* t) { return compute(t).number; }
  /// The numeral, true or false that denotes the value of t. `mgr` is the manager of this object, which makes it.
  [[nodiscard]] const Term* evaluate_to_term(TermManager& mgr, const Term* t);
  /// The value of t; keeps no result. Takes the time to evaluate all of t that was not evaluated before.
  [[nodiscard]] QNumber read(const Term* t) const;

  /// How many terms were given a value.
  [[nodiscard]] std::size_t get_num_given() const { return num_given_; }
  /// Calls the visitor with each given value, in the order in which the terms were first given one.
  template <class Visitor>
  void for_each_given(Visitor visit) const
  {
    for (const Term* t : given_) {
      if (t != nullptr) visit(Given{t, get_given(t)});
    }
  }

 private:
  /// Results count if they are of the current epoch; given values, of every epoch.
  static constexpr std::uint32_t kGiven = std::numeric_limits<std::uint32_t>::max();

  /// The value that t was given.
  [[nodiscard]] const QNumber& get_given(const Term* t) const;

  struct Result
  {
    QNumber number;
    const Term* term = nullptr;  ///< that denotes the number, or null if none was asked for yet
    std::uint32_t epoch = 0;
    std::uint32_t place = 0;  ///< of a given value: its index in given_
  };

  /// Reads what the base knows, and keeps results of its own.
  Evaluator(const TermManager* mgr, const Evaluator* base) : mgr_(mgr), base_(base) {}

  [[nodiscard]] bool is_known(const Result& result) const
  {
    return result.epoch == epoch_ || result.epoch == kGiven;
  }
  [[nodiscard]] const Result* find_known(const Term* t) const
  {
    const Result* result = results_.find(t->get_id());
    return result != nullptr && is_known(*result) ? result : nullptr;
  }
  void forget_computed();
  /// The result of t, which is then known.
  [[nodiscard]] Result& compute(const Term* t);
  /// Computes t if all its arguments are known, else puts those that are not on the stack.
  void visit(const Term* t, Result& result);

  const TermManager* mgr_;
  const Evaluator* base_ = nullptr;
  TermTable<Result> results_;
  std::uint32_t epoch_ = 1;
  std::vector<const Term*> given_;  ///< null where a value was taken away
  std::size_t num_given_ = 0;
  std::vector<const Term*> stack_;  ///< of the walk; empty between calls, unless one failed
};

}  // namespace lumo

#endif
