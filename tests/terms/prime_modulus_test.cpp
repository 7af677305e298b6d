#include "lumo/terms/prime_modulus.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace lumo::test {

TEST(PrimeModulus, IsTheLeastPrimeThatIsNotBelow)
{
  const std::size_t rows[][2] = {
      {3, 3}, {4, 5}, {61, 61}, {62, 67}, {90, 97}, {120, 127}, {1'000'000, 1'000'003}};
  for (const auto& [least, expected] : rows)
    EXPECT_EQ(PrimeModulus::at_least(least).get(), expected) << least;
}

TEST(PrimeModulus, GivesTheRemainderOfEveryWord)
{
  Random random;
  SCOPED_TRACE(random);
  for (int i = 0; i < 2000; ++i) {
    const PrimeModulus modulus = PrimeModulus::at_least(3 + random.index(1U << random.index(32)));
    const std::uint64_t p = modulus.get();
    for (const std::uint64_t n : {std::uint64_t{0}, p - 1, p, p + 1, ~std::uint64_t{0}, ~std::uint64_t{0} - p,
                                  ~std::uint64_t{0} / p * p, ~std::uint64_t{0} / p * p - 1, random.bits()})
      ASSERT_EQ(modulus.reduce(n), n % p) << n << " modulo " << p;
  }
}

}  // namespace lumo::test
