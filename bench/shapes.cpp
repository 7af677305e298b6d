#include "bench/shapes.h"

#include <string>

namespace lumo::bench {

namespace {

constexpr unsigned long kWidth = 32;

/// Makes the terms of one formula, all of one width.
class Builder
{
 public:
  using Factory = const Symbol* (TermManager::*)(unsigned long);

  explicit Builder(TermManager& mgr) : mgr_(mgr), type_(mgr.make_bv_type(kWidth)) {}

  const Term* constant(const char* prefix, std::size_t i)
  {
    std::string name(prefix);
    name += std::to_string(i);
    formula_.constants.push_back(mgr_.make_constant(name, type_));
    return formula_.constants.back();
  }
  const Term* numeral(long value) { return mgr_.make_bv_number(value, kWidth); }
  const Term* apply(Factory factory, const Term* a) { return mgr_.make_term((mgr_.*factory)(kWidth), {a}); }
  const Term* apply(Factory factory, const Term* a, const Term* b)
  {
    return mgr_.make_term((mgr_.*factory)(kWidth), {a, b});
  }
  const Term* equal(const Term* a, const Term* b)
  {
    return mgr_.make_term(mgr_.make_eq_symbol(type_), {a, b});
  }
  const Term* conjoin(const Term* a, const Term* b) { return mgr_.make_term(mgr_.make_and_symbol(), {a, b}); }
  void assert_term(const Term* t) { formula_.assertions.push_back(t); }
  Formula take() { return std::move(formula_); }

 private:
  TermManager& mgr_;
  const DataType* type_;
  Formula formula_;
};

using T = TermManager;

}  // namespace

Formula make_deep(TermManager& mgr, std::size_t n)
{
  static constexpr std::array<Builder::Factory, 8> kOperators = {
      &T::make_bv_add_symbol, &T::make_bv_xor_symbol, &T::make_bv_mul_symbol, &T::make_bv_sub_symbol,
      &T::make_bv_and_symbol, &T::make_bv_or_symbol,  &T::make_bv_lsl_symbol, &T::make_bv_udiv_symbol};
  Builder b(mgr);
  const Term* t = b.constant("x", 0);
  for (std::size_t i = 1; i < n; ++i)
    t = b.apply(kOperators[i % kOperators.size()], t, b.constant("x", i));
  b.assert_term(b.equal(t, b.numeral(42)));
  return b.take();
}

Formula make_wide(TermManager& mgr, std::size_t n)
{
  Builder b(mgr);
  const Term* common = b.constant("c", 0);
  const Term* all = nullptr;
  for (std::size_t i = 0; i < n / 3; ++i) {
    const Term* sum = b.apply(&T::make_bv_add_symbol, b.constant("x", i), common);
    const Term* equation = b.equal(sum, b.numeral(static_cast<long>(i)));
    all = all == nullptr ? equation : b.conjoin(all, equation);
  }
  b.assert_term(all);
  return b.take();
}

Formula make_link(TermManager& mgr, std::size_t n)
{
  Builder b(mgr);
  const Term* f = b.constant("f", 0);
  for (std::size_t i = 0; i < n / 2; ++i) {
    const Term* next = b.constant("f", i + 1);
    b.assert_term(b.equal(f, b.apply(&T::make_bv_add_symbol, next, b.constant("x", i))));
    f = next;
  }
  return b.take();
}

Formula make_spine(TermManager& mgr, std::size_t n)
{
  Builder b(mgr);
  const Term* five = b.numeral(5);
  const Term* t = b.constant("x", 0);
  for (std::size_t i = 1; i < n; ++i) {
    t = i % 2 == 0 ? b.apply(&T::make_bv_mul_symbol, t, five) : b.apply(&T::make_bv_not_symbol, t);
  }
  b.assert_term(b.equal(t, b.numeral(42)));
  return b.take();
}

Formula make_shared(TermManager& mgr, std::size_t n)
{
  Builder b(mgr);
  const Term* t = b.constant("x", 0);
  for (std::size_t i = 1; i <= n / 2; ++i)
    t = b.apply(&T::make_bv_add_symbol, b.apply(&T::make_bv_mul_symbol, t, t), b.constant("x", i));
  b.assert_term(b.equal(t, b.numeral(42)));
  return b.take();
}

std::size_t count_applications(const Formula& formula)
{
  std::vector<const Term*> stack(formula.assertions);
  std::vector<bool> seen;
  std::size_t count = 0;
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (t->get_id() >= seen.size()) seen.resize(t->get_id() + 1);
    if (seen[t->get_id()]) continue;
    seen[t->get_id()] = true;
    if (t->get_num_args() > 0) ++count;
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      stack.push_back(t->get_arg(i));
  }
  return count;
}

}  // namespace lumo::bench
