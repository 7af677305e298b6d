#include "lumo/model/evaluator.h"

#include <array>
#include <utility>

#include "lumo/terms/fold.h"

namespace lumo {

void Evaluator::set_value(const Term* t, QNumber value)
{
  if (is_value(*mgr_, t)) return;
  Result& result = result_of(t);
  if (is_known(t) && result.value != value) ++epoch_;
  result.value = std::move(value);
  result.epoch = kGiven;
}

const QNumber& Evaluator::evaluate(const Term* t)
{
  // An argument may be pushed by several parents before it is computed; it is computed once, and the stack
  // never holds more than one entry per argument position.
  std::vector<const Term*> stack{t};
  while (!stack.empty()) {
    const Term* next = stack.back();
    if (is_known(next)) {
      stack.pop_back();
    } else {
      visit(next, stack);
    }
  }
  return results_[t->get_id()].value;
}

Evaluator::Result& Evaluator::result_of(const Term* t)
{
  if (t->get_id() >= results_.size()) results_.resize(t->get_id() + 1);
  return results_[t->get_id()];
}

void Evaluator::visit(const Term* t, std::vector<const Term*>& stack)
{
  Result& result = result_of(t);
  const std::size_t num_args = t->get_num_args();
  if (num_args == 0) {
    const QNumber* number = find_value_number(*mgr_, t);
    result.value = number != nullptr ? *number : QNumber();
  } else {
    const std::size_t height = stack.size();
    std::array<const QNumber*, kMaxArity> args{};
    for (std::size_t i = 0; i < num_args; ++i) {
      const Term* arg = t->get_arg(i);
      if (!is_known(arg)) stack.push_back(arg);
      args[i] = &result_of(arg).value;
    }
    if (stack.size() != height) return;
    result.value = fold(as_operator(t->get_symbol()), args.data());
  }
  result.epoch = epoch_;
}

}  // namespace lumo
