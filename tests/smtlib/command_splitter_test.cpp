// Texts that are cut into commands, whole and in pieces.

#include "lumo/smtlib/command_splitter.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

struct SplitRow
{
  std::string text;
  std::vector<std::string> commands;  ///< `line:column text`
};

const SplitRow kSplitRows[] = {
    {"", {}},
    {" \n\t ; only a comment", {}},
    {"(a)", {"1:1 (a)"}},
    {"(a)(b (c) d)\n  (e)", {"1:1 (a)", "1:4 (b (c) d)", "2:3 (e)"}},
    {"(a ; no ) here\n)\n(b)", {"1:1 (a ; no ) here\n)", "3:1 (b)"}},
    {"; (no\n(a)", {"2:1 (a)"}},
    {"(a |)|)(b)", {"1:1 (a |)|)", "1:8 (b)"}},
    {"(a |;\n|)(b)", {"1:1 (a |;\n|)", "2:3 (b)"}},
    {"(a \")\")(b \"x \"\") y\")", {"1:1 (a \")\")", "1:8 (b \"x \"\") y\")"}},
    {"(a \"|;\")", {"1:1 (a \"|;\")"}},
    {"a b(c)", {"1:1 a", "1:3 b", "1:4 (c)"}},
    {"a;b\n)c", {"1:1 a", "2:1 )", "2:2 c"}},
    {"))(a)", {"1:1 )", "1:2 )", "1:3 (a)"}},
    {"\"a ( b\" (c)", {"1:1 \"a ( b\"", "1:9 (c)"}},
    {"|a ( b|(c)", {"1:1 |a ( b|", "1:8 (c)"}},
    {"(a (b)", {"1:1 (a (b)"}},
    {"(a |b)", {"1:1 (a |b)"}},
    {"(a)\n\n (b", {"1:1 (a)", "3:2 (b"}},
    {"\xef\xbb\xbf(a)\n(b)", {"1:1 (a)", "2:1 (b)"}},
    {"\xef\xbb", {"1:1 \xef\xbb"}},
};

void take_all(CommandSplitter& splitter, std::vector<std::string>& commands)
{
  for (auto command = splitter.take(); command; command = splitter.take()) {
    commands.push_back(std::to_string(command->place.line) + ":" + std::to_string(command->place.column) +
                       " " + std::string(command->text));
  }
}

TEST(CommandSplitter, CutsTextsThatArriveInPiecesOfAnySize)
{
  for (const SplitRow& row : kSplitRows) {
    for (std::size_t size = 1; size <= row.text.size() + 1; ++size) {
      CommandSplitter splitter;
      std::vector<std::string> commands;
      for (std::size_t i = 0; i < row.text.size(); i += size) {
        splitter.add(std::string_view{row.text}.substr(i, size));
        take_all(splitter, commands);
      }
      splitter.finish();
      take_all(splitter, commands);
      EXPECT_EQ(commands, row.commands) << row.text << " in pieces of " << size;
    }
  }
}

TEST(CommandSplitter, GivesACommandWithItsLastParenthesis)
{
  CommandSplitter splitter;
  EXPECT_FALSE(splitter.has_begun());
  splitter.add("(a (b)");
  EXPECT_FALSE(splitter.take());
  EXPECT_TRUE(splitter.has_begun());
  splitter.add(")");
  const auto command = splitter.take();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->text, "(a (b))");
  EXPECT_FALSE(splitter.has_begun());
}

}  // namespace
}  // namespace lumo::smtlib
