// The C++ types that are accepted as values of numerals. Compiled twice, strictly and with GNU extensions: the
// compilers count __int128 among the integral types only in the latter mode, but convert it to a word in both.

#include <climits>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"

namespace lumo {
namespace {

__extension__ using Wide = __int128;
__extension__ using UnsignedWide = unsigned __int128;

template <class T>
concept MakesNumeral = requires(TermManager mgr, T n)
{
  mgr.make_bv_number(n, 8UL);
};

enum Plain : int
{
  kSeven = 7
};
enum class Scoped : int
{
};

static_assert(MakesNumeral<QNumber>);
static_assert(MakesNumeral<bool>);
static_assert(MakesNumeral<char>);
static_assert(MakesNumeral<short>);
static_assert(MakesNumeral<int>);
static_assert(MakesNumeral<unsigned>);
static_assert(MakesNumeral<long>);
static_assert(MakesNumeral<unsigned long>);
static_assert(MakesNumeral<long long>);
static_assert(MakesNumeral<unsigned long long>);
static_assert(MakesNumeral<Plain>);

static_assert(!MakesNumeral<Wide>);
static_assert(!MakesNumeral<UnsignedWide>);
static_assert(!MakesNumeral<const Wide&>);
static_assert(!MakesNumeral<float>);
static_assert(!MakesNumeral<double>);
static_assert(!MakesNumeral<long double>);
static_assert(!MakesNumeral<void*>);
static_assert(!MakesNumeral<Scoped>);

TEST(WideIntegers, TypesOfOneWordMakeTheirNumeral)
{
  TermManager mgr;
  const auto expect_name = [](const Term* numeral, const char* name) {
    EXPECT_EQ(numeral->get_symbol()->get_name(), name);
  };
  expect_name(mgr.make_bv_number(ULLONG_MAX, 64), "#xffffffffffffffff");
  expect_name(mgr.make_bv_number(ULLONG_MAX, 68), "#x0ffffffffffffffff");
  expect_name(mgr.make_bv_number(LLONG_MIN, 64), "#x8000000000000000");
  expect_name(mgr.make_bv_number(LONG_MIN, 68), "#xf8000000000000000");
  expect_name(mgr.make_bv_number(kSeven, 4), "#x7");
}

}  // namespace
}  // namespace lumo
