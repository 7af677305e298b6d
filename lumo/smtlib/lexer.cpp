#include "lumo/smtlib/lexer.h"

#include "lumo/smtlib/symbol_text.h"

namespace lumo::smtlib {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_binary_digit(char c) { return c == '0' || c == '1'; }

bool is_hexadecimal_digit(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

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

void refuse(const Token& found, std::string_view wanted)
{
  throw InputError(found.place, describe(found) + " was found, but " + std::string(wanted) + " was expected");
}

Token Lexer::next()
{
  skip_blank();
  if (at_end()) return {TokenKind::kEnd, {}, get_place()};
  const char c = text_[position_];
  switch (c) {
    case '(':
    case ')': {
      const Token token{c == '(' ? TokenKind::kOpen : TokenKind::kClose, text_.substr(position_, 1),
                        get_place()};
      advance();
      return token;
    }
    case '|':
      return read_delimited(TokenKind::kQuotedSymbol, '|');
    case '"':
      return read_delimited(TokenKind::kString, '"');
    case '#':
      return read_literal();
    default:
      return is_digit(c) ? read_number() : read_word();
  }
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
  if (!token.is_symbol()) refuse(token, wanted);
  if (token.kind == TokenKind::kSymbol && is_reserved_word(token.text)) {
    throw InputError(token.place, "the reserved word " + std::string(token.text) + " was found, but " +
                                      std::string(wanted) + " was expected");
  }
  return token;
}

void Lexer::skip_list(Place open)
{
  for (std::size_t depth = 1; depth > 0;) {
    const Token token = next();
    if (token.kind == TokenKind::kEnd) {
      throw InputError(open, "a parenthesis opens here, but the text ends before it is closed");
    }
    if (token.kind == TokenKind::kOpen) ++depth;
    if (token.kind == TokenKind::kClose) --depth;
  }
}

void Lexer::advance()
{
  if (text_[position_] == '\n') {
    ++line_;
    line_start_ = position_ + 1;
  }
  ++position_;
}

void Lexer::skip_blank()
{
  while (!at_end()) {
    if (text_[position_] == ';') {
      while (!at_end() && text_[position_] != '\n')
        ++position_;
    } else if (is_blank(text_[position_])) {
      advance();
    } else {
      return;
    }
  }
}

Token Lexer::read_delimited(TokenKind kind, char delimiter)
{
  const bool is_string = kind == TokenKind::kString;
  const Place place = get_place();
  const std::size_t first = position_ + 1;
  for (advance(); !at_end(); advance()) {
    const char c = text_[position_];
    if (c == delimiter) {
      const std::string_view content = text_.substr(first, position_ - first);
      advance();
      // Two quotation marks in a string stand for one; the loop's step goes over the second.
      if (is_string && !at_end() && text_[position_] == delimiter) continue;
      return {kind, content, place};
    }
    if (!is_string && !is_quotable_character(c)) {
      throw InputError(get_place(), describe_character(c) + " cannot stand in a symbol between bars");
    }
  }
  throw InputError(place, is_string ? "a string starts here, but the text ends before it is closed"
                                    : "a symbol starts here, but the text ends before its closing bar");
}

Token Lexer::read_literal()
{
  const Place place = get_place();
  ++position_;
  const char base = at_end() ? '\0' : text_[position_];
  if (base != 'x' && base != 'b') {
    throw InputError(place, "the character # was found, but a literal #x... or #b... was expected");
  }
  ++position_;
  const std::string_view digits =
      base == 'x' ? take_while(is_hexadecimal_digit) : take_while(is_binary_digit);
  if (digits.empty() || (!at_end() && is_symbol_character(text_[position_]))) {
    throw InputError(get_place(),
                     std::string(at_end() ? "the end of the text" : describe_character(text_[position_])) +
                         " was found, but a " + (base == 'x' ? "hexadecimal" : "binary") +
                         " digit was expected");
  }
  return {base == 'x' ? TokenKind::kHexadecimal : TokenKind::kBinary, digits, place};
}

Token Lexer::read_number()
{
  const Place place = get_place();
  const std::size_t first = position_;
  take_while(is_digit);
  TokenKind kind = TokenKind::kNumeral;
  if (position_ + 1 < text_.size() && text_[position_] == '.' && is_digit(text_[position_ + 1])) {
    kind = TokenKind::kDecimal;
    ++position_;
    take_while(is_digit);
  }
  if (!at_end() && is_symbol_character(text_[position_])) {
    throw InputError(get_place(), describe_character(text_[position_]) +
                                      " was found, but the end of a number was expected");
  }
  return {kind, text_.substr(first, position_ - first), place};
}

Token Lexer::read_word()
{
  const Place place = get_place();
  const std::size_t first = position_;
  const bool is_keyword = text_[position_] == ':';
  if (is_keyword) ++position_;
  const std::string_view name = take_while(is_symbol_character);
  if (name.empty()) {
    const std::string found = at_end() ? "the end of the text" : describe_character(text_[position_]);
    throw InputError(get_place(),
                     found + " was found, but a symbol, a literal or a parenthesis was expected");
  }
  return {is_keyword ? TokenKind::kKeyword : TokenKind::kSymbol, text_.substr(first, position_ - first),
          place};
}

/// The longest piece from here on all of whose characters qualify; no line ends among them.
template <class Predicate>
std::string_view Lexer::take_while(Predicate predicate)
{
  const std::size_t first = position_;
  while (!at_end() && predicate(text_[position_]))
    ++position_;
  return text_.substr(first, position_ - first);
}

}  // namespace lumo::smtlib
