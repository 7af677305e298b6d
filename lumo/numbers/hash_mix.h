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

}  // namespace lumo

#endif
