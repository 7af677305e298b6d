#ifndef LUMO_NUMBERS_HASH_MIX_H
#define LUMO_NUMBERS_HASH_MIX_H

#include <cstddef>
#include <cstdint>

namespace lumo {

/// Adds a word to a hash and spreads its bits over the whole of it (finaliser of splitmix64, S. Vigna).
[[nodiscard]] inline std::size_t mix_hash(std::size_t seed, std::size_t word)
{
  std::size_t z = seed + word + 0x9e3779b97f4a7c15UL;
  z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9UL;
  z = (z ^ (z >> 27U)) * 0x94d049bb133111ebUL;
  return z ^ (z >> 31U);
}

/// The same for an address.
[[nodiscard]] inline std::size_t mix_hash(std::size_t seed, const void* address)
{
  return mix_hash(seed, reinterpret_cast<std::uintptr_t>(address));
}

/// Folds the product of two words. Both halves of the product together depend on every bit of the factors, so one
/// multiplication mixes two words; a factor of 0 makes the result 0, so callers combine words with odd constants first.
[[nodiscard]] inline std::uint64_t multiply_and_fold(std::uint64_t a, std::uint64_t b)
{
  __extension__ using Product = unsigned __int128;
  const Product product = Product{a} * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
}

// Odd words without a pattern: the fractional parts of the golden ratio and of the square root of 2
inline constexpr std::uint64_t kHashFirst = 0x9e3779b97f4a7c15UL;
inline constexpr std::uint64_t kHashSecond = 0x6a09e667f3bcc909UL;

}  // namespace lumo

#endif
