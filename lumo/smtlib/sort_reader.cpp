#include "lumo/smtlib/sort_reader.h"

#include <algorithm>
#include <charconv>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/nearest_word.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/theory_functions.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

const DataType* SortReader::read_anew(Lexer& lexer)
{
  parameters_.clear();
  return read_expression(lexer);
}

const DataType* SortReader::read_with_parameters(Lexer& lexer, const std::vector<Token>& names)
{
  parameters_.clear();
  for (const Token& name : names)
    parameters_.emplace(name.text, parameters_.size());
  const DataType* sort = read_expression(lexer);
  parameters_.clear();
  return sort;
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
  const DataType* body = read_expression(lexer);
  if (is_sort_name(name.text)) {
    lexer.fail(name.position, describe(name) + " is defined here, but it is a sort already");
  }
  definitions_.emplace(std::string(name.text), Definition{parameters_.size(), body});
  order_.emplace_back(name.text);
}

void SortReader::declare(const Lexer& lexer, const Token& name, std::size_t num_parameters)
{
  if (is_sort_name(name.text)) {
    lexer.fail(name.position, describe(name) + " is declared here, but it is a sort already");
  }
  definitions_.emplace(std::string(name.text), Definition{num_parameters, nullptr});
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

std::string_view SortReader::get_wanted() const
{
  return knows_foreign_ ? "a declared sort or one of a theory" : "the sort Bool or (_ BitVec w)";
}

void SortReader::refuse(const Lexer& lexer, const Token& name) const
{
  std::vector<std::string> known{"Bool", "BitVec"};
  if (knows_foreign_) known.insert(known.end(), {"Array", "FloatingPoint"});
  known.insert(known.end(), order_.begin(), order_.end());
  // A known name that is refused here stands where another sort belongs.
  const bool is_known = std::find(known.begin(), known.end(), name.text) != known.end();
  const std::string nearest = is_known || !name.is_symbol() ? "" : find_nearest(name.text, known);
  if (nearest.empty()) lexer.refuse(name, get_wanted());
  lexer.fail(name.position, describe(name) + " was found, but " + std::string(get_wanted()) +
                                " was expected; perhaps " + make_excerpt(nearest) + " was meant");
}

std::optional<std::size_t> SortReader::find_arity(std::string_view name) const
{
  const auto place = definitions_.find(std::string(name));
  if (place != definitions_.end()) return place->second.num_parameters;
  if (knows_foreign_ && name == "Array") return 2;
  if (knows_foreign_ && !find_theory_sort(name).empty()) return 0;
  return std::nullopt;
}

bool SortReader::is_sort_name(std::string_view name) const
{
  return name == "Bool" || name == "BitVec" || find_arity(name).has_value();
}

const DataType* SortReader::find_declared(std::string_view name)
{
  const auto place = definitions_.find(std::string(name));
  const bool is_declared =
      place != definitions_.end() && place->second.num_parameters == 0 && place->second.body == nullptr;
  return is_declared ? apply(name, {}) : nullptr;
}

const DataType* SortReader::apply(std::string_view name, Sorts args)
{
  const auto place = definitions_.find(std::string(name));
  if (place == definitions_.end()) {
    const std::string_view spelling = find_theory_sort(name);
    return foreign_.make(spelling.empty() ? name : spelling, args);
  }
  if (place->second.body != nullptr) return foreign_.substitute(place->second.body, args);
  return foreign_.make(make_symbol_text(name), args);
}

const DataType* SortReader::read_expression(Lexer& lexer)
{
  applications_.clear();
  arguments_.clear();
  for (;;) {
    const Token token = lexer.next();
    const DataType* found =
        !applications_.empty() && token.kind == TokenKind::kClose ? close(lexer) : read_start(lexer, token);
    if (found == nullptr) continue;
    if (applications_.empty()) return found;
    arguments_.push_back(found);
  }
}

const DataType* SortReader::read_start(Lexer& lexer, const Token& first)
{
  if (first.is_symbol()) return read_name(lexer, first);
  if (first.kind != TokenKind::kOpen) lexer.refuse(first, get_wanted());

  const Token head = lexer.next();
  if (head.is_word("_")) return read_indexed(lexer, first);
  if (!head.is_symbol() || find_arity(head.text).value_or(0) == 0) refuse(lexer, head);
  applications_.push_back({head.text, first.position, arguments_.size()});
  return nullptr;
}

const DataType* SortReader::read_name(Lexer& lexer, const Token& name)
{
  const auto parameter = parameters_.find(name.text);
  if (parameter != parameters_.end()) return foreign_.make_parameter(parameter->second);
  if (name.text == "Bool") return mgr_.make_bool_type();
  const std::optional<std::size_t> arity = find_arity(name.text);
  if (!arity) refuse(lexer, name);
  if (*arity != 0) {
    lexer.fail(name.position,
               describe(name) + " was found without arguments, but the sort takes " + std::to_string(*arity));
  }
  return apply(name.text, {});
}

/// Reads what comes after `(_`.
const DataType* SortReader::read_indexed(Lexer& lexer, const Token& open)
{
  const Token name = lexer.next();
  const bool is_float = knows_foreign_ && name.is_symbol() && name.text == "FloatingPoint";
  if (!is_float && (!name.is_symbol() || name.text != "BitVec")) refuse(lexer, name);
  const unsigned long width = read_width(lexer);
  if (is_float) {
    const unsigned long significand = read_width(lexer);
    lexer.expect_close("the end of the sort");
    return foreign_.make_floating_point(width, significand);
  }
  lexer.expect_close("the end of the sort");
  recent_sort_ = mgr_.make_bv_type(width);
  recent_text_ = lexer.get_text(open.position, lexer.get_position());
  return recent_sort_;
}

/// Closes the innermost application.
const DataType* SortReader::close(Lexer& lexer)
{
  const Application application = applications_.back();
  const std::size_t num_arguments = arguments_.size() - application.first;
  const std::size_t expected = find_arity(application.name).value_or(0);
  if (num_arguments != expected) {
    lexer.fail(application.position, "a sort with " + std::to_string(num_arguments) +
                                         (num_arguments == 1 ? " argument" : " arguments") +
                                         " was found, but it takes " + std::to_string(expected));
  }
  const DataType* result = nullptr;
  try {
    result = apply(application.name, Sorts(arguments_).subspan(application.first));
  } catch (const Exception& e) {
    lexer.fail(application.position, e.what());
  }
  arguments_.resize(application.first);
  applications_.pop_back();
  return result;
}

}  // namespace lumo::smtlib
