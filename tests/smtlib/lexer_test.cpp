#include "lumo/smtlib/lexer.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

struct Piece
{
  TokenKind kind;
  std::string_view text;
};

std::vector<Token> read_all(std::string_view text)
{
  Lexer lexer(text);
  std::vector<Token> tokens;
  do {
    tokens.push_back(lexer.next());
  } while (tokens.back().kind != TokenKind::kEnd);
  return tokens;
}

struct LexerRow
{
  std::string_view text;
  std::vector<Piece> pieces;  ///< without the end
};

TEST(Lexer, SplitsTextIntoTokens)
{
  const std::vector<LexerRow> rows = {
      {"", {}},
      {" \t\r\n; a comment ( \" |", {}},
      {"; first\nx ; last\n", {{TokenKind::kSymbol, "x"}}},
      {"(a)", {{TokenKind::kOpen, "("}, {TokenKind::kSymbol, "a"}, {TokenKind::kClose, ")"}}},
      {"bvadd ~!@$%^&*_-+=<>.?/z9",
       {{TokenKind::kSymbol, "bvadd"}, {TokenKind::kSymbol, "~!@$%^&*_-+=<>.?/z9"}}},
      {"|a b\n;(\"| ||", {{TokenKind::kQuotedSymbol, "a b\n;(\""}, {TokenKind::kQuotedSymbol, ""}}},
      {"\"a ; \"\"b\"\"\" \"\"", {{TokenKind::kString, "a ; \"\"b\"\""}, {TokenKind::kString, ""}}},
      {"#x0Ff #b01", {{TokenKind::kHexadecimal, "0Ff"}, {TokenKind::kBinary, "01"}}},
      {"0 17 3.50", {{TokenKind::kNumeral, "0"}, {TokenKind::kNumeral, "17"}, {TokenKind::kDecimal, "3.50"}}},
      {":named|x|", {{TokenKind::kKeyword, ":named"}, {TokenKind::kQuotedSymbol, "x"}}},
      {"|\xc3\xa9|;\xc3\xa9", {{TokenKind::kQuotedSymbol, "\xc3\xa9"}}},
  };
  for (const LexerRow& row : rows) {
    SCOPED_TRACE(row.text);
    const std::vector<Token> tokens = read_all(row.text);
    ASSERT_EQ(tokens.size(), row.pieces.size() + 1);
    for (std::size_t i = 0; i < row.pieces.size(); ++i) {
      EXPECT_EQ(tokens[i].kind, row.pieces[i].kind) << i;
      EXPECT_EQ(tokens[i].text, row.pieces[i].text) << i;
    }
  }
}

TEST(Lexer, CountsLinesAndColumnsFromOneInAnyOrder)
{
  const std::string_view text = "(x\n  |a\nb| y)\r\n\"\n\" z";
  const Lexer lexer(text);
  const std::vector<Token> tokens = read_all(text);
  const std::vector<Place> expected = {{1, 1}, {1, 2}, {2, 3}, {3, 4}, {3, 5}, {4, 1}, {5, 3}, {5, 4}};
  ASSERT_EQ(tokens.size(), expected.size());
  for (std::size_t i = 0; i < tokens.size(); ++i)
    EXPECT_EQ(lexer.get_place(tokens[i]), expected[i]) << i;
  for (std::size_t i = tokens.size(); i-- > 0;)
    EXPECT_EQ(lexer.get_place(tokens[i]), expected[i]) << i;
}

TEST(Lexer, CountsFromThePlaceWhereTheTextStarts)
{
  const Lexer lexer("x\ny", {7, 5});
  EXPECT_EQ(lexer.get_place(0), (Place{7, 5}));
  EXPECT_EQ(lexer.get_place(2), (Place{8, 1}));
}

TEST(Lexer, SkipsAByteOrderMark)
{
  Lexer lexer("\xef\xbb\xbfx y\nz");
  EXPECT_EQ(lexer.next().text, "x");
  EXPECT_EQ(lexer.get_place(3), (Place{1, 1}));
  EXPECT_EQ(lexer.get_place(lexer.next()), (Place{1, 3}));
  EXPECT_EQ(lexer.get_place(lexer.next()), (Place{2, 1}));
  EXPECT_EQ(lexer.get_place(3), (Place{1, 1}));
}

TEST(Lexer, RefusesWhatIsNoToken)
{
  struct Refusal
  {
    std::string_view text;
    Place place;
    std::string_view sentence;
  };
  const std::vector<Refusal> rows = {
      {"x {", {1, 3}, "the character { was found, but a symbol, a literal or a parenthesis was expected"},
      {"\n\xc3\xa9",
       {2, 1},
       "the byte 0xc3 was found, but a symbol, a literal or a parenthesis was expected"},
      {": x", {1, 2}, "the byte 0x20 was found, but a symbol, a literal or a parenthesis was expected"},
      {"#", {1, 1}, "the character # was found, but a literal #x... or #b... was expected"},
      {" #o7", {1, 2}, "the character # was found, but a literal #x... or #b... was expected"},
      {"#x", {1, 3}, "the end of the text was found, but a hexadecimal digit was expected"},
      {"#b012", {1, 5}, "the character 2 was found, but a binary digit was expected"},
      {"#xfg", {1, 4}, "the character g was found, but a hexadecimal digit was expected"},
      {"12a", {1, 3}, "the character a was found, but the end of a number was expected"},
      {"\n |ab", {2, 2}, "a symbol starts here, but the text ends before its closing bar"},
      {"|a\\b|", {1, 3}, "the character \\ cannot stand in a symbol between bars"},
      {"|a\x01|", {1, 3}, "the byte 0x01 cannot stand in a symbol between bars"},
      {"\"ab\"\"", {1, 1}, "a string starts here, but the text ends before it is closed"},
  };
  for (const Refusal& row : rows) {
    SCOPED_TRACE(row.text);
    try {
      read_all(row.text);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const InputError& e) {
      EXPECT_EQ(e.what(), row.sentence);
      EXPECT_EQ(e.get_place().line, row.place.line);
      EXPECT_EQ(e.get_place().column, row.place.column);
    }
  }
}

TEST(Lexer, SkipsAListOfAnyDepth)
{
  constexpr std::size_t kDepth = 1'000'000;
  const std::string text = "(" + std::string(kDepth, '(') + "|)|" + std::string(kDepth, ')') + ") end";
  Lexer lexer(text);
  const Token open = lexer.next();
  lexer.skip_list(open.position);
  EXPECT_EQ(lexer.next().text, "end");
}

TEST(Lexer, SaysWhichListIsNotClosed)
{
  Lexer lexer("\n (a (b)");
  const Token open = lexer.next();
  try {
    lexer.skip_list(open.position);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const InputError& e) {
    EXPECT_STREQ(e.what(), "a parenthesis opens here, but the text ends before it is closed");
    EXPECT_EQ(e.get_place(), (Place{2, 2}));
  }
}

TEST(Lexer, RefusesReservedWordsAsNames)
{
  Lexer quoted("|let|");
  EXPECT_EQ(quoted.expect_name("a name").text, "let");
  Lexer plain("let");
  try {
    plain.expect_name("a name");
    ADD_FAILURE() << "nothing was thrown";
  } catch (const InputError& e) {
    EXPECT_STREQ(e.what(), "the reserved word let was found, but a name was expected");
  }
}

TEST(Excerpts, StayOnOneLineAndShort)
{
  EXPECT_EQ(make_excerpt("a\nb\tc\x7f"), "a?b?c?");
  EXPECT_EQ(make_excerpt(std::string(200, 'x')), std::string(200, 'x'));
  EXPECT_EQ(make_excerpt(std::string(201, 'x')), std::string(200, 'x') + "...");
}

}  // namespace
}  // namespace lumo::smtlib
