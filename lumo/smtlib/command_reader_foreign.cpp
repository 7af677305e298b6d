// The commands that declare what the term layer does not have.

#include <charconv>
#include <string>

#include "lumo/smtlib/command_reader.h"
#include "lumo/smtlib/symbol_text.h"

namespace lumo::smtlib {

std::size_t CommandReader::add_declaration(const Command& command, bool is_of_sorts)
{
  ForeignDeclaration& declaration = foreign_->declarations.emplace_back();
  declaration.text = lexer_.get_text(command.position, lexer_.get_position());
  declaration.order = foreign_->make_order();
  declaration.is_of_sorts = is_of_sorts;
  return foreign_->declarations.size() - 1;
}

ForeignFunction& CommandReader::add_function(const Token& name, std::vector<const DataType*> parameters,
                                             const DataType* sort)
{
  ForeignFunction& function = foreign_->functions.emplace_back();
  function.name = name.text;
  function.parameters = std::move(parameters);
  function.result = sort;
  return function;
}

/// Declares the symbol that was read last. A constant means a foreign term, anything else a function.
void CommandReader::declare_foreign(Command& command, std::vector<const DataType*> parameters,
                                    const DataType* sort)
{
  command.kind = CommandKind::kDeclareForeign;
  const bool is_constant = parameters.empty();
  ForeignFunction& function = add_function(command.symbol, std::move(parameters), sort);
  function.declaration = add_declaration(command, false);
  if (!is_constant) {
    symbols_.declare(symbol_, Meaning(&function));
    return;
  }
  ForeignHead head;
  head.text = make_symbol_text(function.name);
  head.role = ForeignRole::kDeclared;
  head.function = &function;
  head.declarations.push_back(function.declaration);
  command.term = foreign_->make(foreign_->make_head(std::move(head)), sort, {});
  symbols_.declare(symbol_, Meaning(command.term));
}

void CommandReader::read_sort_declaration(Command& command)
{
  const Token name = lexer_.expect_name("a name");
  std::size_t arity = 0;
  if (!lexer_.take_text(")")) {
    const Token number = lexer_.expect(TokenKind::kNumeral, "a number of parameters");
    std::from_chars(number.text.data(), number.text.data() + number.text.size(), arity);
    close(command);
  }
  sorts_.declare(lexer_, name, arity);
  foreign_->sorts.note_uninterpreted(make_symbol_text(name.text));
  add_declaration(command, true);
}

// -----------------------------------------------------------------------------------------------------------
// Datatypes

void CommandReader::read_datatype(Command& command)
{
  const Token name = lexer_.expect_name("a name");
  // The number of parameters comes after the name, and the constructors may mention the sort.
  Lexer ahead = lexer_;
  ahead.expect_open("a list of constructors");
  std::size_t arity = 0;
  if (ahead.next().is_word("par")) {
    ahead.expect_open("a list of parameters");
    while (ahead.next().is_symbol())
      ++arity;
  }
  sorts_.declare(lexer_, name, arity);
  read_constructors(name, arity);
  close(command);
  add_declaration(command, true);
}

void CommandReader::read_datatypes(Command& command)
{
  struct Datatype
  {
    Token name;
    std::size_t arity = 0;
  };
  std::vector<Datatype> datatypes;
  lexer_.expect_open("a list of datatypes");
  for (Token token = lexer_.next(); token.kind != TokenKind::kClose; token = lexer_.next()) {
    if (token.kind != TokenKind::kOpen) lexer_.refuse(token, "a datatype");
    Datatype datatype{lexer_.expect_name("the name of a datatype")};
    const Token number = lexer_.expect(TokenKind::kNumeral, "a number of parameters");
    std::from_chars(number.text.data(), number.text.data() + number.text.size(), datatype.arity);
    lexer_.expect_close("the end of the datatype");
    sorts_.declare(lexer_, datatype.name, datatype.arity);
    datatypes.push_back(datatype);
  }
  lexer_.expect_open("a list of constructors for each datatype");
  for (const Datatype& datatype : datatypes)
    read_constructors(datatype.name, datatype.arity);
  lexer_.expect_close("the end of the constructors");
  close(command);
  add_declaration(command, true);
}

void CommandReader::read_constructors(const Token& datatype, std::size_t arity)
{
  lexer_.expect_open("a list of constructors");
  std::vector<Token> parameters;
  Token token = lexer_.next();
  const bool is_parametric = token.is_word("par");
  if (is_parametric) {
    lexer_.expect_open("a list of parameters");
    for (token = lexer_.next(); token.is_symbol(); token = lexer_.next())
      parameters.push_back(token);
    if (token.kind != TokenKind::kClose) lexer_.refuse(token, "the name of a parameter");
    lexer_.expect_open("a list of constructors");
    token = lexer_.next();
  }
  if (parameters.size() != arity) {
    lexer_.fail(datatype.position, describe(datatype) + " has " + std::to_string(parameters.size()) +
                                       " parameters here, but " + std::to_string(arity) +
                                       (arity == 1 ? " was declared" : " were declared"));
  }
  std::vector<const DataType*> args;
  for (std::size_t i = 0; i < arity; ++i)
    args.push_back(foreign_->sorts.make_parameter(i));
  const DataType* sort = sorts_.apply(datatype.text, args);
  for (; token.kind != TokenKind::kClose; token = lexer_.next())
    read_constructor(token, sort, parameters);
  if (is_parametric) lexer_.expect_close("the end of the datatype");
}

/// Reads `(C (selector S) ...)`, or `C` alone.
void CommandReader::read_constructor(const Token& open, const DataType* datatype,
                                     const std::vector<Token>& parameters)
{
  const bool is_list = open.kind == TokenKind::kOpen;
  if (!is_list) lexer_.set_position(open.position);
  const Token name = read_new_name();
  const SymbolTable::Number symbol = symbol_;
  std::vector<const DataType*> fields;
  for (Token token = is_list ? lexer_.next() : Token{TokenKind::kClose, {}, 0};
       token.kind != TokenKind::kClose; token = lexer_.next())
  {
    if (token.kind != TokenKind::kOpen) lexer_.refuse(token, "a selector");
    const Token selector = read_new_name();
    fields.push_back(sorts_.read_with_parameters(lexer_, parameters));
    lexer_.expect_close("the end of the selector");
    ForeignFunction& function = add_function(selector, {datatype}, fields.back());
    function.num_sort_parameters = parameters.size();
    function.is_interpreted = true;
    symbols_.declare(symbol_, Meaning(&function));
  }
  const bool is_constant = fields.empty() && parameters.empty();
  ForeignFunction& function = add_function(name, std::move(fields), datatype);
  function.num_sort_parameters = parameters.size();
  function.is_interpreted = true;
  if (!is_constant) {
    symbols_.declare(symbol, Meaning(&function));
    return;
  }
  ForeignHead head;
  head.text = make_symbol_text(function.name);
  head.function = &function;
  symbols_.declare(symbol, Meaning(foreign_->make(foreign_->make_head(std::move(head)), datatype, {})));
}

// -----------------------------------------------------------------------------------------------------------
// Recursive definitions, which are printed as they were written

/// Reads a name, parameters and a sort, and declares the function.
void CommandReader::read_signature(std::vector<Token>& names)
{
  const Token name = read_new_name();
  const SymbolTable::Number symbol = symbol_;
  lexer_.expect_open("a list of parameters");
  read_parameters(lexer_.next());
  names = parameters_;
  ForeignFunction& function = add_function(name, parameter_sorts_, sorts_.read(lexer_));
  function.is_interpreted = true;
  function.declaration = foreign_->declarations.size();  // that of the command, which is added at its end
  symbols_.declare(symbol, Meaning(&function));
}

void CommandReader::read_recursive_definition(Command& command)
{
  std::vector<std::vector<Token>> parameters(1);
  read_signature(parameters.front());
  Lexer bodies = lexer_;
  skip(command);
  note_bodies(bodies, parameters, add_declaration(command, false));
}

void CommandReader::read_recursive_definitions(Command& command)
{
  std::vector<std::vector<Token>> parameters;
  lexer_.expect_open("a list of functions");
  for (Token token = lexer_.next(); token.kind != TokenKind::kClose; token = lexer_.next()) {
    if (token.kind != TokenKind::kOpen) lexer_.refuse(token, "a function");
    read_signature(parameters.emplace_back());
    lexer_.expect_close("the end of the function");
  }
  Lexer bodies = lexer_;
  bodies.expect_open("a list of bodies");
  skip(command);
  note_bodies(bodies, parameters, add_declaration(command, false));
  bodies.expect_close("the end of the list of bodies");
}

/// Notes what the bodies of functions mention, each with the parameters of its function.
void CommandReader::note_bodies(Lexer& bodies, const std::vector<std::vector<Token>>& parameters,
                                std::size_t declaration)
{
  for (const std::vector<Token>& names : parameters) {
    Lexer body = bodies;
    const Token start = bodies.next();
    if (start.kind == TokenKind::kOpen) {
      bodies.skip_list(start.position);
    } else if (start.kind == TokenKind::kClose || start.kind == TokenKind::kEnd) {
      bodies.refuse(start, "the body of a function");
    }
    ForeignDeclaration found;
    terms_.collect_mentioned(body, bodies.get_position(), names, found);
    ForeignDeclaration& all = foreign_->declarations[declaration];
    all.needs.insert(all.needs.end(), found.needs.begin(), found.needs.end());
    all.constants.insert(all.constants.end(), found.constants.begin(), found.constants.end());
  }
  terms_.note_needs(lexer_);
}

}  // namespace lumo::smtlib
