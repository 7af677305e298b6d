// Statics that need the scratch integers before main begins and after it has ended.

#include "tests/numbers/static_init_values.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tests/support/gmp_number.h"

namespace lumo::test {

namespace {

QNumber big_fraction(unsigned long exponent, long den) { return {Integer::power(exponent), Integer(den)}; }

/// Calculates once more when the program ends, and makes it fail if the result is wrong.
class LateCalculation
{
 public:
  LateCalculation() = default;
  LateCalculation(const LateCalculation&) = delete;
  LateCalculation& operator=(const LateCalculation&) = delete;
  ~LateCalculation()
  {
    if (!(x_ + y_ == kEarlySum) || x_ < y_) std::abort();
  }

 private:
  QNumber x_ = big_fraction(200, 3);
  QNumber y_ = big_fraction(201, 7);
};

}  // namespace

// First, since each calculation may also allocate the limbs of a scratch integer.
const bool kScratchIsReadyEarly =
    std::all_of(std::begin(QNumber::gmp_tmp), std::end(QNumber::gmp_tmp),
                [](const mpz_t& scratch) { return mpz_limbs_read(scratch) != nullptr; });
const QNumber kEarlySum = big_fraction(200, 3) + big_fraction(201, 7);
const bool kEarlyOrder = big_fraction(200, 3) < big_fraction(200, 7) + big_fraction(199, 1);

namespace {

const LateCalculation kLateCalculation;

}  // namespace

}  // namespace lumo::test
