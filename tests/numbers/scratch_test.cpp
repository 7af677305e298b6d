// Each thread has its own scratch integers, from its first use of them to its end.

#include <array>
#include <atomic>
#include <cstdlib>
#include <latch>
#include <thread>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "tests/support/run_together.h"

namespace lumo {
namespace {

std::atomic<long> num_blocks = 0;

void* allocate_counted(std::size_t size)
{
  ++num_blocks;
  return std::malloc(size);
}

void* reallocate_counted(void* block, std::size_t /*old_size*/, std::size_t size)
{
  return std::realloc(block, size);
}

void free_counted(void* block, std::size_t /*size*/)
{
  --num_blocks;
  std::free(block);
}

/// Counts the blocks that GMP holds, relative to those at the beginning.
class Scratch : public ::testing::Test
{
 protected:
  Scratch() { mp_set_memory_functions(allocate_counted, reallocate_counted, free_counted); }
  ~Scratch() override { mp_set_memory_functions(nullptr, nullptr, nullptr); }

  template <class Work>
  static long count_blocks_left_by(Work work)
  {
    const long before = num_blocks;
    std::thread(work).join();
    return num_blocks - before;
  }
};

TEST_F(Scratch, IsFreedAtTheEndOfAThreadThatCalculates)
{
  long num_used = 0;
  const long num_left = count_blocks_left_by([&num_used] {
    const long before = num_blocks;
    EXPECT_TRUE(BVNumber::is_bit_set(BVNumber::bit_xor(BVNumber::pow2(1000), QNumber(1)), 0));
    num_used = num_blocks - before;  // all numbers are gone by now
  });
  EXPECT_GT(num_used, 0);
  EXPECT_EQ(num_left, 0);
}

TEST_F(Scratch, IsFreedAtTheEndOfAThreadThatUsesItDirectly)
{
  EXPECT_EQ(count_blocks_left_by([] {
              for (mpz_t& z : QNumber::gmp_tmp)
                mpz_setbit(z, 1000);
            }),
            0);
}

TEST_F(Scratch, IsAnotherOneInEachThread)
{
  constexpr std::size_t kNumThreads = 3;
  std::array<unsigned long, kNumThreads> values{};
  std::latch all_are_set(kNumThreads);
  test::run_together(kNumThreads, [&](std::size_t i) {
    mpz_set_ui(QNumber::gmp_tmp[2], i + 1);
    all_are_set.arrive_and_wait();
    values[i] = mpz_get_ui(QNumber::gmp_tmp[2]);
  });
  EXPECT_EQ(values, (std::array<unsigned long, kNumThreads>{1, 2, 3}));
}

/// Calculates when its thread ends.
class LateCalculation
{
 public:
  explicit LateCalculation(bool& is_right) : is_right_(is_right) {}
  LateCalculation(const LateCalculation&) = delete;
  LateCalculation& operator=(const LateCalculation&) = delete;
  ~LateCalculation()
  {
    const QNumber sum = BVNumber::bit_xor(BVNumber::pow2(200), BVNumber::pow2(100));
    is_right_ = sum == BVNumber::pow2(200) + BVNumber::pow2(100);
    // Memory that is allocated this late is not freed automatically.
    for (mpz_t& z : QNumber::gmp_tmp) {
      mpz_clear(z);
      mpz_init(z);
    }
  }

 private:
  bool& is_right_;
};

TEST_F(Scratch, ServesObjectsOfTheThreadThatAreDestroyedLater)
{
  bool is_right = false;
  count_blocks_left_by([&is_right] {
    // Constructed before the scratch integers, and therefore destroyed after them
    static thread_local const LateCalculation late(is_right);
    EXPECT_TRUE(BVNumber::pow2(100).is_big());
  });
  EXPECT_TRUE(is_right);
}

}  // namespace
}  // namespace lumo
