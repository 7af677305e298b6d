#include "tests/terms/fold_reference.h"

#include <algorithm>
#include <array>

namespace lumo::test {

namespace {

using Word = unsigned long;

Word mask(Word w) { return (1UL << w) - 1; }

Word bit(Word a, Word i) { return (a >> i) & 1; }

/// The pattern read in two's complement.
long as_signed(Word a, Word w) { return static_cast<long>(a) - static_cast<long>(bit(a, w - 1) << w); }

Word as_pattern(long n, Word w) { return static_cast<Word>(n) & mask(w); }

Word rotate_left_once(Word a, Word w) { return w == 1 ? a : ((a & mask(w - 1)) << 1) | bit(a, w - 1); }

Word rotate_left(Word a, Word k, Word w)
{
  for (; k > 0; --k)
    a = rotate_left_once(a, w);
  return a;
}

Word rotate_right(Word a, Word k, Word w)
{
  for (; k > 0; --k)
    a = w == 1 ? a : (bit(a, 0) << (w - 1)) | (a >> 1);
  return a;
}

/// Times two, b times over.
Word shift_left(Word a, Word b, Word w)
{
  for (b = std::min(b, w); b > 0; --b)
    a = (a + a) & mask(w);
  return a;
}

/// Halved toward minus infinity, b times over.
Word shift_right_signed(Word a, Word b, Word w)
{
  long n = as_signed(a, w);
  for (b = std::min(b, w); b > 0; --b)
    n = (n - static_cast<long>(static_cast<Word>(n) & 1)) / 2;
  return as_pattern(n, w);
}

Word divide_signed(Word a, Word b, Word w)
{
  if (b == 0) return as_signed(a, w) < 0 ? 1 : mask(w);
  return as_pattern(as_signed(a, w) / as_signed(b, w), w);
}

Word remainder_signed(Word a, Word b, Word w)
{
  return b == 0 ? a : as_pattern(as_signed(a, w) % as_signed(b, w), w);
}

Word extract(Word a, Word msb, Word lsb)
{
  Word result = 0;
  for (Word i = lsb; i <= msb; ++i)
    result |= bit(a, i) << (i - lsb);
  return result;
}

struct FoldRow
{
  Kind kind;
  Word (*compute)(const Parameters& p, const Word* a);
};

constexpr std::array<FoldRow, 32> kReference = {{
    {Kind::kNot, [](const Parameters&, const Word* a) -> Word { return a[0] == 0 ? 1 : 0; }},
    {Kind::kAnd, [](const Parameters&, const Word* a) { return a[0] & a[1]; }},
    {Kind::kOr, [](const Parameters&, const Word* a) { return a[0] | a[1]; }},
    {Kind::kIff, [](const Parameters&, const Word* a) -> Word { return a[0] == a[1] ? 1 : 0; }},
    {Kind::kIte, [](const Parameters&, const Word* a) { return a[0] == 1 ? a[1] : a[2]; }},
    {Kind::kEq, [](const Parameters&, const Word* a) -> Word { return a[0] == a[1] ? 1 : 0; }},
    {Kind::kBvNot, [](const Parameters& p, const Word* a) { return ~a[0] & mask(p[0]); }},
    {Kind::kBvNeg, [](const Parameters& p, const Word* a) { return (0 - a[0]) & mask(p[0]); }},
    {Kind::kBvRotateLeft, [](const Parameters& p, const Word* a) { return rotate_left(a[0], p[0], p[1]); }},
    {Kind::kBvRotateRight, [](const Parameters& p, const Word* a) { return rotate_right(a[0], p[0], p[1]); }},
    {Kind::kBvAnd, [](const Parameters&, const Word* a) { return a[0] & a[1]; }},
    {Kind::kBvOr, [](const Parameters&, const Word* a) { return a[0] | a[1]; }},
    {Kind::kBvXor, [](const Parameters&, const Word* a) { return a[0] ^ a[1]; }},
    {Kind::kBvConcat, [](const Parameters& p, const Word* a) { return (a[0] << p[1]) | a[1]; }},
    {Kind::kBvExtract, [](const Parameters& p, const Word* a) { return extract(a[0], p[0], p[1]); }},
    {Kind::kBvZeroExtend, [](const Parameters&, const Word* a) { return a[0]; }},
    {Kind::kBvSignExtend,
     [](const Parameters& p, const Word* a) { return as_pattern(as_signed(a[0], p[1]), p[0] + p[1]); }},
    {Kind::kBvLsl, [](const Parameters& p, const Word* a) { return shift_left(a[0], a[1], p[0]); }},
    {Kind::kBvLsr, [](const Parameters& p, const Word* a) { return a[1] >= p[0] ? 0 : a[0] >> a[1]; }},
    {Kind::kBvAsr, [](const Parameters& p, const Word* a) { return shift_right_signed(a[0], a[1], p[0]); }},
    {Kind::kBvAdd, [](const Parameters& p, const Word* a) { return (a[0] + a[1]) & mask(p[0]); }},
    {Kind::kBvSub, [](const Parameters& p, const Word* a) { return (a[0] - a[1]) & mask(p[0]); }},
    {Kind::kBvMul, [](const Parameters& p, const Word* a) { return (a[0] * a[1]) & mask(p[0]); }},
    {Kind::kBvUdiv, [](const Parameters& p, const Word* a) { return a[1] == 0 ? mask(p[0]) : a[0] / a[1]; }},
    {Kind::kBvSdiv, [](const Parameters& p, const Word* a) { return divide_signed(a[0], a[1], p[0]); }},
    {Kind::kBvUrem, [](const Parameters&, const Word* a) { return a[1] == 0 ? a[0] : a[0] % a[1]; }},
    {Kind::kBvSrem, [](const Parameters& p, const Word* a) { return remainder_signed(a[0], a[1], p[0]); }},
    {Kind::kBvUlt, [](const Parameters&, const Word* a) -> Word { return a[0] < a[1] ? 1 : 0; }},
    {Kind::kBvUle, [](const Parameters&, const Word* a) -> Word { return a[0] <= a[1] ? 1 : 0; }},
    {Kind::kBvSlt,
     [](const Parameters& p,
        const Word* a) -> Word { return as_signed(a[0], p[0]) < as_signed(a[1], p[0]) ? 1 : 0; }},
    {Kind::kBvSle,
     [](const Parameters& p,
        const Word* a) -> Word { return as_signed(a[0], p[0]) <= as_signed(a[1], p[0]) ? 1 : 0; }},
    {Kind::kBvComp, [](const Parameters&, const Word* a) -> Word { return a[0] == a[1] ? 1 : 0; }},
}};

constexpr bool fold_rows_are_in_order()
{
  for (std::size_t i = 0; i < kReference.size(); ++i) {
    if (kReference[i].kind != static_cast<Kind>(i)) return false;
  }
  return true;
}
static_assert(fold_rows_are_in_order());

}  // namespace

unsigned long compute_reference(Kind kind, const Parameters& parameters, const unsigned long* args)
{
  return kReference[static_cast<std::size_t>(kind)].compute(parameters, args);
}

}  // namespace lumo::test
