#include "lumo/commands/text_escapes.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::commands {
namespace {

TEST(TextEscapes, TellCharactersFromOtherBytes)
{
  const std::vector<std::pair<std::string_view, std::size_t>> rows = {
      {"", 0},
      {"a", 1},
      {"\x7f", 1},
      {"\x80", 0},          // a continuation byte
      {"\xc3\xa9z", 2},     // U+00E9
      {"\xc3", 0},          // cut
      {"\xc3z", 0},         // the second byte is not a continuation byte
      {"\xc1\xbf", 0},      // longer than necessary
      {"\xe2\x82\xac", 3},  // U+20AC
      {"\xe0\x9f\xbf", 0},  // longer than necessary
      {"\xed\x9f\xbf", 3},
      {"\xed\xa0\x80", 0},  // half of a surrogate pair
      {"\xf0\x9f\x98\x80", 4},
      {"\xf0\x8f\xbf\xbf", 0},  // longer than necessary
      {"\xf4\x8f\xbf\xbf", 4},  // the last one
      {"\xf4\x90\x80\x80", 0},  // beyond it
      {"\xff", 0},
  };
  for (const auto& [text, length] : rows)
    EXPECT_EQ(get_character_length(text), length) << testing::PrintToString(text);
}

TEST(TextEscapes, MakeJsonStrings)
{
  EXPECT_EQ(make_json_string(""), R"("")");
  EXPECT_EQ(make_json_string("a b~"), R"("a b~")");
  EXPECT_EQ(make_json_string(R"("\)"), R"("\"\\")");
  EXPECT_EQ(make_json_string("\n\t\x7f"), R"("\u000a\u0009\u007f")");
  EXPECT_EQ(make_json_string("\xc3\xa9"), "\"\xc3\xa9\"");
  EXPECT_EQ(make_json_string("\x80x\xff"), R"("\udc80x\udcff")");
}

TEST(TextEscapes, MakeDotStrings)
{
  EXPECT_EQ(make_dot_string("bvadd"), R"("bvadd")");
  EXPECT_EQ(make_dot_string(R"(a"\n&lt;)"), R"("a\"\\n&amp;lt;")");
  EXPECT_EQ(make_dot_string("a\nb\x80"), R"("a?b?")");
  EXPECT_EQ(make_dot_string(std::string(40, 'x')), '"' + std::string(40, 'x') + '"');
  EXPECT_EQ(make_dot_string(std::string(39, 'x') + "\xc3\xa9y"),
            '"' + std::string(39, 'x') + "\xc3\xa9...\"");
}

}  // namespace
}  // namespace lumo::commands
