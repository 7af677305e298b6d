// The C++ types that are accepted as numbers. Compiled twice, strictly and with GNU extensions: the compilers count
// __int128 among the integral types only in the latter mode, but convert it to a word in both.

#include <climits>
#include <concepts>
#include <type_traits>

#include <gtest/gtest.h>

#include "lumo/numbers/qnumber.h"

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
constexpr bool kIsTaken =
    MakesNumber<T>&& std::is_convertible_v<T, QNumber>&& IsAssignedToNumber<T>&& IsAddedToNumber<T>&&
        IsComparedWithNumber<T>&& MakesFraction<T, T>&& MakesFraction<T, long>&& MakesFraction<int, T>;
template <class T>
constexpr bool kIsRefused = !MakesNumber<T> && !std::is_convertible_v<T, QNumber> && !IsAssignedToNumber<T> &&
                            !IsAddedToNumber<T> && !IsComparedWithNumber<T> && !MakesFraction<T, T> &&
                            !MakesFraction<T, long> && !MakesFraction<unsigned long, T>;

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

enum Plain : int
{
  kSeven = 7
};
enum class Scoped : int
{
};
/// A class that stands for a word
struct Holder
{
  operator long() const { return 8; }  // NOLINT(google-explicit-constructor): stands for the word
};
static_assert(MakesNumber<Plain> && MakesFraction<Plain, Plain>);
static_assert(MakesNumber<Holder> && MakesFraction<Holder, Holder>);
static_assert(!MakesNumber<Scoped> && !MakesFraction<Scoped, Scoped>);

TEST(WideIntegers, TypesOfOneWordAreTakenWhole)
{
  EXPECT_EQ(QNumber(ULLONG_MAX).to_string(), "18446744073709551615");
  EXPECT_EQ(QNumber(LLONG_MIN).to_string(), "-9223372036854775808");
  EXPECT_EQ(QNumber(ULLONG_MAX, 2).to_string(), "18446744073709551615/2");
  EXPECT_EQ(QNumber(kSeven).to_string(), "7");
  EXPECT_EQ(QNumber(Holder()).to_string(), "8");
}

}  // namespace
}  // namespace lumo
