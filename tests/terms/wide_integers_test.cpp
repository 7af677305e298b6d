// Which C++ types are taken as numbers. Compiled twice, strictly and with GNU extensions: the compilers count __int128
// among the integral types only in the latter mode, but convert it to a word in both.

#include <climits>
#include <concepts>
#include <cstddef>
#include <type_traits>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"

namespace lumo {
namespace {

__extension__ using Wide = __int128;
__extension__ using UnsignedWide = unsigned __int128;

#ifdef __STRICT_ANSI__
static_assert(!std::integral<Wide>);
#else
static_assert(std::integral<Wide>);
#endif

template <class T>
concept MakesNumber = requires(T n)
{
  QNumber(n);
};
template <class T>
concept ConvertsToNumber = std::is_convertible_v<T, QNumber>;
template <class T>
concept IsAssignedToNumber = requires(QNumber q, T n)
{
  q = n;
};
template <class T>
concept IsAddedToNumber = requires(QNumber q, T n)
{
  q += n;
};
template <class T>
concept IsComparedWithNumber = requires(QNumber q, T n)
{
  q == n;
};
template <class Num, class Den>
concept MakesFraction = requires(Num num, Den den)
{
  QNumber(num, den);
};
template <class T>
concept MakesNumeral = requires(TermManager mgr, T n)
{
  mgr.make_bv_number(n, 8UL);
};

template <class T>
constexpr bool kIsTaken =
    MakesNumber<T>&& ConvertsToNumber<T>&& IsAssignedToNumber<T>&& IsAddedToNumber<T>&& IsComparedWithNumber<
        T>&& MakesFraction<T, T>&& MakesFraction<T, long>&& MakesFraction<int, T>&& MakesNumeral<T>;
template <class T>
constexpr bool kIsRefused = !MakesNumber<T> && !ConvertsToNumber<T> && !IsAssignedToNumber<T> &&
                            !IsAddedToNumber<T> && !IsComparedWithNumber<T> && !MakesFraction<T, T> &&
                            !MakesFraction<T, long> && !MakesFraction<unsigned long, T> && !MakesNumeral<T>;

static_assert(kIsTaken<bool>);
static_assert(kIsTaken<char>);
static_assert(kIsTaken<signed char>);
static_assert(kIsTaken<unsigned char>);
static_assert(kIsTaken<short>);
static_assert(kIsTaken<unsigned short>);
static_assert(kIsTaken<int>);
static_assert(kIsTaken<unsigned>);
static_assert(kIsTaken<long>);
static_assert(kIsTaken<unsigned long>);
static_assert(kIsTaken<long long>);
static_assert(kIsTaken<unsigned long long>);
static_assert(kIsTaken<const int&>);

static_assert(kIsRefused<Wide>);
static_assert(kIsRefused<UnsignedWide>);
static_assert(kIsRefused<const Wide&>);
static_assert(kIsRefused<float>);
static_assert(kIsRefused<double>);
static_assert(kIsRefused<long double>);
static_assert(kIsRefused<void*>);

// A number itself is taken, and so is an enumerator that is an integer.
enum Plain : int
{
  kSeven = 7
};
static_assert(MakesNumeral<QNumber> && MakesNumber<Plain> && MakesNumeral<Plain>);
enum class Scoped : int
{
};
static_assert(!MakesNumber<Scoped> && !MakesNumeral<Scoped>);

TEST(WideIntegers, TypesOfOneWordAreTakenWhole)
{
  constexpr unsigned long long kLargest = ULLONG_MAX;
  EXPECT_EQ(QNumber(kLargest).to_string(), "18446744073709551615");
  EXPECT_EQ(QNumber(LLONG_MIN).to_string(), "-9223372036854775808");
  EXPECT_EQ(QNumber(kSeven).to_string(), "7");
  TermManager mgr;
  EXPECT_EQ(mgr.make_bv_number(kLargest, 64)->get_symbol()->get_name(), "#xffffffffffffffff");
  EXPECT_EQ(mgr.make_bv_number(LLONG_MIN, 64)->get_symbol()->get_name(), "#x8000000000000000");
  EXPECT_EQ(mgr.make_bv_number(LONG_MIN, 68)->get_symbol()->get_name(), "#xf8000000000000000");
}

}  // namespace
}  // namespace lumo
