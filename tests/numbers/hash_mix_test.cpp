#include "lumo/numbers/hash_mix.h"

#include <climits>
#include <cstdint>

#include <gtest/gtest.h>

namespace lumo {
namespace {

constexpr std::size_t kIncrement = 0x9e3779b97f4a7c15UL;

struct MixCase
{
  std::size_t start;
  std::size_t outputs[5];
};

/// The first outputs of the generator splitmix64 for two states to start from, as other programs print them.
constexpr MixCase kMixCases[] = {
    {0,
     {0xe220a8397b1dcdafUL, 0x6e789e6aa1b965f4UL, 0x06c45d188009454fUL, 0xf88bb8a8724c81ecUL,
      0x1b39896a51a8749bUL}},
    {1234567,
     {6457827717110365317UL, 3203168211198807973UL, 9817491932198370423UL, 4593380528125082431UL,
      16408922859458223821UL}},
};

TEST(HashMix, IsTheStepOfSplitmix64FromTheSumOfSeedAndWord)
{
  for (const MixCase& c : kMixCases) {
    std::size_t state = c.start;
    for (const std::size_t output : c.outputs) {
      for (const std::size_t word : {0UL, 1UL, 99UL, ULONG_MAX})
        EXPECT_EQ(mix_hash(state - word, word), output) << word;
      state += kIncrement;
    }
  }
}

TEST(HashMix, TakesAnAddressAsItsWord)
{
  const int object = 0;
  const void* address = &object;
  EXPECT_EQ(mix_hash(5, address), mix_hash(5, reinterpret_cast<std::uintptr_t>(address)));
}

}  // namespace
}  // namespace lumo
