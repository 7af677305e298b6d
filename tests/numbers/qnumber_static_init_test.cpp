#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"
#include "tests/numbers/number_testing.h"
#include "tests/numbers/static_init_values.h"

namespace lumo {
namespace {

using test::Form;
using test::holds;
using test::Integer;
using test::Rational;

/// This file and the one with the other statics are initialised in an unspecified order, so both sides
/// calculate.
const QNumber kOwnEarlyProduct =
    QNumber(Integer::power(100), Integer(9)) * QNumber(Integer(6), Integer::power(50));

TEST(QNumberStaticInit, ScratchIsInitialisedBeforeOtherFilesUseIt)
{
  EXPECT_TRUE(test::kScratchIsReadyEarly);
}

TEST(QNumberStaticInit, OtherFilesMayCalculateBeforeMain)
{
  EXPECT_TRUE(
      holds(test::kEarlySum,
            Rational(Integer("20890194575366873582045507200435113832788638919176306858917888"), Integer(21)),
            Form::kBig));
  EXPECT_TRUE(test::kEarlyOrder);
}

TEST(QNumberStaticInit, ThisFileMayCalculateBeforeMain)
{
  EXPECT_TRUE(holds(kOwnEarlyProduct, Rational(Integer::power(51), Integer(3)), Form::kBig));
}

}  // namespace
}  // namespace lumo
