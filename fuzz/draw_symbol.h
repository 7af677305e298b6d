#ifndef LUMO_FUZZ_DRAW_SYMBOL_H
#define LUMO_FUZZ_DRAW_SYMBOL_H

#include <array>
#include <fuzzer/FuzzedDataProvider.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/make_operator.h"

namespace lumo::fuzz {

/// A width from 1 to the limit, often a limit of number code.
inline unsigned long draw_width(FuzzedDataProvider& bytes, unsigned long max_width)
{
  constexpr std::array<unsigned long, 16> kTurns = {1,  2,  3,  4,  7,  8,  31,  32,
                                                    33, 61, 62, 63, 64, 65, 127, 128};
  const unsigned long turn = bytes.PickValueInArray(kTurns);
  return turn <= max_width ? turn : bytes.ConsumeIntegralInRange<unsigned long>(1, max_width);
}

/// Parameters of an operator whose sorts have at most the given number of bits, which is at least 2.
inline Parameters draw_parameters(FuzzedDataProvider& bytes, Kind kind, unsigned long max_width)
{
  const auto number = [&bytes](unsigned long low, unsigned long high) {
    return bytes.ConsumeIntegralInRange<unsigned long>(low, high);
  };
  const unsigned long w = draw_width(bytes, max_width);
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      return {};
    case SortRule::kIte:
      return {bytes.ConsumeBool() ? w : 0};
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return {w};
    case SortRule::kConcat: {
      const unsigned long high = draw_width(bytes, max_width - 1);
      return {high, number(1, max_width - high)};
    }
    case SortRule::kExtract: {
      const unsigned long msb = number(0, w - 1);
      return {msb, number(0, msb), w};
    }
    case SortRule::kRotate:
      return {number(0, 2 * w + 1), w};
    case SortRule::kExtend:
      return {number(0, max_width - w), w};
  }
  return {};
}

/// An operator symbol over sorts of at most that many bits.
inline const OperatorSymbol& draw_symbol(FuzzedDataProvider& bytes, TermManager& mgr, unsigned long max_width)
{
  const auto kind = static_cast<Kind>(bytes.ConsumeIntegralInRange<std::size_t>(0, kNumOperators - 1));
  return as_operator(test::make_operator(mgr, kind, draw_parameters(bytes, kind, max_width)));
}

}  // namespace lumo::fuzz

#endif
