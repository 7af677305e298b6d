#ifndef LUMO_TESTS_SUPPORT_RANDOM_H
#define LUMO_TESTS_SUPPORT_RANDOM_H

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ostream>

#include <gmp.h>

namespace lumo::test {

/// A reproducible source of test inputs that prefers values at which number code often fails.
///
/// All randomness of a run follows from one seed: a fixed one, or the value of the environment variable
/// LUMO_TEST_SEED (decimal, 0x... or 0...). Numbers are drawn skewed: their bit length first, so that
/// short and long ones are equally frequent; then uniform bits, runs of ones and zeros, or a word limit give
/// or take a little. Printing a generator prints what reproduces it:
///
///     Random random;
///     SCOPED_TRACE(random);
class Random
{
 public:
  static constexpr std::uint64_t kDefaultSeed = 20240229;

  /// The generator of the run's seed; different streams yield independent sequences.
  explicit Random(std::uint64_t stream = 0) : Random(run_seed(), stream) {}
  Random(std::uint64_t seed, std::uint64_t stream) : seed_(seed), state_(seed + stream * 0xd1342543de82ef95U)
  {
    bits();
  }

  /// A generator whose first numbers depend on two bytes each, so a fuzzer can change one decision and
  /// leave the others unchanged. When the bytes are used up, it continues like other generators. The bytes must
  /// outlive it.
  [[nodiscard]] static Random from_bytes(const std::uint8_t* bytes, std::size_t size)
  {
    Random random(kDefaultSeed, 0);
    random.next_byte_ = bytes;
    random.num_bytes_ = size;
    return random;
  }

  [[nodiscard]] std::uint64_t seed() const { return seed_; }
  [[nodiscard]] static std::uint64_t run_seed()
  {
    static const std::uint64_t chosen = [] {
      const char* text = std::getenv("LUMO_TEST_SEED");  // NOLINT(concurrency-mt-unsafe)
      return text == nullptr ? kDefaultSeed : std::strtoull(text, nullptr, 0);
    }();
    return chosen;
  }
  friend std::ostream& operator<<(std::ostream& out, const Random& random)
  {
    return out << "LUMO_TEST_SEED=" << random.seed_;
  }

  /// 64 uniform bits (S. Vigna, splitmix64).
  std::uint64_t bits()
  {
    if (num_bytes_ >= 2) {
      state_ = std::uint64_t{next_byte_[0]} << 8U | next_byte_[1];
      next_byte_ += 2;
      num_bytes_ -= 2;
    }
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31U);
  }
  /// Uniform in [0, n); n is not 0.
  std::size_t index(std::size_t n) { return static_cast<std::size_t>(bits() % n); }
  /// Uniform in [low, high].
  long between(long low, long high)
  {
    const unsigned long span = static_cast<unsigned long>(high) - static_cast<unsigned long>(low);
    const unsigned long offset = span == ULONG_MAX ? bits() : bits() % (span + 1);
    return static_cast<long>(static_cast<unsigned long>(low) + offset);
  }
  bool flip() { return (bits() >> 63U) != 0; }
  /// True once in n times.
  bool one_in(std::size_t n) { return index(n) == 0; }
  template <class Container>
  const auto& pick(const Container& container)
  {
    return container[index(container.size())];
  }

  /// A skewed pattern of the given width, 1 to 64.
  unsigned long pattern(unsigned width = 64)
  {
    const unsigned long mask = width == 64 ? ~0UL : (1UL << width) - 1;
    switch (index(4)) {
      case 0:
        return runs() & mask;
      case 1:
        return near_limit() & mask;
      default: {
        const unsigned length = static_cast<unsigned>(index(width + 1));
        return length == 0 ? 0 : (bits() | (1UL << 63U)) >> (64 - length);
      }
    }
  }
  /// A skewed signed word; any word may come.
  long any_word()
  {
    const auto magnitude = static_cast<long>(pattern(64));
    return magnitude < 0 || flip() ? magnitude : -magnitude;
  }
  /// A skewed signed word other than the most negative one.
  long word()
  {
    const long drawn = any_word();
    return drawn == LONG_MIN ? LONG_MAX : drawn;
  }

  /// A skewed integer of at most max_bits bits, not negative.
  void natural(mpz_ptr out, unsigned long max_bits)
  {
    const unsigned long length = index(max_bits + 1);
    switch (index(4)) {
      case 0:
        fill(out, length, [this] { return runs(); });
        break;
      case 1:
        near_power(out, length, max_bits);
        break;
      default:
        fill(out, length, [this] { return bits(); });
        break;
    }
  }
  /// The same with a random sign.
  void integer(mpz_ptr out, unsigned long max_bits)
  {
    natural(out, max_bits);
    if (flip()) mpz_neg(out, out);
  }

 private:
  /// A pattern of a few runs of ones and zeros.
  unsigned long runs()
  {
    unsigned long result = 0;
    for (std::size_t edges = 1 + index(4); edges > 0; --edges)
      result ^= ~0UL >> index(64);
    return result;
  }
  /// A machine limit, plus or minus at most two.
  unsigned long near_limit()
  {
    static constexpr std::array<unsigned, 8> exponents = {15, 16, 31, 32, 62, 63, 63, 64};
    const unsigned exponent = pick(exponents);
    const unsigned long limit = exponent == 64 ? 0 : 1UL << exponent;
    return limit + static_cast<unsigned long>(between(-2, 2));
  }
  /// A power of two of `length` bits, plus or minus at most two.
  void near_power(mpz_ptr out, unsigned long length, unsigned long max_bits)
  {
    const long offset = between(-2, 2);
    mpz_set_ui(out, 1);
    mpz_mul_2exp(out, out, length);
    if (offset < 0) {
      mpz_sub_ui(out, out, static_cast<unsigned long>(-offset));
    } else {
      mpz_add_ui(out, out, static_cast<unsigned long>(offset));
    }
    mpz_abs(out, out);
    mpz_fdiv_r_2exp(out, out, max_bits);
  }
  /// `length` bits from words of the source, the highest bit set.
  template <class Source>
  static void fill(mpz_ptr out, unsigned long length, Source source)
  {
    mpz_set_ui(out, 0);
    if (length == 0) return;
    for (unsigned long done = 0; done < length; done += 64) {
      mpz_mul_2exp(out, out, 64);
      mpz_add_ui(out, out, source());
    }
    mpz_fdiv_r_2exp(out, out, length);
    mpz_setbit(out, length - 1);
  }

  std::uint64_t seed_;
  std::uint64_t state_;
  const std::uint8_t* next_byte_ = nullptr;
  std::size_t num_bytes_ = 0;
};

}  // namespace lumo::test

#endif
