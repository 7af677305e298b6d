#include "tests/calculators/exact_reference.h"

#include <algorithm>
#include <utility>

namespace lumo::test {

namespace {

using Sort = Operand::Sort;
using Parameters = std::array<unsigned long, kMaxArity>;

/// The case is refused with this text.
struct Refused
{
  std::string message;
  bool is_missing_constant = false;
};

constexpr const char* kUnnormalisedText = "should have been handled at the normalization step";
constexpr const char* kUnsolvableText = "We cannot find a value for this atom!";
constexpr const char* kUnfreeText = "Cannot find a value, should be free!";

Integer power(unsigned long exponent) { return Integer::power(exponent); }

Integer add(const Integer& a, const Integer& b)
{
  Integer r;
  mpz_add(r, a, b);
  return r;
}

Integer subtract(const Integer& a, const Integer& b)
{
  Integer r;
  mpz_sub(r, a, b);
  return r;
}

Integer reduce(const Integer& n, unsigned long w)
{
  Integer r;
  mpz_fdiv_r_2exp(r, n, w);
  return r;
}

/// One call, and the definitions so far.
class Judge
{
 public:
  explicit Judge(const ExactCall& call) : call_(call) {}

  ExactOutcome run()
  {
    try {
      choose();
    } catch (const Refused& refused) {
      outcome_.definitions.clear();
      outcome_.message = refused.message;
      outcome_.is_missing_constant = refused.is_missing_constant;
    }
    return outcome_;
  }

 private:
  [[nodiscard]] const Operand& arg(std::size_t i) const { return call_.args[i]; }
  [[nodiscard]] bool is_numeral(std::size_t i) const { return arg(i).sort == Sort::kNumeral; }
  [[nodiscard]] bool is_truth(std::size_t i) const
  {
    return arg(i).sort == Sort::kTrue || arg(i).sort == Sort::kFalse;
  }
  [[nodiscard]] bool want() const { return call_.value.sort == Sort::kTrue; }
  /// The value's number, 0 if it has none
  [[nodiscard]] Integer number() const
  {
    return call_.value.sort == Sort::kNumeral ? call_.value.number : Integer();
  }
  [[nodiscard]] int count_numerals() const { return (is_numeral(0) ? 1 : 0) + (is_numeral(1) ? 1 : 0); }
  /// If one of two arguments is a numeral: its position
  [[nodiscard]] std::size_t known() const { return is_numeral(0) ? 0 : 1; }

  void define(std::size_t i, const std::string& value)
  {
    outcome_.definitions.push_back(arg(i).text + " := " + value);
  }
  void define_truth(std::size_t i, bool value) { define(i, value ? "true" : "false"); }
  void define_number(std::size_t i, const Integer& n, unsigned long w)
  {
    if (w == 0) outcome_.is_ill_typed = true;
    define(i, print_numeral(n, w));
  }
  /// Defines an argument by an application that a functor simplifies: to the numeral of `folded`, which has width
  /// w, if all its arguments are numerals of the widths that it takes.
  void define_applied(std::size_t i, Kind kind, const Parameters& p, const std::vector<const Operand*>& args,
                      const std::vector<unsigned long>& widths, const Integer& folded, unsigned long w)
  {
    bool is_folded = true;
    std::vector<std::string> texts;
    for (std::size_t j = 0; j < args.size(); ++j) {
      const bool fits = args[j]->width == widths[j];
      if (!fits || widths[j] == 0) outcome_.is_ill_typed = true;
      is_folded = is_folded && fits && args[j]->sort == Sort::kNumeral;
      texts.push_back(args[j]->text);
    }
    if (w == 0) outcome_.is_ill_typed = true;
    define(i, is_folded ? print_numeral(folded, w) : print_application(kind, p, texts));
  }

  /// The position of the operand that is defined first: the first one that is a declared constant.
  [[nodiscard]] std::size_t select() const
  {
    if (arg(0).sort == Sort::kConstant) return 0;
    if (arg(1).sort == Sort::kConstant) return 1;
    throw Refused{"expected constant, but " + arg(1).symbol_name + " found instead", true};
  }
  /// Gives the selected operand a number, then the other one another number.
  void define_pair(std::size_t first, const Integer& n, const Integer& other, unsigned long w)
  {
    define_number(first, n, w);
    define_number(1 - first, other, w);
  }

  void choose()
  {
    switch (get_operator_info(call_.calculator).rule) {
      case SortRule::kBool:
        return judge_boolean();
      case SortRule::kIte:
        return judge_ite();
      case SortRule::kEq:
        return judge_equality(want());
      case SortRule::kComparison:
        if (number() == Integer(1L)) return judge_equality(true);
        if (number() == Integer()) return judge_equality(false);
        throw Refused{"unexpected value from comp"};
      case SortRule::kPredicate:
        return judge_order();
      case SortRule::kRotate:
        return judge_rotation();
      case SortRule::kConcat:
        return judge_concat();
      case SortRule::kExtract:
        return judge_extract();
      case SortRule::kExtend:
        if (number() != Integer() && number() != Integer(1L)) throw Refused{"not free!"};
        return define_number(0, number(), arg(0).width);
      case SortRule::kUniform:
        return judge_uniform();
    }
  }

  void judge_uniform()
  {
    switch (call_.calculator) {
      case Kind::kBvNot:
      case Kind::kBvNeg:
        return judge_unary();
      case Kind::kBvAnd:
      case Kind::kBvOr:
        return judge_and_or();
      case Kind::kBvXor:
      case Kind::kBvAdd:
      case Kind::kBvSub:
      case Kind::kBvMul:
        return judge_invertible();
      case Kind::kBvUrem:
      case Kind::kBvSrem:
        throw Refused{"Should not be called is never free!"};
      default:  // divisions and shifts
        return judge_neutral();
    }
  }

  void judge_boolean()
  {
    if (call_.calculator == Kind::kNot) {
      if (is_truth(0)) throw Refused{"Term is not free!\n"};
      return define_truth(0, !want());
    }
    if (call_.calculator != Kind::kIff) {
      if (is_truth(0) || is_truth(1)) throw Refused{"This atom is not unconstrained!"};
      define_truth(0, want());
      return define_truth(1, want());
    }
    if (is_truth(0) && is_truth(1)) throw Refused{"This Term is not unconstraint!"};
    if (is_truth(0)) return define_truth(1, (arg(0).sort == Sort::kTrue) == want());
    if (is_truth(1)) return define_truth(0, (arg(1).sort == Sort::kTrue) == want());
    define_truth(0, true);
    define_truth(1, want());
  }

  void judge_ite()
  {
    const int num_known = (is_numeral(1) ? 1 : 0) + (is_numeral(2) ? 1 : 0);
    if (num_known > (is_truth(0) ? 0 : 1)) throw Refused{kUnsolvableText};
    if (!is_truth(0)) define_truth(0, !is_numeral(1));
    for (const std::size_t branch : {std::size_t{1}, std::size_t{2}}) {
      if (!is_numeral(branch)) define(branch, call_.value.text);
    }
  }

  void judge_equality(bool equal)
  {
    if (count_numerals() == 2) throw Refused{"term was not free"};
    const unsigned long w = arg(0).width;
    if (count_numerals() == 0) return define_pair(select(), equal ? 0 : 1, 0, w);
    const Operand& n = arg(known());
    if (equal) return define(1 - known(), n.text);
    const Operand one = make_numeral_operand(1, w);
    define_applied(1 - known(), Kind::kBvAdd, {w}, {&n, &one}, {w, w}, add(n.number, 1), w);
  }

  void judge_unary()
  {
    const bool is_not = call_.calculator == Kind::kBvNot;
    if (is_numeral(0)) throw Refused{is_not ? "Term was not free!" : "Is not free!"};
    const unsigned long w = call_.value.width;
    const Integer opposite = subtract(is_not ? -1 : 0, number());
    define_applied(0, call_.calculator, {w}, {&call_.value}, {w}, opposite, w);
  }

  void judge_rotation()
  {
    if (is_numeral(0)) throw Refused{"Is not free!"};
    const bool is_left = call_.calculator == Kind::kBvRotateLeft;
    const auto [k, w, none] = call_.parameters;
    // Bits that move to the right by r places come back on the left: x * 2^(w - r) + x / 2^r.
    const unsigned long r = w == 0 ? 0 : is_left ? k % w : (w - k % w) % w;
    Integer low;
    mpz_fdiv_q_2exp(low, number(), r);
    Integer high;
    mpz_mul_2exp(high, number(), w - r);
    define_applied(0, is_left ? Kind::kBvRotateRight : Kind::kBvRotateLeft, {k, w}, {&call_.value}, {w},
                   add(high, low), w);
  }

  void judge_and_or()
  {
    const bool is_and = call_.calculator == Kind::kBvAnd;
    const unsigned long w = call_.value.width;
    if (count_numerals() != 0)
      throw Refused{is_and ? "This atom is not unconstraint!" : "This atom is not unconstrained!"};
    if (w == 0) outcome_.is_ill_typed = true;  // also if a constant is missing: the numeral is made before
    if (is_and) return define_pair(0, number(), number(), w);
    define_pair(select(), number(), 0, w);
  }

  void judge_invertible()
  {
    const unsigned long w = call_.width;
    const Kind kind = call_.calculator;
    if (count_numerals() == 2) throw Refused{kind == Kind::kBvSub ? "term was not free" : kUnnormalisedText};
    if (count_numerals() == 0) {
      const std::size_t first = select();
      const bool is_negated = kind == Kind::kBvSub && first == 1;
      return define_pair(first, is_negated ? subtract(0, number()) : number(), kind == Kind::kBvMul ? 1 : 0,
                         w);
    }
    const Operand& c = arg(known());
    const Operand& v = call_.value;
    const std::size_t x = 1 - known();
    if (kind == Kind::kBvXor) {
      Integer r;
      mpz_xor(r, number(), c.number);
      return define_applied(x, Kind::kBvXor, {w}, {&v, &c}, {w, w}, r, w);
    }
    if (kind == Kind::kBvAdd)
      return define_applied(x, Kind::kBvSub, {w}, {&v, &c}, {w, w}, subtract(number(), c.number), w);
    if (kind == Kind::kBvSub && x == 0)
      return define_applied(x, Kind::kBvAdd, {w}, {&c, &v}, {w, w}, add(c.number, number()), w);
    if (kind == Kind::kBvSub)
      return define_applied(x, Kind::kBvSub, {w}, {&c, &v}, {w, w}, subtract(c.number, number()), w);
    if (mpz_tstbit(c.number, 0) == 0) throw Refused{kUnsolvableText};
    Integer product;
    mpz_invert(product, c.number, power(w));
    mpz_mul(product, product, number());
    define_number(x, product, w);
  }

  void judge_neutral()
  {
    const Kind kind = call_.calculator;
    if (count_numerals() == 2) throw Refused{kUnnormalisedText};
    if (count_numerals() == 1) throw Refused{kUnfreeText};
    const bool is_strict = kind == Kind::kBvAsr || kind == Kind::kBvUdiv;
    if (is_strict && select() == 1) throw Refused{kind == Kind::kBvAsr ? "non-free term" : kUnfreeText};
    const bool is_shift = kind == Kind::kBvLsl || kind == Kind::kBvLsr || kind == Kind::kBvAsr;
    define_pair(0, number(), is_shift ? 0 : 1, call_.width);
  }

  void judge_concat()
  {
    if (count_numerals() == 1) throw Refused{kUnfreeText};
    if (count_numerals() == 2) throw Refused{kUnnormalisedText};
    if (select() == 1) throw Refused{kUnfreeText};
    const auto [hw, lw, none] = call_.parameters;
    const unsigned long total = hw + lw;
    Integer high;
    mpz_fdiv_q_2exp(high, number(), lw);
    define_applied(0, Kind::kBvExtract, {total - 1, lw, total}, {&call_.value}, {total}, high, hw);
    define_applied(1, Kind::kBvExtract, {lw - 1, 0, total}, {&call_.value}, {total}, number(), lw);
  }

  void judge_extract()
  {
    if (is_numeral(0)) throw Refused{kUnnormalisedText};
    const auto [msb, lsb, w] = call_.parameters;
    Integer placed = reduce(number(), msb + 1 - lsb);
    mpz_mul_2exp(placed, placed, lsb);
    define_number(0, placed, std::max(w, msb + 1));
  }

  void judge_order()
  {
    const Kind kind = call_.calculator;
    const bool is_signed = kind == Kind::kBvSlt || kind == Kind::kBvSle;
    const bool is_strict = kind == Kind::kBvUlt || kind == Kind::kBvSlt;
    const unsigned long w = call_.parameters[0];
    if (count_numerals() == 2)
      throw Refused{is_signed ? kUnnormalisedText : is_strict ? "term was not free" : kUnsolvableText};
    if (count_numerals() == 0) {
      // If the two must differ, one of them is 1: the greater one, which is 0 if one bit has a sign.
      if (is_strict != want()) return define_pair(0, 0, 0, w);
      const std::size_t one = (want() ? 1U : 0U) ^ (is_signed && w == 1 ? 1U : 0U);
      return define_pair(0, one == 0 ? 1 : 0, one == 1 ? 1 : 0, w);
    }
    const Operand& c = arg(known());
    if (is_strict != want()) return define_number(1 - known(), c.number, w);
    // x must be strictly greater than c, or strictly less.
    const bool is_above = (known() == 0) == want();
    if (is_extreme(c.number, w, is_signed, is_above)) throw Refused{kUnsolvableText};
    define_number(1 - known(), add(c.number, is_above ? 1 : -1), w);
  }

  /// Whether no pattern of width w is above n, or below it.
  [[nodiscard]] static bool is_extreme(const Integer& n, unsigned long w, bool is_signed, bool is_above)
  {
    if (is_signed && w == 0) return false;
    if (is_signed) return n == (is_above ? subtract(power(w - 1), 1) : power(w - 1));
    return n == (is_above ? subtract(power(w), 1) : Integer());
  }

  const ExactCall& call_;
  ExactOutcome outcome_;
};

}  // namespace

ExactOutcome expect_exactly(const ExactCall& call) { return Judge(call).run(); }

std::string print_numeral(const Integer& n, unsigned long w)
{
  const Integer pattern = reduce(n, w);
  std::string text(mpz_sizeinbase(pattern, 16) + 2, '\0');
  mpz_get_str(text.data(), 16, pattern);
  text.resize(text.find('\0'));
  text += ':';
  text += std::to_string(w);
  return text;
}

std::string print_application(Kind kind, const std::array<unsigned long, kMaxArity>& parameters,
                              const std::vector<std::string>& args)
{
  std::string text = "(";
  text += get_operator_info(kind).smtlib_name;
  for (const unsigned long p : parameters) {
    text += ' ';
    text += std::to_string(p);
  }
  text += ';';
  for (const std::string& arg : args) {
    text += ' ';
    text += arg;
  }
  text += ')';
  return text;
}

Operand make_numeral_operand(const Integer& n, unsigned long w)
{
  const std::string text = print_numeral(n, w);
  return {Sort::kNumeral, text, text, w, reduce(n, w)};
}

}  // namespace lumo::test
