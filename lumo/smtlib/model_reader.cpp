#include "lumo/smtlib/model_reader.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "lumo/smtlib/lexer.h"
#include "lumo/smtlib/literals.h"
#include "lumo/smtlib/sort_reader.h"

namespace lumo::smtlib {

namespace {

class ModelReader
{
 public:
  ModelReader(TermManager& mgr, std::span<const Term* const> constants, std::string_view text)
      : mgr_(mgr), lexer_(text), sorts_(mgr)
  {
    for (const Term* constant : constants)
      constants_.emplace(constant->get_symbol()->get_name(), Known{constant, false});
  }

  std::vector<ModelValue> read();

 private:
  struct Known
  {
    const Term* constant;
    bool is_defined;
  };

  Token read_start();
  /// Reads entries as long as `next` opens one, and returns the token after them.
  Token read_entries(Token next);
  void read_entry(const Token& open, const Token& word);
  Token read_name();
  void read_definition(const Token& open);
  void read_value_of(const Term* constant);
  const Term* read_value(const DataType* sort);
  const Term* read_truth_value(const Token& token);
  const Term* read_bit_vector(const Token& token, const DataType* sort);
  const Term* read_decimal_literal(const DataType* sort);
  [[noreturn]] void refuse_error(const Token& open);

  TermManager& mgr_;
  Lexer lexer_;
  SortReader sorts_;
  std::unordered_map<std::string_view, Known> constants_;
  std::vector<ModelValue> values_;
};

std::vector<ModelValue> ModelReader::read()
{
  const Token open = read_start();
  const Token head = lexer_.next();
  Token next = head;
  if (head.is_symbol() && !head.is_word("model")) {
    // Definitions without a list; the parenthesis of the first one was already read.
    read_entry(open, head);
    next = read_entries(lexer_.next());
  } else {
    if (head.is_word("model")) next = lexer_.next();
    const Token end = read_entries(next);
    if (end.kind != TokenKind::kClose) lexer_.refuse(end, "a definition or the end of the model");
    next = lexer_.next();
  }
  while (next.is_word("success"))
    next = lexer_.next();
  if (next.kind != TokenKind::kEnd) lexer_.refuse(next, "the end of the text");
  return std::move(values_);
}

/// Reads up to the first parenthesis of the model.
Token ModelReader::read_start()
{
  Token token = lexer_.next();
  while (token.is_word("success"))
    token = lexer_.next();
  if (token.is_word("sat")) token = lexer_.next();
  if (token.is_word("unsat") || token.is_word("unknown")) {
    lexer_.fail(token.position,
                "the answer " + std::string(token.text) + " was found, but a model was expected");
  }
  if (token.kind != TokenKind::kOpen) lexer_.refuse(token, "a model");
  return token;
}

Token ModelReader::read_entries(Token next)
{
  for (; next.kind == TokenKind::kOpen; next = lexer_.next())
    read_entry(next, lexer_.next());
  return next;
}

void ModelReader::read_entry(const Token& open, const Token& word)
{
  constexpr std::string_view kPassedOver[] = {"declare-const", "declare-datatype", "declare-datatypes",
                                              "declare-fun",   "declare-sort",     "define-fun-rec",
                                              "define-sort",   "define-funs-rec",  "forall"};
  if (word.is_word("define-fun")) {
    read_definition(open);
  } else if (word.is_word("error")) {
    refuse_error(open);
  } else if (word.kind == TokenKind::kSymbol &&
             std::find(std::begin(kPassedOver), std::end(kPassedOver), word.text) != std::end(kPassedOver))
  {
    lexer_.skip_list(open.position);
  } else {
    lexer_.refuse(word, "define-fun");
  }
}

/// Reads the defined name. Z3 prints reserved words without bars if they are names, and for the empty
/// name it prints nothing.
Token ModelReader::read_name()
{
  Lexer ahead = lexer_;
  const Token token = ahead.next();
  if (token.kind == TokenKind::kOpen) return {TokenKind::kQuotedSymbol, {}, token.position};
  if (!token.is_symbol()) lexer_.refuse(token, "a name");
  lexer_ = ahead;
  return token;
}

void ModelReader::read_definition(const Token& open)
{
  const Token name = read_name();
  const auto known = constants_.find(name.text);
  if (known == constants_.end()) {
    lexer_.skip_list(open.position);
    return;
  }
  if (known->second.is_defined) {
    lexer_.fail(name.position, describe(name) + " is defined here, but it has a value already");
  }
  known->second.is_defined = true;
  read_value_of(known->second.constant);
}

/// Reads the rest of a definition, after the name.
void ModelReader::read_value_of(const Term* constant)
{
  lexer_.expect_open("a list of parameters");
  lexer_.expect_close("an empty list of parameters");
  const DataType* sort = constant->get_symbol()->get_output_type();
  // The sort that is read has no position: get that of its first token by reading it twice.
  Lexer ahead = lexer_;
  const std::size_t position = ahead.next().position;
  const DataType* found = sorts_.read(lexer_);
  if (found != sort) {
    lexer_.fail(position, "the sort " + found->to_string() + " was found, but " + sort->to_string() +
                              ", the sort of the constant " +
                              make_excerpt(constant->get_symbol()->get_name()) + ", was expected");
  }
  const Term* value = read_value(sort);
  lexer_.expect_close("the end of the definition");
  values_.push_back({constant, value});
}

const Term* ModelReader::read_value(const DataType* sort)
{
  const Token token = lexer_.next();
  return sort->is_bool() ? read_truth_value(token) : read_bit_vector(token, sort);
}

const Term* ModelReader::read_truth_value(const Token& token)
{
  if (token.is_word("true")) return mgr_.make_true();
  if (token.is_word("false")) return mgr_.make_false();
  lexer_.refuse(token, "true or false");
}

const Term* ModelReader::read_bit_vector(const Token& token, const DataType* sort)
{
  const unsigned long width = sort->get_width();
  switch (token.kind) {
    case TokenKind::kOpen:
      return read_decimal_literal(sort);
    case TokenKind::kBinary:
      if (token.text.size() == width) return make_literal(mgr_, token);
      break;
    case TokenKind::kHexadecimal:
      if (4 * token.text.size() == width) return make_literal(mgr_, token);
      break;
    default:
      break;
  }
  lexer_.refuse(token, "a literal of the sort " + sort->to_string());
}

/// Reads the rest of a literal `(_ bvN w)`, after its opening parenthesis.
const Term* ModelReader::read_decimal_literal(const DataType* sort)
{
  const std::string wanted = "a literal of the sort " + sort->to_string();
  const Token underscore = lexer_.next();
  if (!underscore.is_word("_")) lexer_.refuse(underscore, wanted);
  const Token number = lexer_.next();
  if (!number.is_symbol() || !is_decimal_literal_name(number.text)) lexer_.refuse(number, wanted);
  const Token width = Lexer(lexer_).next();
  if (sorts_.read_width(lexer_) != sort->get_width()) {
    lexer_.refuse(width, "the width " + std::to_string(sort->get_width()));
  }
  lexer_.expect_close("the end of the literal");
  const Term* value = make_decimal_literal(mgr_, number.text, sort->get_width());
  if (value == nullptr) lexer_.refuse(number, wanted);
  return value;
}

/// Quotes the message in a solver's `(error "...")`; the word `error` was already read.
void ModelReader::refuse_error(const Token& open)
{
  const Token message = lexer_.next();
  const std::string found =
      message.kind == TokenKind::kString ? "the error \"" + make_excerpt(message.text) + "\"" : "an error";
  lexer_.fail(open.position, found + " was found, but a model was expected");
}

}  // namespace

std::vector<ModelValue> read_model(TermManager& mgr, std::span<const Term* const> constants,
                                   std::string_view text)
{
  return ModelReader(mgr, constants, text).read();
}

}  // namespace lumo::smtlib
