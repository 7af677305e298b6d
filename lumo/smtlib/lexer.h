#ifndef LUMO_SMTLIB_LEXER_H
#define LUMO_SMTLIB_LEXER_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/characters.h"

namespace lumo::smtlib {

enum class TokenKind : std::uint8_t
{
  kOpen,
  kClose,
  kSymbol,        ///< text: the name
  kQuotedSymbol,  ///< text: the name between the bars
  kKeyword,       ///< text: with the colon
  kNumeral,       ///< text: decimal digits
  kDecimal,
  kHexadecimal,  ///< text: the digits after #x
  kBinary,       ///< text: the digits after #b
  kString,       ///< text: between the quotation marks, with inner ones still doubled
  kEnd,          ///< the end of the text
};

struct Token
{
  TokenKind kind;
  std::string_view text;  ///< a part of the text that is read
  std::size_t position;   ///< of the token's first character in the text

  [[nodiscard]] bool is_symbol() const
  {
    return kind == TokenKind::kSymbol || kind == TokenKind::kQuotedSymbol;
  }
  /// Whether the token is this word; a symbol between bars is never a word of the language.
  [[nodiscard]] bool is_word(std::string_view word) const
  {
    return kind == TokenKind::kSymbol && text == word;
  }
};

/// The token as a message names it: `the symbol x`, `a closing parenthesis`.
[[nodiscard]] std::string describe(const Token& token);

/// Splits SMT-LIB 2 text into tokens; white space, comments, and a byte order mark at the start of the text are
/// skipped. Text that is not a token is an InputError.
///
/// Tokens carry positions. Lines are counted only when a place is requested, and only once for places that are
/// requested in the order of the text.
class Lexer
{
 public:
  /// The text must outlive the lexer and its tokens. `start` is the place of its first character.
  explicit Lexer(std::string_view text, Place start = {});

  Token next()
  {
    skip_blank();
    const std::size_t position = get_position();
    if (at_end()) return {TokenKind::kEnd, {}, position};
    const char c = *next_;
    if (is_symbol_start(c)) return {TokenKind::kSymbol, take_while(is_symbol_character), position};
    if (c != '(' && c != ')') return read_other(c);
    const char* start = next_++;
    return {c == '(' ? TokenKind::kOpen : TokenKind::kClose, {start, 1}, position};
  }
  /// The position at which the search for the next token starts.
  [[nodiscard]] std::size_t get_position() const { return static_cast<std::size_t>(next_ - text_.data()); }
  /// Continues at a position at which a token may begin.
  void set_position(std::size_t position) { next_ = text_.data() + position; }
  /// The line and the column of a position.
  [[nodiscard]] Place get_place(std::size_t position) const;
  [[nodiscard]] Place get_place(const Token& token) const { return get_place(token.position); }
  /// The text between two positions.
  [[nodiscard]] std::string_view get_text(std::size_t first, std::size_t last) const
  {
    return text_.substr(first, last - first);
  }

  /// The next token, which must be of that kind; `wanted` names it in the message if it is not.
  Token expect(TokenKind kind, std::string_view wanted);
  /// The same for parentheses.
  void expect_open(std::string_view wanted) { expect_parenthesis('(', TokenKind::kOpen, wanted); }
  void expect_close(std::string_view wanted) { expect_parenthesis(')', TokenKind::kClose, wanted); }
  /// Reads exactly these characters if they come next after white space; the last of them must end a token.
  bool take_text(std::string_view text)
  {
    skip_blank();
    if (static_cast<std::size_t>(end_ - next_) < text.size() ||
        std::memcmp(next_, text.data(), text.size()) != 0)
      return false;
    next_ += text.size();
    return true;
  }
  /// The next token, which must be a symbol that is not a reserved word.
  Token expect_name(std::string_view wanted);
  /// The same for a token that was read.
  void check_name(const Token& token, std::string_view wanted) const;
  /// Skips to the parenthesis that closes the one at position `open`, which was already read.
  void skip_list(std::size_t open);

  /// Throws the InputError "<found> was found, but <wanted> was expected" at the token.
  [[noreturn]] void refuse(const Token& found, std::string_view wanted) const;
  /// Throws an InputError with that sentence at the position.
  [[noreturn]] void fail(std::size_t position, const std::string& sentence) const;

 private:
  [[nodiscard]] bool at_end() const { return next_ == end_; }
  void skip_blank()
  {
    const char* next = next_;
    while (next != end_ && is_blank(*next))
      ++next;
    next_ = next;
    if (next != end_ && *next == ';') [[unlikely]]
      skip_comments();
  }
  /// Skips the comment that begins here, and white space and comments after it.
  void skip_comments();
  void expect_parenthesis(char c, TokenKind kind, std::string_view wanted)
  {
    skip_blank();
    if (!at_end() && *next_ == c) [[likely]]
      ++next_;
    else
      static_cast<void>(expect(kind, wanted));
  }
  /// Reads the longest piece whose characters all satisfy the predicate.
  template <class Predicate>
  std::string_view take_while(Predicate predicate)
  {
    const char* first = next_;
    const char* last = first;
    while (last != end_ && predicate(*last))
      ++last;
    next_ = last;
    return {first, static_cast<std::size_t>(last - first)};
  }

  /// Reads a token that is not a parenthesis or a symbol without bars, and begins with that character.
  Token read_other(char first);
  Token read_quoted_symbol();
  Token read_string();
  Token read_literal();
  Token read_number();
  Token read_keyword();
  [[noreturn]] void refuse_character() const;

  std::string_view text_;
  const char* next_;       ///< where the search for the next token starts
  const char* end_;        ///< of the text
  std::size_t first_ = 0;  ///< the position after the byte order mark
  Place start_;
  // The last position whose line was counted: the text before it need not be read again.
  mutable std::size_t counted_ = 0;     ///< a position
  mutable std::size_t line_start_ = 0;  ///< the position of the first character of its line
  mutable std::size_t line_ = 1;
};

}  // namespace lumo::smtlib

#endif
