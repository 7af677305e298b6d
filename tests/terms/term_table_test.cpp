#include "lumo/terms/term_table.h"

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/random.h"

namespace lumo::test {
namespace {

using Table = TermTable<std::uint64_t, 3>;

TEST(TermTable, HasNoEntriesAtFirst)
{
  Table table;
  EXPECT_EQ(table.find(0), nullptr);
  EXPECT_EQ(table.find(0xffff'fffe), nullptr);
}

TEST(TermTable, AgreesWithAMapOnIdsOfAllPatterns)
{
  Random random;
  SCOPED_TRACE(random);
  // Dense ids, ids a power of two apart, the largest ids, and any
  const std::vector<std::pair<std::size_t, std::size_t>> patterns = {
      {0, 1}, {1000, 8}, {5, 4096}, {1U << 20U, 1U << 16U}, {0xffff'0000, 3}};
  for (const auto& [first, step] : patterns) {
    Table table;
    std::map<std::size_t, std::uint64_t> expected;
    std::vector<std::uint64_t*> places;
    for (std::size_t i = 0; i < 3000; ++i) {
      const std::size_t id =
          (random.index(8) == 0 ? random.bits() : first + random.index(2000) * step) & 0xffff'ffff;
      const std::uint64_t value = 1 + random.index(1000);
      expected[id] = value;
      table[id] = value;
    }
    for (const auto& [id, value] : expected) {
      ASSERT_NE(table.find(id), nullptr);
      ASSERT_EQ(*table.find(id), value);
    }
    std::vector<std::uint64_t> in_order;
    table.for_each_entry([&in_order](std::uint64_t value) {
      if (value != 0) in_order.push_back(value);
    });
    std::vector<std::uint64_t> expected_in_order;
    expected_in_order.reserve(expected.size());
    for (const auto& [id, value] : expected)
      expected_in_order.push_back(value);
    ASSERT_EQ(in_order, expected_in_order);
  }
}

TEST(TermTable, EntriesStayWhereTheyAre)
{
  Table table;
  std::vector<std::uint64_t*> places;
  for (std::size_t i = 0; i < 10000; ++i) {
    places.push_back(&table[i * 7]);
    *places.back() = i;
  }
  for (std::size_t i = 0; i < 10000; ++i) {
    ASSERT_EQ(table.find(i * 7), places[i]);
    ASSERT_EQ(*places[i], i);
  }
}

TEST(TermTable, CopiesAndMovesTakeTheEntriesAlong)
{
  Table table;
  for (std::size_t i = 0; i < 1000; ++i)
    table[i * 100] = i;
  Table copy(table);
  table[500] = 77;
  EXPECT_EQ(*copy.find(500), 5U);
  Table moved(std::move(copy));
  EXPECT_EQ(*moved.find(99900), 999U);
  EXPECT_EQ(copy.find(500), nullptr);  // NOLINT(bugprone-use-after-move): a moved-from table is empty
  copy = moved;
  moved = std::move(table);
  EXPECT_EQ(*copy.find(500), 5U);
  EXPECT_EQ(*moved.find(500), 77U);
}

}  // namespace
}  // namespace lumo::test
