#include "lumo/smtlib/scanner.h"

#include <algorithm>
#include <array>
#include <string>

#include "lumo/smtlib/literals.h"
#include "lumo/smtlib/operators.h"

namespace lumo::smtlib {

namespace {

/// Digits and bits beyond which a literal is long. Z3 reads it in time quadratic in the digits and, in decimal,
/// takes memory quadratic in the bits.
constexpr std::size_t kMaxDigits = 512;
constexpr unsigned long kMaxBits = 2048;

bool is_decimal_literal_name(const Token& token)
{
  return token.kind == TokenKind::kSymbol && token.text.size() > 2 && token.text.starts_with("bv") &&
         std::all_of(token.text.begin() + 2, token.text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

// Whatever is not here would change what is asked, asks for more than one answer, or is not known.
const Scanner::Command Scanner::kCommands[] = {
    {"assert", &Scanner::assert_term},
    {"check-sat", &Scanner::check_sat},
    {"declare-const", &Scanner::declare_const},
    {"declare-fun", &Scanner::declare_fun},
    {"define-const", &Scanner::define_const},
    {"define-fun", &Scanner::define_fun},
    {"define-sort", &Scanner::define_sort},
    {"echo", &Scanner::skip},
    {"exit", &Scanner::exit},
    {"get-assertions", &Scanner::skip},
    {"get-assignment", &Scanner::skip},
    {"get-info", &Scanner::skip},
    {"get-model", &Scanner::skip},
    {"get-option", &Scanner::skip},
    {"get-proof", &Scanner::skip},
    {"get-unsat-assumptions", &Scanner::skip},
    {"get-unsat-core", &Scanner::skip},
    {"get-value", &Scanner::skip},
    {"set-info", &Scanner::set_info},
    {"set-logic", &Scanner::skip},
    {"set-option", &Scanner::skip},
};

void Scanner::scan()
{
  // Z3 counts columns from 1 in the first line and from 0 in the others; so the first line is an empty one.
  rewritten_.insert("\n", 0);
  if (const std::size_t zero = text_.find('\0'); zero != std::string_view::npos) {
    throw InputError(find_place(text_, zero), "the byte 0x00 was found, but text was expected");
  }
  while (!is_done_)
    scan_command();
}

void Scanner::scan_command()
{
  const Token open = lexer_.next();
  if (open.kind == TokenKind::kEnd) {
    is_done_ = true;
    return;
  }
  if (open.kind != TokenKind::kOpen) refuse(open, "a command in parentheses");
  place_ = open.place;
  start_ = lexer_.get_position() - 1;
  replacements_.clear();
  const Token name = lexer_.next();
  for (const Command& command : kCommands) {
    if (!name.is_word(command.name)) continue;
    (this->*command.action)();
    return;
  }
  if (name.kind != TokenKind::kSymbol) refuse(name, "the name of a command");
  throw InputError(place_, "the command " + make_excerpt(name.text) +
                               " was found, but only declarations, definitions, assertions and one check-sat "
                               "were expected");
}

Token Scanner::read_new_name()
{
  const Token name = lexer_.expect_name("a name");
  if (find_operator(name.text) != nullptr || name.text == "true" || name.text == "false") {
    throw InputError(name.place, describe(name) + " is declared here, but the language defines it");
  }
  if (!names_.insert(name.text).second) {
    throw InputError(name.place, describe(name) + " is declared here, but it has a meaning already");
  }
  return name;
}

// --------------------------------------------------------------------------------------------------------
// The commands; each reads up to its closing parenthesis.

void Scanner::check_sat()
{
  close_command();
  if (has_query_) throw InputError(place_, "a second check-sat was found, but only one was expected");
  has_query_ = true;
}

void Scanner::set_info()
{
  Lexer content = lexer_;
  skip();
  const Token keyword = content.next();
  if (keyword.kind == TokenKind::kKeyword) infos_.push_back({keyword, content});
}

void Scanner::exit()
{
  close_command();
  is_done_ = true;
}

void Scanner::assert_term()
{
  if (has_query_) {
    throw InputError(place_, "an assertion was found after check-sat, but all were expected before it");
  }
  read_term();
  keep_command();
  items_.push_back({place_, false, {}});
}

void Scanner::declare_const() { declare(read_new_name()); }

void Scanner::declare_fun()
{
  const Token name = read_new_name();
  lexer_.expect(TokenKind::kOpen, "a list of argument sorts");
  const Token end = lexer_.next();
  if (end.kind != TokenKind::kClose) {
    throw InputError(name.place, describe(name) +
                                     " is declared with arguments, but only constants, without arguments, "
                                     "were expected");
  }
  declare(name);
}

void Scanner::declare(const Token& name)
{
  const DataType* sort = sorts_.read();
  close_command();
  keep_command();
  declarations_.push_back({name, sort});
}

void Scanner::define_const() { define(read_new_name()); }

void Scanner::define_fun()
{
  const Token name = read_new_name();
  lexer_.expect(TokenKind::kOpen, "a list of parameters");
  Token token = lexer_.next();
  if (token.kind == TokenKind::kClose) {
    define(name);
    return;
  }
  for (; token.kind != TokenKind::kClose; token = lexer_.next()) {
    if (token.kind != TokenKind::kOpen) refuse(token, "a parameter");
    lexer_.expect_name("the name of a parameter");
    sorts_.read();
    lexer_.expect(TokenKind::kClose, "the end of the parameter");
  }
  sorts_.read();
  read_term();
  keep_command();
}

/// Reads a sort and a term, which give the name its meaning.
void Scanner::define(const Token& name)
{
  const std::size_t sort = lexer_.get_position();
  sorts_.read();
  const std::size_t term = lexer_.get_position();
  read_term();
  const std::size_t end = lexer_.get_position();

  const std::string symbol = "|" + std::string(name.text) + "| ";
  declare_replacements();
  rewritten_.insert("(declare-const " + symbol, start_);
  rewritten_.keep(sort, term);
  rewritten_.insert(")(assert (= " + symbol, start_);
  keep(term, end);
  rewritten_.insert(")\n", start_);
  items_.push_back({place_, true, name.text});
}

void Scanner::define_sort()
{
  const Token name = lexer_.expect_name("a name");
  lexer_.expect(TokenKind::kOpen, "a list of parameters");
  const Token end = lexer_.next();
  if (end.kind != TokenKind::kClose) refuse(end, "a sort definition without parameters");
  const DataType* sort = sorts_.read();
  close_command();
  if (!sorts_.define(name.text, sort)) {
    throw InputError(name.place, describe(name) + " is defined here, but it is a sort already");
  }
  keep_command();
}

// --------------------------------------------------------------------------------------------------------
// Terms

/// Goes to the end of the command, which must come after one term, and notes the term's long literals.
void Scanner::read_term()
{
  // The tokens before, and where they end: a decimal literal is written ( _ bv<digits> <width> ).
  std::array<Token, 3> last{};
  std::array<std::size_t, 3> ends{};
  std::size_t num_terms = 0;
  for (std::size_t depth = 1; depth > 0;) {
    const Token token = lexer_.next();
    if (token.kind == TokenKind::kEnd) {
      throw InputError(place_, "a parenthesis opens here, but the text ends before it is closed");
    }
    if (depth == 1 && token.kind != TokenKind::kClose && ++num_terms > 1) refuse(token, "a single term");
    if (token.kind == TokenKind::kOpen) {
      ++depth;
    } else if (token.kind == TokenKind::kClose) {
      --depth;
    } else if (token.text.size() > kMaxDigits) {
      note_literal(token);
    } else if (last[0].kind == TokenKind::kOpen && last[1].is_word("_") && is_decimal_literal_name(last[2])) {
      if (note_decimal_literal(last[2], token, ends[0] - 1)) --depth;
    }
    last = {last[1], last[2], token};
    ends = {ends[1], ends[2], lexer_.get_position()};
  }
  if (num_terms == 0) throw InputError(place_, "a command without a term was found, but one was expected");
}

void Scanner::note_literal(const Token& token)
{
  const bool is_hexadecimal = token.kind == TokenKind::kHexadecimal;
  if (!is_hexadecimal && token.kind != TokenKind::kBinary) return;
  const std::size_t num_digits = token.text.size();
  note_replacement(
      lexer_.get_position() - num_digits - 2,
      make_numeral(mgr_, token.text, is_hexadecimal ? 16 : 2, is_hexadecimal ? 4 * num_digits : num_digits));
}

/// If the literal whose width comes last is long, reads on to its closing parenthesis.
bool Scanner::note_decimal_literal(const Token& name, const Token& width, std::size_t first)
{
  const unsigned long w = read_width(width);
  if (name.text.size() <= kMaxDigits && w <= kMaxBits) return false;
  lexer_.expect(TokenKind::kClose, "the end of the literal");
  note_replacement(first, make_numeral(mgr_, name.text.substr(2), 10, w));
  return true;
}

/// What lies between the position and that of the lexer is a literal.
void Scanner::note_replacement(std::size_t first, const Term* literal)
{
  // No symbol of a text contains a control character, so these names cannot collide with others.
  const std::string name = "\x01" + std::to_string(literals_.size());
  literals_.emplace(name, literal);
  replacements_.push_back({first, lexer_.get_position(), name});
}

/// Declares the constants that stand for the command's long literals.
void Scanner::declare_replacements()
{
  for (const Replacement& replacement : replacements_) {
    const Term* literal = literals_.find(replacement.name)->second;
    rewritten_.insert("(declare-const |" + replacement.name + "| " +
                          literal->get_symbol()->get_output_type()->to_string() + ")\n",
                      replacement.first);
  }
}

/// Keeps a piece of the command, save its long literals.
void Scanner::keep(std::size_t first, std::size_t last)
{
  for (const Replacement& replacement : replacements_) {
    rewritten_.keep(first, replacement.first);
    rewritten_.insert("|" + replacement.name + "|", replacement.first);
    first = replacement.last;
  }
  rewritten_.keep(first, last);
}

void Scanner::keep_command()
{
  declare_replacements();
  keep(start_, lexer_.get_position());
  rewritten_.insert("\n", start_);
}

}  // namespace lumo::smtlib
