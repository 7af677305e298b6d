#include "lumo/smtlib/command_reader.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "lumo/smtlib/nearest_word.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

const CommandReader::Row CommandReader::kRows[] = {
    {"assert", CommandKind::kAssert, &CommandReader::read_assertion},
    {"check-sat", CommandKind::kCheckSat, &CommandReader::close},
    {"declare-const", CommandKind::kDeclare, &CommandReader::read_constant_declaration},
    {"declare-fun", CommandKind::kDeclare, &CommandReader::read_function_declaration},
    {"define-const", CommandKind::kDefine, &CommandReader::read_constant_definition},
    {"define-fun", CommandKind::kDefine, &CommandReader::read_function_definition},
    {"define-sort", CommandKind::kDefineSort, &CommandReader::read_sort_definition},
    {"echo", CommandKind::kEcho, &CommandReader::skip},
    {"exit", CommandKind::kExit, &CommandReader::close},
    {"get-assertions", CommandKind::kGet, &CommandReader::skip},
    {"get-assignment", CommandKind::kGet, &CommandReader::skip},
    {"get-info", CommandKind::kGet, &CommandReader::skip},
    {"get-model", CommandKind::kGet, &CommandReader::skip},
    {"get-option", CommandKind::kGet, &CommandReader::skip},
    {"get-proof", CommandKind::kGet, &CommandReader::skip},
    {"get-unsat-assumptions", CommandKind::kGet, &CommandReader::skip},
    {"get-unsat-core", CommandKind::kGet, &CommandReader::skip},
    {"get-value", CommandKind::kGet, &CommandReader::skip},
    {"pop", CommandKind::kPop, &CommandReader::pop},
    {"push", CommandKind::kPush, &CommandReader::push},
    {"set-info", CommandKind::kSetInfo, &CommandReader::read_attribute},
    {"set-logic", CommandKind::kSetLogic, &CommandReader::read_logic},
    {"set-option", CommandKind::kSetOption, &CommandReader::read_attribute},
};

const CommandReader::Row CommandReader::kForeignRows[] = {
    {"declare-datatype", CommandKind::kDeclareForeign, &CommandReader::read_datatype},
    {"declare-datatypes", CommandKind::kDeclareForeign, &CommandReader::read_datatypes},
    {"declare-sort", CommandKind::kDeclareForeign, &CommandReader::read_sort_declaration},
    {"define-fun-rec", CommandKind::kDeclareForeign, &CommandReader::read_recursive_definition},
    {"define-funs-rec", CommandKind::kDeclareForeign, &CommandReader::read_recursive_definitions},
};

Command CommandReader::read()
{
  Command command;
  if (read_name(command)) read_rest(command);
  return command;
}

bool CommandReader::read_name(Command& command)
{
  const Token open = lexer_.next();
  command.position = open.position;
  if (open.kind == TokenKind::kEnd) return false;
  if (open.kind != TokenKind::kOpen) lexer_.refuse(open, "a command in parentheses");
  const Token name = lexer_.next();
  if (name.kind != TokenKind::kSymbol) lexer_.refuse(name, "the name of a command");
  command.name = name.text;
  return true;
}

void CommandReader::read_rest(Command& command)
{
  for (const Row& row : kRows) {
    if (command.name != row.name) continue;
    command.kind = row.kind;
    (this->*row.action)(command);
    return;
  }
  for (const Row& row : kForeignRows) {
    if (foreign_ == nullptr || command.name != row.name) continue;
    command.kind = row.kind;
    (this->*row.action)(command);
    return;
  }
  command.kind = CommandKind::kOther;
  skip(command);
}

std::string_view CommandReader::find_nearest(std::string_view name)
{
  // Fewer than for other words: reset-assertions, which the standard has, is three mistakes from get-assertions.
  constexpr std::size_t kMost = 2;
  const std::size_t most = std::min(kMost, get_most_mistakes(name));
  std::string_view nearest;
  std::size_t least = kNotNear;
  const auto compare = [&](const Row& row) {
    const std::size_t distance = measure_mistakes(name, row.name, most);
    if (distance >= least) return;
    nearest = row.name;
    least = distance;
  };
  std::for_each(std::begin(kRows), std::end(kRows), compare);
  std::for_each(std::begin(kForeignRows), std::end(kForeignRows), compare);
  // A known command may be one that is not taken where the name was found.
  return least == 0 ? std::string_view() : nearest;
}

void CommandReader::replace(const Token& symbol, const Term* t)
{
  symbols_.set_meaning(symbols_.find(symbol.text), Meaning(t));
}

void CommandReader::close(Command& command)
{
  if (lexer_.take_text(")")) return;
  const Token token = lexer_.next();
  if (token.kind == TokenKind::kEnd) {
    lexer_.fail(command.position, "a parenthesis opens here, but the text ends before it is closed");
  }
  lexer_.refuse(token, "the end of the command");
}

void CommandReader::skip(Command& command) { lexer_.skip_list(command.position); }

void CommandReader::read_attribute(Command& command)
{
  Lexer ahead = lexer_;
  const Token keyword = ahead.next();
  if (keyword.kind == TokenKind::kKeyword) {
    command.keyword = keyword;
    lexer_ = ahead;
  }
  command.content_position = lexer_.get_position();
  skip(command);
  command.content = lexer_.get_text(command.content_position, lexer_.get_position() - 1);
}

void CommandReader::read_assertion(Command& command)
{
  command.term = read_term(command, mgr_.make_bool_type(), "the assertion");
}

// -----------------------------------------------------------------------------------------------------------
// Declarations and definitions

Token CommandReader::read_new_name()
{
  const Token name = lexer_.expect_name("a name");
  symbol_ = symbols_.find(name.text);
  if (symbols_.is_predefined(symbol_)) {
    lexer_.fail(name.position, describe(name) + " is declared here, but the language defines it");
  }
  if (!symbols_.get_meaning(symbol_).is_none()) {
    lexer_.fail(name.position, describe(name) + " is declared here, but it has a meaning already");
  }
  return name;
}

void CommandReader::read_constant_declaration(Command& command)
{
  command.symbol = read_new_name();
  declare(command);
}

void CommandReader::read_function_declaration(Command& command)
{
  command.symbol = read_new_name();
  lexer_.expect_open("a list of argument sorts");
  if (lexer_.take_text(")")) {
    declare(command);
    return;
  }
  if (foreign_ == nullptr) {
    lexer_.fail(command.symbol.position,
                describe(command.symbol) +
                    " is declared with arguments, but only constants, without arguments, were expected");
  }
  std::vector<const DataType*> parameters;
  while (!lexer_.take_text(")"))
    parameters.push_back(sorts_.read(lexer_));
  const DataType* sort = sorts_.read(lexer_);
  close(command);
  declare_foreign(command, std::move(parameters), sort);
}

/// Reads the symbol's sort and the end of the command.
void CommandReader::declare(Command& command)
{
  const DataType* sort = sorts_.read(lexer_);
  close(command);
  if (sort->is_opaque()) [[unlikely]] {
    declare_foreign(command, {}, sort);
    return;
  }
  try {
    command.term = make_constant(command.symbol.text, symbol_, sort);
  } catch (const Exception& e) {
    lexer_.fail(command.symbol.position, e.what());
  }
  symbols_.declare(symbol_, Meaning(command.term));
}

const Term* CommandReader::make_constant(std::string_view name, SymbolTable::Number /*symbol*/,
                                         const DataType* sort)
{
  return mgr_.make_constant(name, sort);
}

void CommandReader::read_constant_definition(Command& command)
{
  command.symbol = read_new_name();
  define(command);
}

void CommandReader::read_function_definition(Command& command)
{
  command.symbol = read_new_name();
  lexer_.expect_open("a list of parameters");
  const Token first = lexer_.next();
  if (first.kind == TokenKind::kClose) {
    define(command);
    return;
  }
  command.kind = CommandKind::kDefineFunction;
  read_parameters(first);
  const DataType* sort = sorts_.read(lexer_);
  const std::size_t start = lexer_.get_position();
  const Term* body = terms_.read_body(lexer_, command.position, parameters_, parameter_sorts_);
  check_sort(start, body, sort, "the body of the definition");
  close(command);
  command.term = body;
  const Function* function = functions_.define(command.symbol.text, parameter_sorts_, body);
  if (foreign_ != nullptr) {
    terms_.note_definition(function, lexer_, command.position, lexer_.get_position());
    terms_.note_needs(lexer_);
  }
  symbols_.declare(symbol_, Meaning(function));
}

/// Reads parameters and the end of their list; the first token of the list was already read.
void CommandReader::read_parameters(const Token& first)
{
  parameters_.clear();
  parameter_sorts_.clear();
  for (Token token = first; token.kind != TokenKind::kClose; token = lexer_.next()) {
    if (token.kind != TokenKind::kOpen) lexer_.refuse(token, "a parameter");
    parameters_.push_back(lexer_.expect_name("the name of a parameter"));
    parameter_sorts_.push_back(sorts_.read(lexer_));
    lexer_.expect_close("the end of the parameter");
  }
}

/// Reads the symbol's sort and the term of its definition.
void CommandReader::define(Command& command)
{
  const DataType* sort = sorts_.read(lexer_);
  command.term = read_term(command, sort, "the definition");
  symbols_.declare(symbol_, Meaning(command.term));
}

void CommandReader::read_sort_definition(Command& command)
{
  sorts_.read_definition(lexer_);
  close(command);
  if (foreign_ != nullptr) add_declaration(command, true);
}

void CommandReader::read_logic(Command& command)
{
  const Token logic = Lexer(lexer_).next();
  if (foreign_ != nullptr && logic.is_symbol()) foreign_->logic = logic.text;
  skip(command);
}

const Term* CommandReader::read_term(Command& command, const DataType* sort, std::string_view what)
{
  const std::size_t start = lexer_.get_position();
  const Term* t = terms_.read(lexer_, command.position);
  check_sort(start, t, sort, what);
  close(command);
  if (foreign_ != nullptr) terms_.note_needs(lexer_);
  return t;
}

void CommandReader::check_sort(std::size_t start, const Term* t, const DataType* sort,
                               std::string_view what) const
{
  const DataType* found = t->get_symbol()->get_output_type();
  if (found == sort) return;
  Lexer again = lexer_;
  again.set_position(start);
  lexer_.fail(again.next().position, std::string(what) + " has sort " + found->to_string() + ", but sort " +
                                         sort->to_string() + " was expected");
}

// -----------------------------------------------------------------------------------------------------------
// Levels

unsigned long CommandReader::read_number_of_levels()
{
  const Token token = lexer_.next();
  if (token.kind == TokenKind::kClose) return 1;
  unsigned long number = 0;
  const char* end = token.text.data() + token.text.size();
  if (token.kind != TokenKind::kNumeral) lexer_.refuse(token, "a number of levels");
  if (std::from_chars(token.text.data(), end, number).ec != std::errc() || number > kMaxLevels) {
    lexer_.refuse(token, "at most " + std::to_string(kMaxLevels) + " levels");
  }
  lexer_.expect_close("the end of the command");
  return number;
}

void CommandReader::push(Command& command)
{
  command.number = read_number_of_levels();
  levels_.insert(levels_.end(), command.number,
                 {symbols_.get_num_declarations(), sorts_.get_num_definitions()});
}

void CommandReader::pop(Command& command)
{
  command.number = read_number_of_levels();
  if (command.number > levels_.size()) {
    lexer_.fail(command.position, std::to_string(command.number) +
                                      (command.number == 1 ? " level is" : " levels are") + " popped, but " +
                                      std::to_string(levels_.size()) + " can be");
  }
  if (command.number == 0) return;
  const Level level = levels_[levels_.size() - command.number];
  levels_.resize(levels_.size() - command.number);
  forget(level.num_declarations, level.num_sort_definitions);
}

void CommandReader::forget(std::size_t num_declarations, std::size_t num_sort_definitions)
{
  symbols_.forget(num_declarations);
  sorts_.forget(num_sort_definitions);
}

void CommandReader::drop_levels()
{
  if (!levels_.empty()) forget(levels_.front().num_declarations, levels_.front().num_sort_definitions);
  levels_.clear();
}

}  // namespace lumo::smtlib
