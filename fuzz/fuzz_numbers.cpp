// Sequences of operations on a few numbers, each operand and output any of them, against GMP's rational numbers.
// After each operation every number has its value, in the form that the rules for small and big require.

#include <array>
#include <climits>
#include <sstream>
#include <string>
#include <utility>

#include "fuzz/draw_integer.h"
#include "fuzz/target.h"
#include "lumo/numbers/bvnumber.h"
#include "lumo/numbers/gcd.h"
#include "lumo/numbers/qnumber.h"
#include "tests/numbers/form_model.h"
#include "tests/numbers/number_forms.h"
#include "tests/support/gmp_number.h"

namespace lumo::fuzz {
namespace {

using test::fits_part;
using test::Form;
using test::FormModel;
using test::Integer;
using test::Rational;

/// A number and its expected value and form.
struct Cell
{
  QNumber number;
  Rational value;
  Form form = Form::kSmall;

  [[nodiscard]] bool is_integer() const { return mpz_cmp_ui(value.den(), 1) == 0; }
  [[nodiscard]] bool is_zero() const { return mpz_sgn(value.num()) == 0; }
  [[nodiscard]] bool is_natural() const { return is_integer() && mpz_sgn(value.num()) >= 0; }
  [[nodiscard]] bool is_small() const { return form == Form::kSmall; }
  /// Replaces the number.
  void become(QNumber result, const Rational& expected, Form expected_form)
  {
    number = std::move(result);
    value = expected;
    form = expected_form;
  }
};

enum class Operation : std::uint8_t
{
  kWord,
  kUnsigned,
  kWords,
  kIntegers,
  kCopy,
  kMove,
  kSwap,
  kCompound,
  kBinary,
  kDivmod,
  kQuery,
  kCompare,
  kBits,
  kTwoPatterns,
  kWordHelpers,
  kMaxValue = kWordHelpers,
};

enum class Arithmetic : std::uint8_t
{
  kAdd,
  kSubtract,
  kMultiply,
  kMaxValue = kMultiply,
};

Form shortest_form(const Rational& value)
{
  return fits_part(value.num()) && fits_part(value.den()) ? Form::kSmall : Form::kBig;
}

void judge(Arithmetic op, Rational& result, const Rational& x, const Rational& y)
{
  switch (op) {
    case Arithmetic::kAdd:
      mpq_add(result, x, y);
      return;
    case Arithmetic::kSubtract:
      mpq_sub(result, x, y);
      return;
    case Arithmetic::kMultiply:
      mpq_mul(result, x, y);
      return;
  }
}

Form predict(Arithmetic op, const Cell& x, const Cell& y)
{
  if (op == Arithmetic::kMultiply && y.is_small() && y.is_zero()) return Form::kSmall;
  if (!x.is_small() || !y.is_small()) return Form::kBig;
  switch (op) {
    case Arithmetic::kAdd:
      return FormModel::sum(x.value, y.value);
    case Arithmetic::kSubtract:
      return FormModel::difference(x.value, y.value);
    case Arithmetic::kMultiply:
      return FormModel::product(x.value, y.value);
  }
  return Form::kBig;
}

void apply(Arithmetic op, QNumber& x, const QNumber& y)
{
  switch (op) {
    case Arithmetic::kAdd:
      x += y;
      return;
    case Arithmetic::kSubtract:
      x -= y;
      return;
    case Arithmetic::kMultiply:
      x *= y;
      return;
  }
}

QNumber combine(Arithmetic op, const QNumber& x, const QNumber& y)
{
  switch (op) {
    case Arithmetic::kAdd:
      return x + y;
    case Arithmetic::kSubtract:
      return x - y;
    case Arithmetic::kMultiply:
      return x * y;
  }
  return {};
}

class Machine
{
 public:
  Machine(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void run()
  {
    while (bytes_.remaining_bytes() > 0) {
      const auto operation = bytes_.ConsumeEnum<Operation>();
      step(operation);
      for (Cell& cell : cells_)
        check_cell(cell, operation);
    }
  }

 private:
  static constexpr unsigned long kMaxBits = 1500;
  static constexpr unsigned long kLoadedBits = 200;

  Cell& pick() { return cells_[bytes_.ConsumeIntegralInRange<std::size_t>(0, cells_.size() - 1)]; }

  void step(Operation operation)
  {
    switch (operation) {
      case Operation::kWord:
      case Operation::kUnsigned:
      case Operation::kWords:
      case Operation::kIntegers:
        return load(operation);
      case Operation::kCopy:
        return copy(pick(), pick());
      case Operation::kMove:
        return move(pick(), pick());
      case Operation::kSwap:
        return swap(pick(), pick());
      case Operation::kCompound:
        return compound(bytes_.ConsumeEnum<Arithmetic>(), pick(), pick());
      case Operation::kBinary:
        return binary(bytes_.ConsumeEnum<Arithmetic>(), pick(), pick(), pick());
      case Operation::kDivmod:
        return divide(pick(), pick(), pick(), pick());
      case Operation::kQuery:
        return query(pick());
      case Operation::kCompare:
        return compare(pick(), pick());
      case Operation::kBits:
        return use_bits(pick(), pick());
      case Operation::kTwoPatterns:
        return combine_patterns(pick(), pick(), pick());
      case Operation::kWordHelpers:
        return use_words();
    }
  }

  void load(Operation operation)
  {
    Cell& cell = pick();
    if (operation == Operation::kWord) {
      const auto n = draw_word(bytes_);
      cell.become(QNumber(n), Rational(n), n == LONG_MIN ? Form::kBig : Form::kSmall);
    } else if (operation == Operation::kUnsigned) {
      const auto n = static_cast<unsigned long>(draw_word(bytes_));
      Integer value;
      mpz_set_ui(value, n);
      cell.become(QNumber(n), Rational(value, Integer(1)), n > LONG_MAX ? Form::kBig : Form::kSmall);
    } else if (operation == Operation::kWords) {
      const auto num = draw_word(bytes_);
      const auto den = draw_word(bytes_);
      if (den == 0) return;
      const Rational value{Integer(num), Integer(den)};
      cell.become(QNumber(num, den), value, shortest_form(value));
    } else {
      const Integer num = draw_integer(bytes_, kLoadedBits);
      const Integer den = draw_integer(bytes_, kLoadedBits);
      if (den.sign() == 0) return;
      const bool is_small = mpz_fits_sint_p(num) != 0 && mpz_fits_sint_p(den) != 0;
      cell.become(QNumber(num, den), Rational(num, den), is_small ? Form::kSmall : Form::kBig);
    }
  }

  static void copy(Cell& target, const Cell& source)
  {
    const QNumber fresh(source.number);
    check(test::is_stored_as(fresh, source.value, source.form), [] { return "a copy differs"; });
    target.number = source.number;
    target.value = source.value;
    if (!source.is_small()) target.form = Form::kBig;
  }

  static void move(Cell& target, Cell& source)
  {
    target.number = std::move(source.number);
    if (&target == &source) return;
    target.value = source.value;
    target.form = source.form;
    source.value = Rational();
    source.form = Form::kSmall;
  }

  static void swap(Cell& x, Cell& y)
  {
    x.number.swap(y.number);
    const Cell saved = x;
    x.value = y.value;
    x.form = y.form;
    y.value = saved.value;
    y.form = saved.form;
  }

  static void compound(Arithmetic op, Cell& x, const Cell& y)
  {
    const Form form = predict(op, x, y);
    Rational value;
    judge(op, value, x.value, y.value);
    apply(op, x.number, y.number);
    x.value = value;
    x.form = form;
  }

  static void binary(Arithmetic op, Cell& result, const Cell& x, const Cell& y)
  {
    const Form form = predict(op, x, y);
    Rational value;
    judge(op, value, x.value, y.value);
    result.become(combine(op, x.number, y.number), value, form);
  }

  static void divide(const Cell& x, const Cell& d, Cell& q, Cell& r)
  {
    if (!x.is_integer() || !d.is_integer() || d.is_zero()) return;
    const Integer one(1);
    Integer quotient;
    Integer remainder;
    const bool floors = !x.is_small() || !d.is_small();
    (floors ? mpz_fdiv_qr : mpz_tdiv_qr)(quotient, remainder, x.value.num(), d.value.num());
    x.number.divmod(d.number, q.number, r.number);
    q.value.set(quotient, one);
    r.value.set(remainder, one);
    if (!floors) return;
    q.form = Form::kBig;
    r.form = Form::kBig;
  }

  static void query(const Cell& cell)
  {
    const QNumber& q = cell.number;
    long word = 17;
    const bool is_word = cell.is_integer() && fits_part(cell.value.num());
    Integer scratch;
    std::string text = Integer(cell.value.num()).to_string();
    if (!cell.is_integer()) text += "/" + Integer(cell.value.den()).to_string();

    check(q.sign() == mpz_sgn(cell.value.num()), [] { return "the sign is wrong"; });
    check(q.is_int() == cell.is_integer(), [] { return "is_int is wrong"; });
    check(cell.is_small() || q.is_int_big() == cell.is_integer(), [] { return "is_int_big is wrong"; });
    check(q.get_word(word) == is_word, [] { return "get_word is wrong"; });
    check(word == (is_word ? mpz_get_si(cell.value.num()) : 17),
          [] { return "get_word gives another word"; });
    check(mpz_cmp(q.view_numerator(scratch), cell.value.num()) == 0, [] { return "another numerator"; });
    check(q.to_string() == text, [&] { return q.to_string() + " is not " + text; });
    const QNumber big = test::make(cell.value, Form::kBig);
    check(q.hash() == big.hash() && q == big && big == q, [] { return "both forms must be equal"; });
  }

  static void compare(const Cell& x, const Cell& y)
  {
    const int order = mpq_cmp(x.value, y.value);
    const QNumber& a = x.number;
    const QNumber& b = y.number;
    check((a < b) == (order < 0) && (a > b) == (order > 0), [] { return "a strict order is wrong"; });
    check((a <= b) == (order <= 0) && (a >= b) == (order >= 0), [] { return "an order is wrong"; });
    check((a == b) == (order == 0) && (a != b) == (order != 0), [] { return "an equality is wrong"; });
    check(order != 0 || a.hash() == b.hash(), [] { return "equal numbers hash differently"; });
  }

  /// The helpers on one pattern; the operand is an integer.
  void use_bits(Cell& result, const Cell& x)
  {
    const auto choice = bytes_.ConsumeIntegralInRange<int>(0, 5);
    const auto count = bytes_.ConsumeIntegralInRange<unsigned long>(0, 300);
    if (!x.is_integer() || (choice != 0 && !x.is_natural())) return;
    Integer value(x.value.num());
    QNumber number;
    if (choice == 0) {
      mpz_fdiv_r_2exp(value, value, count);
      number = BVNumber::reduce(x.number, count);
    } else if (choice == 1) {
      mpz_mul_2exp(value, value, count);
      number = BVNumber::shift_left(x.number, count);
    } else if (choice == 2) {
      mpz_fdiv_q_2exp(value, value, count);
      number = BVNumber::shift_right(x.number, count);
    } else if (choice == 3) {
      value = Integer::power(count);
      number = BVNumber::pow2(count);
    } else if (choice == 4) {
      number = BVNumber::from_integer(value);
    } else {
      check(BVNumber::is_bit_set(x.number, count) == (mpz_tstbit(value, count) != 0),
            [] { return "a bit is wrong"; });
      return;
    }
    become_shortest(result, std::move(number), value);
  }

  void combine_patterns(Cell& result, const Cell& x, const Cell& y)
  {
    const auto choice = bytes_.ConsumeIntegralInRange<int>(0, 2);
    if (!x.is_natural() || !y.is_natural()) return;
    Integer value;
    if (choice == 0) {
      mpz_and(value, x.value.num(), y.value.num());
      become_shortest(result, BVNumber::bit_and(x.number, y.number), value);
    } else if (choice == 1) {
      mpz_ior(value, x.value.num(), y.value.num());
      become_shortest(result, BVNumber::bit_or(x.number, y.number), value);
    } else {
      mpz_xor(value, x.value.num(), y.value.num());
      become_shortest(result, BVNumber::bit_xor(x.number, y.number), value);
    }
  }

  static void become_shortest(Cell& result, QNumber number, const Integer& value)
  {
    const Rational expected(value, Integer(1));
    result.become(std::move(number), expected, shortest_form(expected));
  }

  void use_words()
  {
    const auto a = draw_word(bytes_);
    const auto b = draw_word(bytes_);
    const Integer x(a);
    const Integer y(b);
    Integer exact;
    long result = 17;

    mpz_mul(exact, x, y);
    const bool product_fits = fits_part(exact);
    check(QNumber::mul_overflow(result, a, b) == !product_fits, [] { return "mul_overflow is wrong"; });
    check(result == (product_fits ? mpz_get_si(exact) : 17), [] { return "another product"; });
    result = 17;
    if (b != 0) {
      mpz_tdiv_q(exact, x, y);
      const bool quotient_fits = mpz_fits_slong_p(exact) != 0;
      check(QNumber::div_overflow(result, a, b) == !quotient_fits, [] { return "div_overflow is wrong"; });
      check(result == (quotient_fits ? mpz_get_si(exact) : 17), [] { return "another quotient"; });
    }
    const auto is_limit = [](long n) { return n == 0 || n == LONG_MIN; };
    if (!is_limit(a) || !is_limit(b) || (a == 0 && b == 0)) {
      mpz_gcd(exact, x, y);
      check(exact == Integer(gcd(a, b)), [] { return "another greatest common divisor"; });
    }
  }

  static void check_cell(Cell& cell, Operation operation)
  {
    check(test::is_stored_as(cell.number, cell.value, cell.form), [&] {
      std::ostringstream text;
      text << "after operation " << static_cast<int>(operation) << ": got " << cell.number.to_string() << " ("
           << test::form_of(cell.number) << "), expected " << cell.value << " (" << cell.form << ')';
      return text.str();
    });
    if (mpz_sizeinbase(cell.value.num(), 2) > kMaxBits || mpz_sizeinbase(cell.value.den(), 2) > kMaxBits)
      cell = Cell();
  }

  FuzzedDataProvider bytes_;
  std::array<Cell, 4> cells_;
};

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size) { Machine(data, size).run(); }

}  // namespace lumo::fuzz
