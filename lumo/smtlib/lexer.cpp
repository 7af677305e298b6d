#include "lumo/smtlib/lexer.h"

#include <algorithm>

#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/characters.h"

namespace lumo::smtlib {

namespace {

std::string describe_character(char c)
{
  const auto code = static_cast<unsigned char>(c);
  if (code > ' ' && code < 0x7f) return std::string("the character ") + c;
  constexpr std::string_view kDigits = "0123456789abcdef";
  return std::string("the byte 0x") + kDigits[code / 16] + kDigits[code % 16];
}

}  // namespace

std::string describe(const Token& token)
{
  const std::string excerpt = make_excerpt(token.text);
  switch (token.kind) {
    case TokenKind::kOpen:
      return "an opening parenthesis";
    case TokenKind::kClose:
      return "a closing parenthesis";
    case TokenKind::kSymbol:
      return "the symbol " + excerpt;
    case TokenKind::kQuotedSymbol:
      return "the symbol |" + excerpt + "|";
    case TokenKind::kKeyword:
      return "the keyword " + excerpt;
    case TokenKind::kNumeral:
      return "the numeral " + excerpt;
    case TokenKind::kDecimal:
      return "the decimal " + excerpt;
    case TokenKind::kHexadecimal:
      return "the literal #x" + excerpt;
    case TokenKind::kBinary:
      return "the literal #b" + excerpt;
    case TokenKind::kString:
      return "a string";
    case TokenKind::kEnd:
      break;
  }
  return "the end of the text";
}

Lexer::Lexer(std::string_view text, Place start)
    : text_(text), next_(text.data()), end_(text.data() + text.size()), start_(start)
{
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (!text.starts_with(kByteOrderMark)) return;
  counted_ = line_start_ = first_ = kByteOrderMark.size();
  set_position(first_);
}

Place Lexer::get_place(std::size_t position) const
{
  if (position < counted_) {
    counted_ = line_start_ = first_;
    line_ = 1;
  }
  const std::string_view skipped = text_.substr(0, position);
  for (std::size_t end = skipped.find('\n', counted_); end != std::string_view::npos;
       end = skipped.find('\n', end + 1))
  {
    ++line_;
    line_start_ = end + 1;
  }
  counted_ = position;
  const std::size_t column = position - line_start_ + 1;
  return line_ == 1 ? Place{start_.line, start_.column + column - 1} : Place{start_.line + line_ - 1, column};
}

Token Lexer::expect(TokenKind kind, std::string_view wanted)
{
  const Token token = next();
  if (token.kind != kind) refuse(token, wanted);
  return token;
}

Token Lexer::expect_name(std::string_view wanted)
{
  const Token token = next();
  check_name(token, wanted);
  return token;
}

void Lexer::check_name(const Token& token, std::string_view wanted) const
{
  if (!token.is_symbol()) refuse(token, wanted);
  if (token.kind == TokenKind::kSymbol && is_reserved_word(token.text)) {
    fail(token.position, "the reserved word " + std::string(token.text) + " was found, but " +
                             std::string(wanted) + " was expected");
  }
}

void Lexer::skip_list(std::size_t open)
{
  for (std::size_t depth = 1; depth > 0;) {
    const Token token = next();
    if (token.kind == TokenKind::kEnd) {
      fail(open, "a parenthesis opens here, but the text ends before it is closed");
    }
    if (token.kind == TokenKind::kOpen) ++depth;
    if (token.kind == TokenKind::kClose) --depth;
  }
}

void Lexer::refuse(const Token& found, std::string_view wanted) const
{
  fail(found.position, describe(found) + " was found, but " + std::string(wanted) + " was expected");
}

void Lexer::fail(std::size_t position, const std::string& sentence) const
{
  throw InputError(get_place(position), sentence);
}

void Lexer::skip_comments()
{
  while (!at_end() && *next_ == ';') {
    next_ = std::find(next_, end_, '\n');
    take_while(is_blank);
  }
}

Token Lexer::read_other(char first)
{
  switch (first) {
    case '|':
      return read_quoted_symbol();
    case '"':
      return read_string();
    case '#':
      return read_literal();
    case ':':
      return read_keyword();
    default:
      break;
  }
  if (is_digit(first)) return read_number();
  refuse_character();
}

Token Lexer::read_quoted_symbol()
{
  const std::size_t start = get_position();
  ++next_;
  const std::string_view content = take_while(is_quotable_character);
  if (at_end()) fail(start, "a symbol starts here, but the text ends before its closing bar");
  const char end = *next_;
  if (end != '|') fail(get_position(), describe_character(end) + " cannot stand in a symbol between bars");
  ++next_;
  return {TokenKind::kQuotedSymbol, content, start};
}

Token Lexer::read_string()
{
  const std::size_t start = get_position();
  ++next_;
  for (;;) {
    const std::size_t end = text_.find('"', get_position());
    if (end == std::string_view::npos) {
      fail(start, "a string starts here, but the text ends before it is closed");
    }
    set_position(end + 1);
    // Two quotation marks in a string mean one.
    if (at_end() || *next_ != '"') return {TokenKind::kString, get_text(start + 1, end), start};
    ++next_;
  }
}

Token Lexer::read_literal()
{
  const std::size_t start = get_position();
  ++next_;
  const char base = at_end() ? '\0' : *next_;
  if (base != 'x' && base != 'b') {
    fail(start, "the character # was found, but a literal #x... or #b... was expected");
  }
  ++next_;
  const std::string_view digits =
      base == 'x' ? take_while(is_hexadecimal_digit) : take_while(is_binary_digit);
  if (digits.empty() || (!at_end() && is_symbol_character(*next_))) {
    fail(get_position(), std::string(at_end() ? "the end of the text" : describe_character(*next_)) +
                             " was found, but a " + (base == 'x' ? "hexadecimal" : "binary") +
                             " digit was expected");
  }
  return {base == 'x' ? TokenKind::kHexadecimal : TokenKind::kBinary, digits, start};
}

Token Lexer::read_number()
{
  const std::size_t start = get_position();
  take_while(is_digit);
  TokenKind kind = TokenKind::kNumeral;
  if (end_ - next_ > 1 && next_[0] == '.' && is_digit(next_[1])) {
    kind = TokenKind::kDecimal;
    ++next_;
    take_while(is_digit);
  }
  if (!at_end() && is_symbol_character(*next_)) {
    fail(get_position(), describe_character(*next_) + " was found, but the end of a number was expected");
  }
  return {kind, get_text(start, get_position()), start};
}

Token Lexer::read_keyword()
{
  const std::size_t start = get_position();
  ++next_;
  if (take_while(is_symbol_character).empty()) refuse_character();
  return {TokenKind::kKeyword, get_text(start, get_position()), start};
}

/// Refuses the next character, since no token begins with it.
void Lexer::refuse_character() const
{
  const std::string found = at_end() ? "the end of the text" : describe_character(*next_);
  fail(get_position(), found + " was found, but a symbol, a literal or a parenthesis was expected");
}

}  // namespace lumo::smtlib
