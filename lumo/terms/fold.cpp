#include "lumo/terms/fold.h"

#include <cassert>
#include <cstdlib>

#include "lumo/numbers/bvnumber.h"

namespace lumo {

namespace {

constinit const QNumber kFalseNumber(0);
constinit const QNumber kTrueNumber(1);

QNumber from_bool(bool b) { return {b ? 1L : 0L}; }

QNumber all_ones(unsigned long w) { return BVNumber::pow2(w) - QNumber(1); }

bool is_negative(const QNumber& a, unsigned long w) { return BVNumber::is_bit_set(a, w - 1); }

QNumber negate(const QNumber& a, unsigned long w)
{
  return a.sign() == 0 ? QNumber() : BVNumber::pow2(w) - a;
}

QNumber absolute(const QNumber& a, unsigned long w) { return is_negative(a, w) ? negate(a, w) : a; }

QNumber add(const QNumber& a, const QNumber& b, unsigned long w) { return BVNumber::reduce(a + b, w); }

QNumber subtract(const QNumber& a, const QNumber& b, unsigned long w) { return BVNumber::reduce(a - b, w); }

QNumber divide(const QNumber& a, const QNumber& b, unsigned long w)
{
  if (b.sign() == 0) return all_ones(w);
  QNumber q;
  QNumber r;
  a.divmod(b, q, r);
  return q;
}

QNumber remainder(const QNumber& a, const QNumber& b)
{
  if (b.sign() == 0) return a;
  QNumber q;
  QNumber r;
  a.divmod(b, q, r);
  return r;
}

// The signed operators divide magnitudes; dividing by zero then gives 1 for a negative dividend and -1 for
// others.
QNumber divide_signed(const QNumber& a, const QNumber& b, unsigned long w)
{
  const QNumber q = divide(absolute(a, w), absolute(b, w), w);
  return is_negative(a, w) == is_negative(b, w) ? q : negate(q, w);
}

QNumber remainder_signed(const QNumber& a, const QNumber& b, unsigned long w)
{
  const QNumber r = remainder(absolute(a, w), absolute(b, w));
  return is_negative(a, w) ? negate(r, w) : r;
}

/// The shift amount b as a word. Amounts above w become w, which shifts out every bit, too.
unsigned long clamp_shift(const QNumber& b, unsigned long w)
{
  long amount;
  if (!b.get_word(amount) || static_cast<unsigned long>(amount) > w) return w;
  return static_cast<unsigned long>(amount);
}

QNumber shift_left(const QNumber& a, unsigned long k, unsigned long w)
{
  // Drop the bits that would be shifted out first, so that no number is wider than w.
  return BVNumber::shift_left(BVNumber::reduce(a, w - k), k);
}

QNumber shift_right_signed(const QNumber& a, unsigned long k, unsigned long w)
{
  if (!is_negative(a, w)) return BVNumber::shift_right(a, k);
  return BVNumber::complement(BVNumber::shift_right(BVNumber::complement(a, w), k), w);
}

QNumber sign_extend(const QNumber& a, unsigned long k, unsigned long w)
{
  return is_negative(a, w) ? a + (BVNumber::pow2(w + k) - BVNumber::pow2(w)) : a;
}

bool is_less_signed(const QNumber& a, const QNumber& b, unsigned long w)
{
  const bool a_is_negative = is_negative(a, w);
  return a_is_negative == is_negative(b, w) ? a < b : a_is_negative;
}

}  // namespace

QNumber fold(const OperatorSymbol& s, const QNumber* const* args)
{
  const auto& [p0, p1, p2] = s.get_parameters();
  const QNumber& a = *args[0];
  const QNumber& b = s.get_arity() > 1 ? *args[1] : a;
  switch (s.get_kind()) {
    case Kind::kNot:
      return QNumber(1) - a;
    case Kind::kAnd:
      return from_bool(a.sign() != 0 && b.sign() != 0);
    case Kind::kOr:
      return from_bool(a.sign() != 0 || b.sign() != 0);
    case Kind::kIff:
    case Kind::kEq:
    case Kind::kBvComp:
      return from_bool(a == b);
    case Kind::kIte:
      return a.sign() != 0 ? b : *args[2];
    case Kind::kBvNot:
      return BVNumber::complement(a, p0);
    case Kind::kBvNeg:
      return negate(a, p0);
    case Kind::kBvRotateLeft:
      return BVNumber::rotate_left(a, p0 % p1, p1);
    case Kind::kBvRotateRight:
      return BVNumber::rotate_left(a, p1 - p0 % p1, p1);
    case Kind::kBvAnd:
      return BVNumber::bit_and(a, b);
    case Kind::kBvOr:
      return BVNumber::bit_or(a, b);
    case Kind::kBvXor:
      return BVNumber::bit_xor(a, b);
    case Kind::kBvConcat:
      return BVNumber::concatenate(a, b, p1);
    case Kind::kBvExtract:
      return BVNumber::extract(a, p1, p0 - p1 + 1);
    case Kind::kBvZeroExtend:
      return a;
    case Kind::kBvSignExtend:
      return sign_extend(a, p0, p1);
    case Kind::kBvLsl:
      return shift_left(a, clamp_shift(b, p0), p0);
    case Kind::kBvLsr:
      return BVNumber::shift_right(a, clamp_shift(b, p0));
    case Kind::kBvAsr:
      return shift_right_signed(a, clamp_shift(b, p0), p0);
    case Kind::kBvAdd:
      return add(a, b, p0);
    case Kind::kBvSub:
      return subtract(a, b, p0);
    case Kind::kBvMul:
      return BVNumber::reduce(a * b, p0);
    case Kind::kBvUdiv:
      return divide(a, b, p0);
    case Kind::kBvSdiv:
      return divide_signed(a, b, p0);
    case Kind::kBvUrem:
      return remainder(a, b);
    case Kind::kBvSrem:
      return remainder_signed(a, b, p0);
    case Kind::kBvUlt:
      return from_bool(a < b);
    case Kind::kBvUle:
      return from_bool(a <= b);
    case Kind::kBvSlt:
      return from_bool(is_less_signed(a, b, p0));
    case Kind::kBvSle:
      return from_bool(!is_less_signed(b, a, p0));
    case Kind::kConstant:
    case Kind::kTrue:
    case Kind::kFalse:
    case Kind::kNumeral:
      break;
  }
  assert(false && "an operator symbol has one of the 32 operator kinds");
  std::abort();
}

const QNumber* find_value_number(const TermManager& mgr, const Term* t)
{
  const Symbol* s = t->get_symbol();
  if (s == mgr.get_true_symbol()) return &kTrueNumber;
  if (s == mgr.get_false_symbol()) return &kFalseNumber;
  return mgr.find_number(s);
}

bool is_value(const TermManager& mgr, const Term* t) { return find_value_number(mgr, t) != nullptr; }

bool get_value_number(const TermManager& mgr, const Term* t, QNumber& out)
{
  const QNumber* number = find_value_number(mgr, t);
  if (number == nullptr) return false;
  out = *number;
  return true;
}

const Term* make_value(TermManager& mgr, const QNumber& number, const DataType* type)
{
  if (!type->is_bool()) return mgr.make_bv_number(number, type->get_width());
  return number.sign() != 0 ? mgr.make_true() : mgr.make_false();
}

}  // namespace lumo
