#include "lumo/smtlib/sorts.h"

#include <charconv>
#include <string>

namespace lumo::smtlib {

namespace {

constexpr std::string_view kWantedSort = "the sort Bool or (_ BitVec w)";

}  // namespace

unsigned long read_width(const Token& token)
{
  if (token.kind != TokenKind::kNumeral) refuse(token, "a numeral as the width");
  unsigned long width = 0;
  const auto [end, failure] =
      std::from_chars(token.text.data(), token.text.data() + token.text.size(), width);
  if (failure != std::errc() || width == 0 || width > TermManager::kMaxWidth) {
    refuse(token, "a width from 1 to " + std::to_string(TermManager::kMaxWidth));
  }
  return width;
}

const DataType* SortReader::read()
{
  const Token first = lexer_.next();
  if (first.is_symbol()) {
    if (first.text == "Bool") return mgr_.make_bool_type();
    const auto place = defined_.find(first.text);
    if (place == defined_.end()) refuse(first, kWantedSort);
    return place->second;
  }
  if (first.kind != TokenKind::kOpen) refuse(first, kWantedSort);

  Token token = lexer_.next();
  if (!token.is_word("_")) refuse(token, kWantedSort);
  token = lexer_.next();
  if (!token.is_symbol() || token.text != "BitVec") refuse(token, kWantedSort);
  const unsigned long width = read_width(lexer_.next());
  lexer_.expect(TokenKind::kClose, "the end of the sort");
  return mgr_.make_bv_type(width);
}

bool SortReader::define(std::string_view name, const DataType* sort)
{
  return name != "Bool" && name != "BitVec" && defined_.emplace(name, sort).second;
}

}  // namespace lumo::smtlib
