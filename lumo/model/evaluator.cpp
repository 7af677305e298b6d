#include "lumo/model/evaluator.h"

#include <array>
#include <cassert>
#include <utility>

#include "lumo/terms/fold.h"

namespace lumo {

// --------------------------------------------------------------------------------------------------------
// Given values

void Evaluator::set_value(const Term* t, QNumber number, const Term* value)
{
  if (is_value(*mgr_, t)) return;
  Result& result = results_[t->get_id()];
  if (result.epoch != kGiven) {
    result.place = static_cast<std::uint32_t>(given_.size());
    given_.push_back(t);
    ++num_given_;
  }
  if (is_known(result) && result.number != number) forget_computed();
  result.number = std::move(number);
  result.term = value;
  result.epoch = kGiven;
}

void Evaluator::unset_value(const Term* t)
{
  if (!has_value(t)) return;
  Result& result = results_[t->get_id()];
  result.epoch = 0;
  given_[result.place] = nullptr;
  --num_given_;
  while (!given_.empty() && given_.back() == nullptr)
    given_.pop_back();
  forget_computed();
  if (given_.size() < 2 * num_given_ + 8) return;
  // Most places are empty: close the gaps.
  std::size_t place = 0;
  for (const Term* given : given_) {
    if (given == nullptr) continue;
    results_[given->get_id()].place = static_cast<std::uint32_t>(place);
    given_[place++] = given;
  }
  given_.resize(place);
}

const QNumber& Evaluator::get_given(const Term* t) const
{
  const Result* result = results_.find(t->get_id());
  assert(result != nullptr && "a given value is a result");
  return result->number;
}

bool Evaluator::has_value(const Term* t) const
{
  const Result* result = results_.find(t->get_id());
  return result != nullptr && result->epoch == kGiven;
}

void Evaluator::forget_computed()
{
  if (++epoch_ != kGiven) return;
  results_.for_each_entry([](Result& result) {
    if (result.epoch != kGiven) result.epoch = 0;
  });
  epoch_ = 1;
}

// --------------------------------------------------------------------------------------------------------
// Results

const Term* Evaluator::evaluate_to_term(TermManager& mgr, const Term* t)
{
  Result& result = compute(t);
  if (result.term == nullptr) result.term = make_value(mgr, result.number, t->get_sort());
  return result.term;
}

QNumber Evaluator::read(const Term* t) const
{
  if (const Result* known = find_known(t); known != nullptr) return known->number;
  if (t->get_num_args() == 0) {
    const QNumber* number = find_value_number(*mgr_, t);
    return number != nullptr ? *number : QNumber();
  }
  return Evaluator(mgr_, this).evaluate(t);
}

Evaluator::Result& Evaluator::compute(const Term* t)
{
  Result& wanted = results_[t->get_id()];
  if (is_known(wanted)) return wanted;
  // An argument may be pushed by several parents before it is computed; it is computed once, and the stack
  // never holds more than one entry for each argument position.
  stack_.assign(1, t);
  while (!stack_.empty()) {
    const Term* next = stack_.back();
    Result& result = results_[next->get_id()];
    if (is_known(result)) {
      stack_.pop_back();
    } else {
      visit(next, result);
    }
  }
  return wanted;
}

void Evaluator::visit(const Term* t, Result& result)
{
  if (base_ != nullptr) {
    if (const Result* known = base_->find_known(t); known != nullptr) {
      result.number = known->number;
      result.epoch = epoch_;
      return;
    }
  }
  const std::size_t num_args = t->get_num_args();
  result.term = nullptr;
  if (num_args == 0) {
    const QNumber* number = find_value_number(*mgr_, t);
    result.number = number != nullptr ? *number : QNumber();
    if (number != nullptr) result.term = t;
  } else {
    const std::size_t height = stack_.size();
    std::array<const QNumber*, kMaxArity> args{};
    for (std::size_t i = 0; i < num_args; ++i) {
      const Term* arg = t->get_arg(i);
      const Result& arg_result = results_[arg->get_id()];
      if (!is_known(arg_result)) stack_.push_back(arg);
      args[i] = &arg_result.number;
    }
    if (stack_.size() != height) return;
    result.number = fold(as_operator(t->get_symbol()), args.data());
  }
  result.epoch = epoch_;
}

}  // namespace lumo
