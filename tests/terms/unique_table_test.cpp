#include "lumo/terms/unique_table.h"

#include <cstddef>
#include <utility>

#include <gtest/gtest.h>

namespace lumo::test {
namespace {

/// Hashes that are spread, that share homes at the ends of the table, and that share a few homes
std::size_t make_hash(std::size_t kind, std::size_t i)
{
  const std::size_t spread = (i + 1) * 0x9e3779b97f4a7c15UL >> 16U;
  switch (kind) {
    case 0:
      return spread;
    case 1:
      return spread | 0xff0U;
    default:
      return spread & 0x3f000U;
  }
}

class UniqueTables : public testing::TestWithParam<std::size_t>
{
 protected:
  void add(std::size_t size)
  {
    for (std::size_t i = table_.size(); i < size; ++i) {
      table_.reserve_one();
      table_.insert(make_hash(GetParam(), i), static_cast<UniqueTable::Index>(i));
    }
  }
  void expect_to_have(std::size_t size, std::size_t up_to)
  {
    for (std::size_t i = 0; i < up_to; ++i) {
      const UniqueTable::Index found =
          table_.find(make_hash(GetParam(), i), [i](UniqueTable::Index index) { return index == i; });
      ASSERT_EQ(found == i, i < size) << i;
    }
  }

  UniqueTable table_;
};

TEST_P(UniqueTables, FindAllThatWasInsertedHoweverTheyGrow)
{
  expect_to_have(0, 10);
  for (const std::size_t size : {1UL, 48UL, 49UL, 97UL, 800UL, 3072UL, 3073UL, 6144UL, 6145UL, 13000UL}) {
    add(size);
    EXPECT_EQ(table_.size(), size);
    expect_to_have(size, size + 10);
  }
}

TEST_P(UniqueTables, ForgetWhatWasErased)
{
  constexpr std::size_t kSize = 7000;
  add(kSize);
  for (std::size_t i = kSize; i-- > 1000;)
    table_.erase(make_hash(GetParam(), i), static_cast<UniqueTable::Index>(i));
  EXPECT_EQ(table_.size(), 1000U);
  expect_to_have(1000, kSize);
  add(2000);
  expect_to_have(2000, kSize);
}

TEST_P(UniqueTables, AreMovedAndLeaveAnEmptyOne)
{
  add(5000);
  UniqueTable other;
  std::swap(other, table_);
  EXPECT_EQ(other.size(), 5000U);
  EXPECT_EQ(table_.size(), 0U);
  expect_to_have(0, 100);
  add(100);
  expect_to_have(100, 200);
}

INSTANTIATE_TEST_SUITE_P(Hashes, UniqueTables, testing::Values(0, 1, 2));

}  // namespace
}  // namespace lumo::test
