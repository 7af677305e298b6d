#ifndef LUMO_SMTLIB_LEXER_H
#define LUMO_SMTLIB_LEXER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumo/smtlib/input_error.h"

namespace lumo::smtlib {

enum class TokenKind : std::uint8_t
{
  kOpen,
  kClose,
  kSymbol,        ///< text: the name
  kQuotedSymbol,  ///< text: the name, which stands between the bars
  kKeyword,       ///< text: with the colon
  kNumeral,       ///< text: decimal digits
  kDecimal,
  kHexadecimal,  ///< text: the digits after #x
  kBinary,       ///< text: the digits after #b
  kString,       ///< text: between the quotation marks, inner ones still doubled
  kEnd,          ///< the end of the text
};

struct Token
{
  TokenKind kind;
  std::string_view text;  ///< lies in the text that is read
  Place place;

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

/// Splits SMT-LIB 2 text into tokens; white space and comments fall away. What is no token is an InputError.
class Lexer
{
 public:
  /// The text must outlive the lexer and its tokens.
  explicit Lexer(std::string_view text) : text_(text) {}

  Token next();
  /// How many characters lie before the place where the next token is looked for.
  [[nodiscard]] std::size_t get_position() const { return position_; }

  /// The next token, which must be of that kind; `wanted` names it in the message if it is not.
  Token expect(TokenKind kind, std::string_view wanted);
  /// The next token, which must be a symbol that is no reserved word.
  Token expect_name(std::string_view wanted);
  /// Skips to the parenthesis that closes the one at `open`, behind which the lexer stands.
  void skip_list(Place open);

 private:
  [[nodiscard]] Place get_place() const { return {line_, position_ - line_start_ + 1}; }
  [[nodiscard]] bool at_end() const { return position_ == text_.size(); }
  void advance();
  void skip_blank();
  Token read_delimited(TokenKind kind, char delimiter);
  Token read_literal();
  Token read_number();
  Token read_word();
  template <class Predicate>
  std::string_view take_while(Predicate predicate);

  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t line_ = 1;
  std::size_t line_start_ = 0;
};

/// Throws the InputError "<found> was found, but <wanted> was expected".
[[noreturn]] void refuse(const Token& found, std::string_view wanted);

}  // namespace lumo::smtlib

#endif
