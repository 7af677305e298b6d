#include "lumo/smtlib/symbol_text.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/lexer.h"
#include "lumo/terms/characters.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {
namespace {

TEST(SymbolText, StandsBetweenBarsOnlyWhereItMust)
{
  const std::vector<std::pair<std::string_view, std::string_view>> rows = {
      {"x", "x"},
      {"x!1", "x!1"},
      {"~!@$%^&*_-+=<>.?/", "~!@$%^&*_-+=<>.?/"},
      {"@x", "@x"},
      {"bvadd", "bvadd"},
      {"", "||"},
      {"1x", "|1x|"},
      {"a b", "|a b|"},
      {"a\nb", "|a\nb|"},
      {"a:b", "|a:b|"},
      {"(", "|(|"},
      {"\xc3\xa9", "|\xc3\xa9|"},
      {"let", "|let|"},
      {"_", "|_|"},
      {"!", "|!|"},
      {"check-sat", "|check-sat|"},
      {"par", "|par|"},
      {"BINARY", "|BINARY|"},
  };
  for (const auto& [name, text] : rows)
    EXPECT_EQ(make_symbol_text(name), text);
}

TEST(SymbolText, IsReadAsTheSameName)
{
  for (int c = 1; c < 256; ++c) {
    const std::string name = {'a', static_cast<char>(c)};
    if (!is_quotable_character(static_cast<char>(c))) continue;
    const std::string text = make_symbol_text(name);
    Lexer lexer(text);
    const Token token = lexer.next();
    EXPECT_TRUE(token.is_symbol()) << c;
    EXPECT_EQ(token.text, name) << c;
    EXPECT_EQ(lexer.next().kind, TokenKind::kEnd) << c;
  }
}

TEST(SymbolText, RefusesNamesWithoutASpelling)
{
  for (const std::string_view name : {"a|b", "\\", "x\x01", "\x7f"}) {
    try {
      (void)make_symbol_text(name);
      ADD_FAILURE() << name;
    } catch (const Exception& e) {
      EXPECT_EQ(e.what(), "the name " + make_excerpt(name) +
                              " contains a bar, a backslash or a control character, but SMT-LIB 2 has no "
                              "symbol with one");
    }
  }
}

}  // namespace
}  // namespace lumo::smtlib
