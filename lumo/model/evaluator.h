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
/// Values are numbers as `fold` takes them. Numerals, true and false have their own value. Any other term that was
/// given a value has that value. A constant without a given value is 0 or false; the value of an application
/// follows from its arguments.
///
/// Results are cached, so each term is computed once, however often it is shared or requested. The walk is
/// iterative. Memory and time are linear in the number of terms that were given a value or evaluated, independent
/// of the number of the manager's terms.
class Evaluator
{
 public:
  /// A term and the value that it was given.
  struct Given
  {
    const Term* term;
    const QNumber& number;
  };

  explicit Evaluator(const TermManager* mgr) : mgr_(mgr) {}

  [[nodiscard]] const TermManager* get_manager() const { return mgr_; }

  /// Gives t a value in the range of its sort, which replaces an earlier one; without effect on numerals, true
  /// and false. If t was evaluated to another value before, all computed results are discarded. `value` is the
  /// numeral, true or false that denotes the number, or null. If it is given, `evaluate_to_term` need not make it.
  void set_value(const Term* t, QNumber number, const Term* value = nullptr);
  /// Removes the given value of t. No effect if t has none.
  void unset_value(const Term* t);
  /// Whether t was given a value.
  [[nodiscard]] bool has_value(const Term* t) const;

  /// The value of t. The reference is valid until the next call of a non-const member.
  [[nodiscard]] const QNumber& evaluate(const Term* t) { return compute(t).number; }
  /// The numeral, true or false that denotes the value of t. `mgr` is the manager of this object; it makes the term.
  [[nodiscard]] const Term* evaluate_to_term(TermManager& mgr, const Term* t);
  /// The value of t, without caching results. Takes the time to evaluate all subterms that were not evaluated before.
  [[nodiscard]] QNumber read(const Term* t) const;

  /// The number of terms that were given a value.
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
  /// Results are valid if they are from the current epoch; given values are valid in every epoch.
  static constexpr std::uint32_t kGiven = std::numeric_limits<std::uint32_t>::max();

  /// The value that t was given.
  [[nodiscard]] const QNumber& get_given(const Term* t) const;

  struct Result
  {
    QNumber number;
    const Term* term = nullptr;  ///< the term that denotes the number, or null if none was requested yet
    std::uint32_t epoch = 0;
    std::uint32_t place = 0;  ///< of a given value: its index in given_
  };

  /// Reads the results of the base, and stores its own results.
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
  /// Computes the result of t if it is not known yet.
  [[nodiscard]] Result& compute(const Term* t);
  /// Computes t if all its arguments are known; otherwise pushes the unknown ones on the stack.
  void visit(const Term* t, Result& result);

  const TermManager* mgr_;
  const Evaluator* base_ = nullptr;
  TermTable<Result> results_;
  std::uint32_t epoch_ = 1;
  std::vector<const Term*> given_;  ///< null if the value was removed
  std::size_t num_given_ = 0;
  std::vector<const Term*> stack_;  ///< of the walk; empty between calls, except after one that failed
};

}  // namespace lumo

#endif
