// Threads that use their own objects do not disturb each other: the results of several concurrent threads are those
// of one thread alone. Under ThreadSanitizer, this also shows that they share no data that one of them writes.

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/numbers/gcd.h"
#include "tests/support/gmp_number.h"
#include "tests/support/random.h"
#include "tests/support/run_together.h"
#include "tests/threads/jobs.h"

namespace lumo {
namespace {

using test::Integer;
using test::Job;
using test::kJobs;
using test::Random;
using test::run_together;

constexpr std::size_t kNumThreads = 4;

class Threads : public ::testing::TestWithParam<Job>
{};

std::string get_job_name(const ::testing::TestParamInfo<Job>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(, Threads, ::testing::ValuesIn(kJobs), get_job_name);

TEST_P(Threads, DoTheSameJobAsOneAlone)
{
  SCOPED_TRACE(Random());
  std::array<std::array<std::string, kNumThreads>, kNumThreads> results;
  run_together(kNumThreads, [&](std::size_t i) {
    for (std::size_t stream = 0; stream < kNumThreads; ++stream)
      results[i][stream] = GetParam().run(stream);
  });
  for (std::size_t stream = 0; stream < kNumThreads; ++stream) {
    const std::string expected = GetParam().run(stream);
    for (std::size_t i = 0; i < kNumThreads; ++i)
      EXPECT_EQ(results[i][stream], expected) << "thread " << i;
  }
}

TEST(ThreadsTogether, DoDifferentJobs)
{
  SCOPED_TRACE(Random());
  std::array<std::string, kJobs.size()> results;
  run_together(kJobs.size(), [&](std::size_t i) { results[i] = kJobs[i].run(100); });
  for (std::size_t i = 0; i < kJobs.size(); ++i)
    EXPECT_EQ(results[i], kJobs[i].run(100)) << kJobs[i].name;
}

TEST(ThreadsTogether, FillTheTableOfDivisors)
{
  constexpr long kEnd = 200;
  std::fill(std::begin(gcd_cache), std::end(gcd_cache), 0);
  std::array<long, kNumThreads> num_wrong{};
  run_together(kNumThreads, [&](std::size_t thread) {
    for (long a = 0; a < kEnd; ++a) {
      for (long b = 0; b < kEnd; ++b)
        num_wrong[thread] += gcd(a, b) != std::gcd(a, b) ? 1 : 0;
    }
  });
  EXPECT_EQ(num_wrong, (std::array<long, kNumThreads>{}));
}

TEST(ThreadsTogether, ReadTheSameNumbers)
{
  Random random;
  SCOPED_TRACE(random);
  std::vector<QNumber> numbers = {QNumber(0), QNumber(-7), QNumber(1, 3), BVNumber::pow2(128)};
  for (int i = 0; i < 20; ++i) {
    Integer num;
    random.integer(num, 128);
    numbers.emplace_back(num, Integer(1 + i % 3));
  }
  const auto read_all = [&numbers = std::as_const(numbers)] {
    std::string text;
    for (const QNumber& x : numbers) {
      text += x.to_string() + ' ' + std::to_string(x.hash());
      for (const QNumber& y : numbers) {
        text += x < y ? '<' : '-';
        text += x == y ? '=' : '-';
        text += (x + y).to_string() + ' ' + (x * y).to_string();
      }
    }
    return text;
  };
  std::array<std::string, kNumThreads> results;
  run_together(kNumThreads, [&](std::size_t i) { results[i] = read_all(); });
  for (const std::string& result : results)
    EXPECT_EQ(result, read_all());
}

}  // namespace
}  // namespace lumo
