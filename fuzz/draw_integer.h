#ifndef LUMO_FUZZ_DRAW_INTEGER_H
#define LUMO_FUZZ_DRAW_INTEGER_H

#include <array>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <vector>

#include "tests/support/gmp_number.h"

namespace lumo::fuzz {

/// An integer that is not negative, of at most that many bits; often near a power of two.
inline test::Integer draw_natural(FuzzedDataProvider& bytes, unsigned long max_bits)
{
  test::Integer result;
  if (bytes.ConsumeBool()) {
    const auto exponent = bytes.ConsumeIntegralInRange<unsigned long>(0, max_bits);
    result = test::Integer::power(exponent, bytes.ConsumeIntegralInRange<int>(-3, 3));
    mpz_abs(result, result);
  } else {
    const auto length = bytes.ConsumeIntegralInRange<std::size_t>(0, max_bits / 8 + 1);
    const auto digits = bytes.ConsumeBytes<std::uint8_t>(length);
    mpz_import(result, digits.size(), 1, 1, 0, 0, digits.data());
  }
  mpz_fdiv_r_2exp(result, result, max_bits);
  return result;
}

/// The same with a sign.
inline test::Integer draw_integer(FuzzedDataProvider& bytes, unsigned long max_bits)
{
  test::Integer result = draw_natural(bytes, max_bits);
  if (bytes.ConsumeBool()) mpz_neg(result, result);
  return result;
}

/// Any word; often near a power of two, so that sums and products come close to a limit.
inline long draw_word(FuzzedDataProvider& bytes)
{
  if (bytes.ConsumeBool()) return bytes.ConsumeIntegral<long>();
  constexpr std::array<long, 8> kOffsets = {0, 0, 0, 0, 1, -1, 2, -2};
  const unsigned long power = 1UL << bytes.ConsumeIntegralInRange<unsigned>(0, 63);
  const unsigned long n = power + static_cast<unsigned long>(bytes.PickValueInArray(kOffsets));
  return static_cast<long>(bytes.ConsumeBool() ? 0 - n : n);
}

}  // namespace lumo::fuzz

#endif
