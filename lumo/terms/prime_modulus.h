#ifndef LUMO_TERMS_PRIME_MODULUS_H
#define LUMO_TERMS_PRIME_MODULUS_H

#include <cstddef>
#include <cstdint>

namespace lumo {

/// Computes remainders modulo a prime by multiplication, since each lookup in a table waits for one.
///
/// With m = floor(2^64 / p), floor(n * m / 2^64) is the quotient of n by p or one less, so one
/// correction makes the remainder exact (T. Granlund and P. L. Montgomery, "Division by invariant integers using
/// multiplication", PLDI 1994).
class PrimeModulus
{
 public:
  PrimeModulus() = default;
  /// The smallest prime that is at least `least`; precondition: `least` >= 3.
  [[nodiscard]] static PrimeModulus at_least(std::size_t least);

  [[nodiscard]] std::size_t get() const { return prime_; }
  /// n modulo the prime. Precondition: made by `at_least`.
  [[nodiscard]] std::size_t reduce(std::uint64_t n) const
  {
    __extension__ using Product = unsigned __int128;
    const auto quotient = static_cast<std::uint64_t>((static_cast<Product>(n) * reciprocal_) >> 64U);
    const std::uint64_t remainder = n - quotient * prime_;
    return remainder >= prime_ ? remainder - prime_ : remainder;
  }

 private:
  explicit PrimeModulus(std::uint64_t prime) : prime_(prime), reciprocal_(~std::uint64_t{0} / prime) {}

  std::uint64_t prime_ = 0;
  std::uint64_t reciprocal_ = 0;
};

}  // namespace lumo

#endif
