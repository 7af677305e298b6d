#include "tests/calculators/reference.h"

#include <optional>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "lumo/terms/exception.h"
#include "tests/support/make_operator.h"

namespace lumo::test {

namespace {

unsigned long width_of(const Term* t) { return t->get_symbol()->get_output_type()->get_width(); }

std::uint64_t mask(unsigned long w) { return (std::uint64_t{1} << w) - 1; }

std::int64_t to_signed(std::uint64_t pattern, unsigned long w)
{
  const auto n = static_cast<std::int64_t>(pattern);
  return (pattern >> (w - 1)) != 0 ? n - (std::int64_t{1} << w) : n;
}

/// A failure on the way to the definitions.
struct Refusal
{
  std::string message;
  Outcome::Failure failure = Outcome::Failure::kError;
};

}  // namespace

/// One call for the reference: which arguments are numerals, and the value as a number and as a truth
/// value.
struct Reference::Call
{
  TermManager* mgr;
  Reference* reference;
  const Term* t;
  const Term* value;
  Outcome outcome;

  [[nodiscard]] Kind kind() const { return t->get_symbol()->get_kind(); }
  [[nodiscard]] const Term* arg(std::size_t i) const { return t->get_arg(i); }
  [[nodiscard]] std::optional<std::uint64_t> number(const Term* term) const
  {
    const auto known = reference->numbers_.find(term);
    return known == reference->numbers_.end() ? std::nullopt : std::optional(known->second);
  }
  [[nodiscard]] bool is_number(std::size_t i) const { return number(arg(i)).has_value(); }
  [[nodiscard]] int count_numbers() const { return (is_number(0) ? 1 : 0) + (is_number(1) ? 1 : 0); }
  [[nodiscard]] std::uint64_t value_or_zero() const { return number(value).value_or(0); }
  [[nodiscard]] bool want() const { return value == mgr->make_true(); }
  [[nodiscard]] bool is_truth(const Term* term) const
  {
    return term == mgr->make_true() || term == mgr->make_false();
  }
  [[nodiscard]] static bool is_constant(const Term* term)
  {
    return term->get_symbol()->get_kind() == Kind::kConstant;
  }
  [[nodiscard]] const Term* truth(bool b) const { return b ? mgr->make_true() : mgr->make_false(); }

  void define(const Term* term, const Term* defining) { outcome.definitions.push_back({term, defining}); }
  void define_number(const Term* term, std::uint64_t n, unsigned long w)
  {
    define(term, reference->make_number(w == 0 ? n : n & mask(w), w));
  }
  /// Numbers fold to f's result, other values to the application.
  template <class F>
  void define_folded(const Term* term, Kind op, const Parameters& p, const std::vector<const Term*>& args,
                     F f)
  {
    const Term* application = mgr->make_term(make_operator(*mgr, op, p), args);
    std::vector<std::uint64_t> numbers;
    for (const Term* a : args) {
      if (number(a)) numbers.push_back(*number(a));
    }
    const unsigned long w = width_of(application);
    define(term,
           numbers.size() == args.size() ? reference->make_number(f(numbers) & mask(w), w) : application);
  }
  /// {the declared constant that comes first, the other}, and whether that is an exchange.
  [[nodiscard]] std::pair<std::pair<const Term*, const Term*>, bool> select_free() const
  {
    if (is_constant(arg(0))) return {{arg(0), arg(1)}, false};
    if (is_constant(arg(1))) return {{arg(1), arg(0)}, true};
    throw Refusal{"expected constant, but " + arg(1)->get_symbol()->get_name() + " found instead",
                  Outcome::Failure::kPlainException};
  }
};

const Term* Reference::make_number(std::uint64_t n, unsigned long w)
{
  const Term* t = mgr_->make_bv_number(QNumber(static_cast<long>(n)), w);
  numbers_.emplace(t, n);
  return t;
}

Outcome Reference::expect(const Term* t, const Term* value)
{
  Call call{mgr_, this, t, value, {}};
  try {
    switch (call.kind()) {
      case Kind::kNot:
      case Kind::kAnd:
      case Kind::kOr:
      case Kind::kIff:
        expect_boolean(call);
        break;
      case Kind::kIte:
        expect_ite(call);
        break;
      case Kind::kEq:
        expect_equality(call, call.want());
        break;
      case Kind::kBvComp:
        if (call.value_or_zero() > 1) throw Refusal{"unexpected value from comp"};
        expect_equality(call, call.value_or_zero() == 1);
        break;
      case Kind::kBvNot:
      case Kind::kBvNeg:
      case Kind::kBvRotateLeft:
      case Kind::kBvRotateRight:
      case Kind::kBvAnd:
      case Kind::kBvOr:
      case Kind::kBvXor:
        expect_bitwise(call);
        break;
      case Kind::kBvConcat:
      case Kind::kBvExtract:
      case Kind::kBvZeroExtend:
      case Kind::kBvSignExtend:
        expect_structure(call);
        break;
      case Kind::kBvUlt:
      case Kind::kBvUle:
      case Kind::kBvSlt:
      case Kind::kBvSle:
        expect_order(call);
        break;
      case Kind::kBvLsl:
      case Kind::kBvLsr:
      case Kind::kBvAsr:
      case Kind::kBvAdd:
      case Kind::kBvSub:
      case Kind::kBvMul:
      case Kind::kBvUdiv:
      case Kind::kBvSdiv:
      case Kind::kBvUrem:
      case Kind::kBvSrem:
        expect_arithmetic(call);
        break;
      case Kind::kConstant:
      case Kind::kTrue:
      case Kind::kFalse:
      case Kind::kNumeral:
        throw std::logic_error("no operator");
    }
  } catch (const Refusal& refusal) {
    return {{}, refusal.failure, refusal.message};
  } catch (const Exception& e) {  // the term layer refuses the calculator's request
    return {{}, Outcome::Failure::kPlainException, e.what()};
  }
  return call.outcome;
}

void Reference::expect_boolean(Call& call)
{
  const Term* a = call.arg(0);
  const bool want = call.want();
  if (call.kind() == Kind::kNot) {
    if (call.is_truth(a)) throw Refusal{"Term is not free!\n"};
    call.define(a, call.truth(!want));
    return;
  }
  const Term* b = call.arg(1);
  if (call.kind() != Kind::kIff) {
    if (call.is_truth(a) || call.is_truth(b)) throw Refusal{"This atom is not unconstrained!"};
    call.define(a, call.truth(want));
    call.define(b, call.truth(want));
    return;
  }
  if (call.is_truth(a) && call.is_truth(b)) throw Refusal{"This Term is not unconstraint!"};
  if (!call.is_truth(a) && !call.is_truth(b)) {
    call.define(a, call.truth(true));
    call.define(b, call.truth(want));
  } else {
    const Term* known = call.is_truth(a) ? a : b;
    const Term* unknown = call.is_truth(a) ? b : a;
    call.define(unknown, call.truth(want ? known == call.truth(true) : known == call.truth(false)));
  }
}

void Reference::expect_ite(Call& call)
{
  const bool th = call.is_number(1);
  const bool el = call.is_number(2);
  const bool is_free = !call.is_truth(call.arg(0));
  if ((th && el) || (!is_free && (th || el))) throw Refusal{"We cannot find a value for this atom!"};
  if (is_free) call.define(call.arg(0), call.truth(!th));
  if (!th) call.define(call.arg(1), call.value);
  if (!el) call.define(call.arg(2), call.value);
}

void Reference::expect_equality(Call& call, bool equal)
{
  const unsigned long w = width_of(call.arg(0));
  if (call.count_numbers() == 2) throw Refusal{"term was not free"};
  if (call.count_numbers() == 0) {
    const auto [operands, swapped] = call.select_free();
    call.define_number(operands.first, equal ? 0 : 1, w);
    call.define_number(operands.second, 0, w);
    return;
  }
  const std::size_t known = call.is_number(0) ? 0 : 1;
  const std::uint64_t n = *call.number(call.arg(known));
  call.define_number(call.arg(1 - known), equal ? n : n + 1, w);
}

void Reference::expect_bitwise(Call& call)
{
  const Term* a = call.arg(0);
  const unsigned long value_width = width_of(call.value);
  const auto refuse_number = [&call](const char* message) {
    if (call.is_number(0)) throw Refusal{message};
  };
  const auto rotate = [&call](unsigned long left) {
    const unsigned long w = width_of(call.t);
    return [w, left](const std::vector<std::uint64_t>& n) {
      return (n[0] << left % w) | (n[0] >> (w - left % w));
    };
  };
  const Parameters& p = as_operator(call.t->get_symbol()).get_parameters();
  switch (call.kind()) {
    case Kind::kBvNot:
      refuse_number("Term was not free!");
      call.define_folded(a, Kind::kBvNot, {value_width}, {call.value}, [](const auto& n) { return ~n[0]; });
      return;
    case Kind::kBvNeg:
      refuse_number("Is not free!");
      call.define_folded(a, Kind::kBvNeg, {value_width}, {call.value},
                         [](const auto& n) { return 0 - n[0]; });
      return;
    case Kind::kBvRotateLeft:
      refuse_number("Is not free!");
      call.define_folded(a, Kind::kBvRotateRight, p, {call.value}, rotate(p[1] - p[0] % p[1]));
      return;
    case Kind::kBvRotateRight:
      refuse_number("Is not free!");
      call.define_folded(a, Kind::kBvRotateLeft, p, {call.value}, rotate(p[0]));
      return;
    case Kind::kBvAnd:
      if (call.count_numbers() > 0) throw Refusal{"This atom is not unconstraint!"};
      call.define_number(a, call.value_or_zero(), value_width);
      call.define_number(call.arg(1), call.value_or_zero(), value_width);
      return;
    case Kind::kBvOr: {
      if (call.count_numbers() > 0) throw Refusal{"This atom is not unconstrained!"};
      make_number(call.value_or_zero(),
                  value_width);  // refused for a Boolean value before an operand is selected
      const auto [operands, swapped] = call.select_free();
      call.define_number(operands.first, call.value_or_zero(), value_width);
      call.define_number(operands.second, 0, value_width);
      return;
    }
    default:  // the only remaining kind
      expect_xor(call);
  }
}

void Reference::expect_xor(Call& call)
{
  const unsigned long w = width_of(call.t);
  if (call.count_numbers() == 2) throw Refusal{"should have been handled at the normalization step"};
  if (call.count_numbers() == 0) {
    const auto [operands, swapped] = call.select_free();
    call.define_number(operands.first, call.value_or_zero(), w);
    call.define_number(operands.second, 0, w);
    return;
  }
  const std::size_t known = call.is_number(0) ? 0 : 1;
  call.define_folded(call.arg(1 - known), Kind::kBvXor, {w}, {call.value, call.arg(known)},
                     [](const auto& n) { return n[0] ^ n[1]; });
}

void Reference::expect_structure(Call& call)
{
  const Parameters& p = as_operator(call.t->get_symbol()).get_parameters();
  const Term* a = call.arg(0);
  const std::uint64_t v = call.value_or_zero();
  if (call.kind() == Kind::kBvExtract) {
    if (call.is_number(0)) throw Refusal{"should have been handled at the normalization step"};
    call.define_number(a, (v & mask(p[0] - p[1] + 1)) << p[1], p[2]);
    return;
  }
  if (call.kind() != Kind::kBvConcat) {
    if (v > 1) throw Refusal{"not free!"};
    call.define_number(a, v, width_of(a));
    return;
  }
  if (call.count_numbers() == 1) throw Refusal{"Cannot find a value, should be free!"};
  if (call.count_numbers() == 2) throw Refusal{"should have been handled at the normalization step"};
  if (call.select_free().second) throw Refusal{"Cannot find a value, should be free!"};
  const unsigned long total = p[0] + p[1];
  const unsigned long low = p[1];
  call.define_folded(a, Kind::kBvExtract, {total - 1, low, total}, {call.value},
                     [low](const auto& n) { return n[0] >> low; });
  call.define_folded(call.arg(1), Kind::kBvExtract, {low - 1, 0, total}, {call.value},
                     [](const auto& n) { return n[0]; });
}

void Reference::expect_arithmetic(Call& call)
{
  const Kind kind = call.kind();
  if (kind == Kind::kBvUrem || kind == Kind::kBvSrem) throw Refusal{"Should not be called is never free!"};
  const unsigned long w = width_of(call.t);
  const std::uint64_t v = call.value_or_zero();
  const bool is_linear = kind == Kind::kBvAdd || kind == Kind::kBvSub || kind == Kind::kBvMul;
  if (call.count_numbers() == 2) {
    throw Refusal{kind == Kind::kBvSub ? "term was not free"
                                       : "should have been handled at the normalization step"};
  }
  if (call.count_numbers() == 1 && !is_linear) throw Refusal{"Cannot find a value, should be free!"};

  if (call.count_numbers() == 0) {
    const bool any = kind == Kind::kBvLsl || kind == Kind::kBvLsr || kind == Kind::kBvSdiv;
    std::pair<const Term*, const Term*> operands{call.arg(0), call.arg(1)};
    bool swapped = false;
    if (!any) std::tie(operands, swapped) = call.select_free();
    if (swapped && kind == Kind::kBvAsr) throw Refusal{"non-free term"};
    if (swapped && kind == Kind::kBvUdiv) throw Refusal{"Cannot find a value, should be free!"};
    const bool is_negated = swapped && kind == Kind::kBvSub;
    const bool is_product = kind == Kind::kBvMul || kind == Kind::kBvUdiv || kind == Kind::kBvSdiv;
    call.define_number(operands.first, is_negated ? 0 - v : v, w);
    call.define_number(operands.second, is_product ? 1 : 0, w);
    return;
  }

  const std::size_t known = call.is_number(0) ? 0 : 1;
  const Term* c = call.arg(known);
  const Term* x = call.arg(1 - known);
  if (kind == Kind::kBvAdd) {
    call.define_folded(x, Kind::kBvSub, {w}, {call.value, c}, [](const auto& n) { return n[0] - n[1]; });
  } else if (kind == Kind::kBvSub && known == 1) {
    call.define_folded(x, Kind::kBvAdd, {w}, {c, call.value}, [](const auto& n) { return n[0] + n[1]; });
  } else if (kind == Kind::kBvSub) {
    call.define_folded(x, Kind::kBvSub, {w}, {c, call.value}, [](const auto& n) { return n[0] - n[1]; });
  } else {
    const std::uint64_t factor = *call.number(c);
    if (factor % 2 == 0) throw Refusal{"We cannot find a value for this atom!"};
    std::uint64_t solution = 0;
    while (((factor * solution) & mask(w)) != v)
      ++solution;
    call.define_number(x, solution, w);
  }
}

void Reference::expect_order(Call& call)
{
  const Kind kind = call.kind();
  const unsigned long w = width_of(call.arg(0));
  const bool is_signed = kind == Kind::kBvSlt || kind == Kind::kBvSle;
  const bool is_strict = kind == Kind::kBvUlt || kind == Kind::kBvSlt;
  const bool want = call.want();
  if (call.count_numbers() == 2) {
    throw Refusal{is_signed   ? "should have been handled at the normalization step"
                  : is_strict ? "term was not free"
                              : "We cannot find a value for this atom!"};
  }
  if (call.count_numbers() == 0) {
    // If the two must differ, one operand is 1: the greater one, which in one signed bit is 0.
    const bool differ = is_strict == want;
    const bool one_is_greater = !(is_signed && w == 1);
    const bool first_is_one = differ && want != one_is_greater;
    call.define_number(call.arg(0), first_is_one ? 1 : 0, w);
    call.define_number(call.arg(1), differ && !first_is_one ? 1 : 0, w);
    return;
  }
  // x must be strictly beyond c exactly when the order is strict and true, or not strict and false.
  const std::size_t known = call.is_number(0) ? 0 : 1;
  const std::uint64_t c = *call.number(call.arg(known));
  const std::int64_t least = is_signed ? -(std::int64_t{1} << (w - 1)) : 0;
  const std::int64_t greatest = least + static_cast<std::int64_t>(mask(w));
  const std::int64_t n = is_signed ? to_signed(c, w) : static_cast<std::int64_t>(c);
  std::int64_t x = n;
  if (is_strict == want) x += (known == 0) == want ? 1 : -1;
  if (x < least || x > greatest) throw Refusal{"We cannot find a value for this atom!"};
  call.define_number(call.arg(1 - known), static_cast<std::uint64_t>(x), w);
}

}  // namespace lumo::test
