#include "lumo/terms/prime_modulus.h"

namespace lumo {

namespace {

bool is_prime(std::size_t n)
{
  for (std::size_t d = 3; d * d <= n; d += 2) {
    if (n % d == 0) return false;
  }
  return n % 2 != 0;
}

}  // namespace

PrimeModulus PrimeModulus::at_least(std::size_t least)
{
  while (!is_prime(least))
    ++least;
  return PrimeModulus(least);
}

}  // namespace lumo
