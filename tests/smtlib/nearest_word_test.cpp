#include "lumo/smtlib/nearest_word.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::test {
namespace {

struct MistakesRow
{
  std::string_view first;
  std::string_view second;
  std::size_t count;
};

constexpr MistakesRow kMistakesRows[] = {
    {"", "", 0},           {"", "abc", 3},      {"abc", "abc", 0},   {"abc", "ab", 1},
    {"abc", "bc", 1},      {"abc", "abxc", 1},  {"abc", "axc", 1},   {"abc", "bac", 1},
    {"ab", "ba", 1},       {"abcd", "badc", 2}, {"abc", "cba", 2},   {"kitten", "sitting", 3},
    {"modle", "model", 1}, {"ca", "abc", 3},    {"aaaa", "bbbb", 4},
};

TEST(Nearest, CountsMistakesInBothDirections)
{
  for (const MistakesRow& row : kMistakesRows) {
    SCOPED_TRACE(std::string(row.first) + " and " + std::string(row.second));
    EXPECT_EQ(smtlib::count_mistakes(row.first, row.second), row.count);
    EXPECT_EQ(smtlib::count_mistakes(row.second, row.first), row.count);
  }
}

TEST(Nearest, TakesLongWordsForDifferent)
{
  const std::string word(1000, 'a');
  EXPECT_EQ(smtlib::count_mistakes(word, word), 0U);
  EXPECT_GT(smtlib::count_mistakes(word, word + "a"), 3U);
}

struct WordRow
{
  std::string_view typed;
  std::string_view nearest;
};

constexpr WordRow kWordRows[] = {
    {"solv", "solve"},
    {"slove", "solve"},
    {"SOLVE", "solve"},
    {"simplfiy", "simplify"},
    {"simpilfyy", "simplify"},
    {"si", "simplify"},
    {"s", ""},
    {"", ""},
    {"dt", ""},
    {"dto", "dot"},
    {"solxx", ""},
    {"elimination", ""},
    {"solvent", "solve"},
    {"stimplificay", ""},
};

TEST(Nearest, WordHasFewMistakesForItsLength)
{
  const std::vector<std::string> words = {"solve", "simplify", "dot", "dog"};
  for (const WordRow& row : kWordRows) {
    SCOPED_TRACE(row.typed);
    EXPECT_EQ(smtlib::find_nearest(row.typed, words), row.nearest);
  }
  EXPECT_EQ(smtlib::find_nearest("solve", {}), "");
}

}  // namespace
}  // namespace lumo::test
