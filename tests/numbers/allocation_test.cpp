// Small numbers do not allocate, and a failing allocation leaves a number unchanged. If GMP
// itself gets no memory, it ends the process, which cannot be prevented: its integers are then incomplete.

#include <cstdio>
#include <cstdlib>
#include <new>
#include <sys/resource.h>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/numbers/qnumber.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/number.h"

namespace lumo {
namespace {

using test::countdown;
using test::num_allocations;

long num_gmp_allocations = 0;

void* allocate_counted(std::size_t size)
{
  ++num_gmp_allocations;
  return std::malloc(size);
}

void* reallocate_counted(void* block, std::size_t /*old_size*/, std::size_t size)
{
  ++num_gmp_allocations;
  return std::realloc(block, size);
}

void free_counted(void* block, std::size_t /*size*/) { std::free(block); }

/// Counts the calls of both allocators since its construction.
class Count
{
 public:
  Count() : first_(num_allocations + num_gmp_allocations)
  {
    mp_set_memory_functions(allocate_counted, reallocate_counted, free_counted);
  }
  [[nodiscard]] long get() const { return num_allocations + num_gmp_allocations - first_; }

 private:
  long first_;
};

constexpr long kWords[] = {0, 1, -1, 2, 7, -12, 1000, 1L << 30, -(1L << 31), (1L << 31) + 1};

TEST(SmallIntegers, AllocateNothing)
{
  long num_equal = 0;
  const Count count;
  for (const long a : kWords) {
    for (const long b : kWords) {
      QNumber x(a);
      const QNumber y(b);
      x += y;
      x -= y;
      x *= y;
      QNumber q;
      QNumber r;
      if (b != 0) x.divmod(y, q, r);
      num_equal += (x == y ? 1 : 0) + (x < y ? 1 : 0) + (q + r == x ? 1 : 0);
      QNumber copy(x);
      copy = y;
      copy.swap(x);
    }
  }
  EXPECT_EQ(count.get(), 0);
  EXPECT_GT(num_equal, 0);
}

TEST(SmallRationals, AllocateNothing)
{
  const Count count;
  bool is_less = false;
  for (long n = -50; n < 50; ++n) {
    for (long d = 1; d < 50; ++d) {
      QNumber x(n, d);
      const QNumber y(d, 1 + (n + 50));
      x += y;
      x -= y;
      x *= y;
      is_less = is_less || x < y;
    }
  }
  EXPECT_EQ(count.get(), 0);
  EXPECT_TRUE(is_less);
}

TEST(PowersOfTwo, AllocateNothingUpToWidth62)
{
  const Count count;
  QNumber sum;
  for (unsigned long w = 0; w <= 61; ++w)
    sum += BVNumber::pow2(w);
  EXPECT_EQ(sum, BVNumber::pow2(62) - QNumber(1));
  EXPECT_EQ(count.get(), 0);
  EXPECT_TRUE(BVNumber::pow2(63).is_big());
  EXPECT_GT(count.get(), 0) << "the count sees what is allocated";
}

TEST(Division, AllocatesOneBlockForEachOutputThatBecomesBigAndNoneForOthers)
{
  const QNumber x = BVNumber::pow2(100);
  const QNumber d(7);
  const auto count_blocks = [&](QNumber& q, QNumber& r) {
    const long before = num_allocations;
    x.divmod(d, q, r);
    return num_allocations - before;
  };
  QNumber q;
  QNumber r;
  EXPECT_EQ(count_blocks(q, r), 2);
  EXPECT_EQ(count_blocks(q, r), 0) << "both are big by now";
  EXPECT_EQ(count_blocks(q, q), 0);
  QNumber other;
  EXPECT_EQ(count_blocks(other, r), 1);
  QNumber another;
  EXPECT_EQ(count_blocks(q, another), 1);
  QNumber both;
  EXPECT_EQ(count_blocks(both, both), 1);
}

/// Runs the operation on a copy of x with its first allocation failing, and expects that x is unchanged.
template <class Operation>
void expect_unchanged(const QNumber& x, Operation operation)
{
  QNumber changed(x);
  countdown = 0;
  EXPECT_THROW(operation(changed), std::bad_alloc);
  countdown = -1;
  EXPECT_EQ(changed, x);
  EXPECT_EQ(changed.is_big(), x.is_big());
  EXPECT_TRUE(changed.is_canonical());
}

TEST(FailingAllocation, LeavesANumberThatWouldLeaveTheWordAsItWas)
{
  const QNumber max(LONG_MAX);
  expect_unchanged(max, [](QNumber& x) { x += QNumber(1); });
  expect_unchanged(QNumber(-LONG_MAX), [](QNumber& x) { x -= QNumber(1); });
  expect_unchanged(max, [](QNumber& x) { x *= QNumber(2); });
  expect_unchanged(QNumber(LONG_MAX, 2), [](QNumber& x) { x += QNumber(LONG_MAX, 3); });
  expect_unchanged(QNumber(LONG_MAX, 2), [](QNumber& x) { x *= QNumber(LONG_MAX - 4, 3); });
}

TEST(FailingAllocation, LeavesASmallNumberThatMeetsABigOneAsItWas)
{
  const QNumber big = BVNumber::pow2(100);
  expect_unchanged(QNumber(5), [&big](QNumber& x) { x += big; });
  expect_unchanged(QNumber(5), [&big](QNumber& x) { x -= big; });
  expect_unchanged(QNumber(5), [&big](QNumber& x) { x *= big; });
  expect_unchanged(QNumber(5), [&big](QNumber& x) { x = big; });
}

TEST(FailingAllocation, LeavesBothOutputsOfADivisionAsTheyWere)
{
  const QNumber big = BVNumber::pow2(100);
  for (long failing = 0; failing < 2; ++failing) {
    QNumber q(3);
    QNumber r(4);
    countdown = failing;
    EXPECT_THROW(big.divmod(QNumber(7), q, r), std::bad_alloc);
    countdown = -1;
    EXPECT_EQ(q, QNumber(3));
    EXPECT_EQ(r, QNumber(4));
  }
}

TEST(FailingAllocation, WhileANumberIsCopiedLosesNothing)
{
  const QNumber big = BVNumber::pow2(100);
  countdown = 0;
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): copying is what is tested
  EXPECT_THROW(QNumber copy(big), std::bad_alloc);
  countdown = 0;
  EXPECT_THROW(QNumber lowest(LONG_MIN), std::bad_alloc);
  countdown = -1;
  EXPECT_EQ(big, BVNumber::pow2(100));
}

/// Makes a number of half a gigabyte in a process that may have a quarter of one.
void exhaust_gmp()
{
  mp_set_memory_functions(nullptr, nullptr, nullptr);  // GMP's own
  constexpr rlim_t kMost = rlim_t{1} << 28;
  const rlimit limit{kMost, kMost};
  if (setrlimit(RLIMIT_AS, &limit) != 0) return;
  const QNumber number = BVNumber::pow2(0xffffffffUL);
  std::fprintf(stderr, "%s", number.is_big() ? "there was enough memory" : "the number is small");
}

TEST(GmpWithoutMemoryDeathTest, EndsTheProcessAndSaysWhy)
{
  // The second text is from a sanitizer's allocator.
  EXPECT_DEATH(exhaust_gmp(), "GNU MP: Cannot (re)?allocate memory|out of memory|Failed to mmap");
}

}  // namespace
}  // namespace lumo
