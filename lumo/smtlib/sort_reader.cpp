#include "lumo/smtlib/sort_reader.h"

#include <charconv>
#include <limits>

namespace lumo::smtlib {

namespace {

constexpr std::string_view kWantedSort = "the sort Bool or (_ BitVec w)";
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

}  // namespace

const DataType* SortReader::read_anew(Lexer& lexer)
{
  parameters_.clear();
  return read_expression(lexer).sort;
}

void SortReader::read_definition(Lexer& lexer)
{
  const Token name = lexer.expect_name("a name");
  parameters_.clear();
  lexer.expect_open("a list of parameters");
  for (Token token = lexer.next(); token.kind != TokenKind::kClose; token = lexer.next()) {
    lexer.check_name(token, "the name of a parameter");
    if (!parameters_.emplace(token.text, parameters_.size()).second) {
      lexer.fail(token.position, describe(token) + " is a parameter already, but names must differ");
    }
  }
  const Expression body = read_expression(lexer);
  const bool is_known =
      name.text == "Bool" || name.text == "BitVec" ||
      !definitions_.try_emplace(std::string(name.text), Definition{parameters_.size(), body}).second;
  if (is_known) {
    lexer.fail(name.position, describe(name) + " is defined here, but it is a sort already");
  }
  order_.emplace_back(name.text);
}

unsigned long SortReader::read_width(Lexer& lexer)
{
  const Token token = lexer.expect(TokenKind::kNumeral, "a numeral as the width");
  unsigned long width = 0;
  const auto [end, failure] =
      std::from_chars(token.text.data(), token.text.data() + token.text.size(), width);
  if (failure != std::errc() || width == 0 || width > TermManager::kMaxWidth) {
    lexer.refuse(token, "a width from 1 to " + std::to_string(TermManager::kMaxWidth));
  }
  return width;
}

void SortReader::forget(std::size_t count)
{
  for (; order_.size() > count; order_.pop_back())
    definitions_.erase(order_.back());
}

SortReader::Expression SortReader::read_expression(Lexer& lexer)
{
  applications_.clear();
  arguments_.clear();
  for (;;) {
    const Token token = lexer.next();
    Expression found =
        !applications_.empty() && token.kind == TokenKind::kClose ? close(lexer) : read_start(lexer, token);
    if (found.sort == nullptr && found.parameter == kNone) continue;
    if (applications_.empty()) return found;
    arguments_.push_back(found);
  }
}

SortReader::Expression SortReader::read_start(Lexer& lexer, const Token& first)
{
  if (first.is_symbol()) return read_name(lexer, first);
  if (first.kind != TokenKind::kOpen) lexer.refuse(first, kWantedSort);

  const Token head = lexer.next();
  if (head.is_word("_")) {
    recent_sort_ = read_bit_vector(lexer);
    recent_text_ = lexer.get_text(first.position, lexer.get_position());
    return {recent_sort_, kNone};
  }
  if (!head.is_symbol()) lexer.refuse(head, kWantedSort);
  const auto place = definitions_.find(std::string(head.text));
  if (place == definitions_.end() || place->second.num_parameters == 0) lexer.refuse(head, kWantedSort);
  applications_.push_back({&place->second, first.position, arguments_.size()});
  return {nullptr, kNone};
}

SortReader::Expression SortReader::read_name(Lexer& lexer, const Token& name) const
{
  const auto parameter = parameters_.find(name.text);
  if (parameter != parameters_.end()) return {nullptr, parameter->second};
  if (name.text == "Bool") return {mgr_.make_bool_type(), kNone};
  const auto place = definitions_.find(std::string(name.text));
  if (place == definitions_.end()) lexer.refuse(name, kWantedSort);
  if (place->second.num_parameters != 0) {
    lexer.fail(name.position, describe(name) + " was found without arguments, but the sort takes " +
                                  std::to_string(place->second.num_parameters));
  }
  return place->second.body;
}

/// Reads `BitVec w)`.
const DataType* SortReader::read_bit_vector(Lexer& lexer)
{
  const Token name = lexer.next();
  if (!name.is_symbol() || name.text != "BitVec") lexer.refuse(name, kWantedSort);
  const unsigned long width = read_width(lexer);
  lexer.expect_close("the end of the sort");
  return mgr_.make_bv_type(width);
}

/// Closes the innermost application.
SortReader::Expression SortReader::close(Lexer& lexer)
{
  const Application application = applications_.back();
  const std::size_t num_arguments = arguments_.size() - application.first;
  const std::size_t expected = application.definition->num_parameters;
  if (num_arguments != expected) {
    lexer.fail(application.position, "a sort with " + std::to_string(num_arguments) +
                                         (num_arguments == 1 ? " argument" : " arguments") +
                                         " was found, but it takes " + std::to_string(expected));
  }
  Expression result = application.definition->body;
  if (result.sort == nullptr) result = arguments_[application.first + result.parameter];
  arguments_.resize(application.first);
  applications_.pop_back();
  return result;
}

}  // namespace lumo::smtlib
