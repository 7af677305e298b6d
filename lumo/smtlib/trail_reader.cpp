#include "lumo/smtlib/trail_reader.h"

#include <string>
#include <utility>

#include "lumo/calculators/calculator_table.h"
#include "lumo/smtlib/trail_printer.h"
#include "lumo/smtlib/z3_parser.h"

namespace lumo::smtlib {

namespace {

constexpr const char* kForeign = ", so the trail belongs to another script";

/// The content of a string, in whose text a quotation mark is written twice.
std::string read_string(std::string_view text)
{
  std::string content;
  for (std::size_t i = 0; i < text.size(); ++i) {
    content += text[i];
    if (text[i] == '"') ++i;
  }
  return content;
}

std::string describe_name(std::string_view name) { return "the constant " + make_excerpt(name); }

}  // namespace

Trail TrailReader::read(std::span<const Term* const> constants)
{
  scanner_.scan();
  read_declarations(constants);
  note_definitions();
  note_steps();
  convert();
  trail_.steps.reserve(steps_.size());
  for (const NamedStep& named : steps_)
    trail_.steps.push_back(make_step(named));
  return std::move(trail_);
}

/// The declarations must be those of the script, in any order.
void TrailReader::read_declarations(std::span<const Term* const> constants)
{
  names_.reserve(constants.size() + scanner_.get_items().size());
  for (const Term* constant : constants)
    names_[constant->get_symbol()->get_name()].constant = constant;
  for (const Scanner::Declaration& declaration : scanner_.get_declarations()) {
    const Token& token = declaration.name;
    const auto place = names_.find(token.text);
    if (place == names_.end()) {
      throw InputError(token.place, describe(token) + " is declared here, but not in the script" + kForeign);
    }
    Name& name = place->second;
    const DataType* sort = name.constant->get_symbol()->get_output_type();
    if (declaration.sort != sort) {
      throw InputError(token.place, describe(token) + " is declared here with sort " +
                                        declaration.sort->to_string() + ", but in the script with sort " +
                                        sort->to_string() + kForeign);
    }
    name.is_declared = true;
  }
  if (scanner_.get_declarations().size() == names_.size()) return;
  for (const Term* constant : constants) {
    const std::string& name = constant->get_symbol()->get_name();
    if (names_.find(name)->second.is_declared) continue;
    throw InputError({}, describe_name(name) + " is declared in the script, but not in the trail" + kForeign);
  }
}

void TrailReader::note_definitions()
{
  for (const Scanner::Item& item : scanner_.get_items()) {
    if (item.is_definition) names_[item.name].is_defined = true;
  }
}

void TrailReader::note_steps()
{
  for (const Scanner::Info& info : scanner_.get_infos()) {
    if (info.keyword.text == ":lumo-step") note_step(info.content);
  }
}

void TrailReader::note_step(Lexer content)
{
  const Token token = content.expect(TokenKind::kString, "a string with the names of a step");
  content.expect(TokenKind::kClose, "the end of the command");
  const std::string text = read_string(token.text);
  Lexer lexer(text);
  Names::value_type* step = read_name(lexer, token.place);
  if (step == nullptr || !step->second.is_defined) {
    throw InputError(token.place, (step == nullptr ? "an empty string" : describe_name(step->first)) +
                                      " was found, but a step starts with the name of a definition");
  }
  if (step->second.is_step) {
    throw InputError(token.place, "a second step of " + describe_name(step->first) +
                                      " was found, but only one was expected");
  }
  step->second.is_step = true;
  NamedStep& named = steps_.emplace_back(NamedStep{token.place, step, {}, 0});
  while (Names::value_type* free = read_name(lexer, token.place))
    note_free(named, *free);
}

void TrailReader::note_free(NamedStep& named, Names::value_type& free)
{
  if (free.second.is_free) {
    throw InputError(named.place, describe_name(free.first) +
                                      " was found as a free argument for the second time, but a constant is "
                                      "free in one step only");
  }
  free.second.is_free = true;
  if (named.num_free == kMaxArity) {
    throw InputError(named.place, "more than " + std::to_string(kMaxArity) +
                                      " free arguments were found in a step, but no operator has as many");
  }
  named.free[named.num_free++] = &free;
}

/// Reads a name from the string at that place; null at the string's end.
TrailReader::Names::value_type* TrailReader::read_name(Lexer& lexer, Place place)
{
  Token name{};
  try {
    Lexer ahead = lexer;
    if (ahead.next().kind == TokenKind::kEnd) return nullptr;
    name = lexer.expect_name("the name of a constant");
  } catch (const InputError& e) {
    throw InputError(place, std::string("in a step, ") + e.what());
  }
  const auto known = names_.find(name.text);
  if (known == names_.end()) {
    throw InputError(place, describe(name) + " was found in a step, but it is neither declared nor defined");
  }
  return &*known;
}

void TrailReader::convert()
{
  const ParsedText parsed(scanner_.get_rewritten_text());
  if (parsed.get_num_assertions() != scanner_.get_items().size())
    throw Exception("the number of assertions that Z3 gives is not that of the text");
  Z3Converter converter(mgr_, parsed.get_session(), scanner_.get_literals());
  std::size_t next = 0;
  for (const Scanner::Item& item : scanner_.get_items()) {
    try {
      convert_item(item, converter, parsed.get_assertion(next++));
    } catch (const Exception& e) {
      throw InputError(item.place, e.what());
    }
  }
}

/// An `Exception` is a mistake in the item.
void TrailReader::convert_item(const Scanner::Item& item, Z3Converter& converter, Z3_ast expression)
{
  if (!item.is_definition) {
    add_fact(converter.convert(expression));
    return;
  }
  Name& name = names_.find(item.name)->second;
  if (name.is_step) {
    set_step(name, item.name, converter.convert_definition(item.name, expression));
  } else {
    converter.define(item.name, expression);
  }
}

void TrailReader::set_step(Name& name, std::string_view text, const Term* application)
{
  if (find_calculator(mgr_, application->get_symbol()) == nullptr) {
    throw Exception("the definition of " + make_excerpt(text) + " is the term " +
                    make_excerpt(application->get_symbol()->get_name()) +
                    ", but a step needs the application of an operator");
  }
  name.constant = mgr_.make_constant(std::string(text), application->get_symbol()->get_output_type());
  name.application = application;
}

void TrailReader::add_fact(const Term* fact)
{
  const Symbol* symbol = fact->get_symbol();
  if (!mgr_.is_constant(symbol)) {
    throw Exception("an assertion of the term " + make_excerpt(symbol->get_name()) +
                    " was found, but a trail asserts only constants");
  }
  trail_.facts.push_back(fact);
}

Step TrailReader::make_step(const NamedStep& named) const
{
  const Name& name = named.step->second;
  Step step{name.constant, name.application, {}, nullptr};
  for (std::size_t i = 0; i < named.num_free; ++i)
    set_free(step, named, *named.free[i]);
  return step;
}

void TrailReader::set_free(Step& step, const NamedStep& named, Names::value_type& free) const
{
  std::size_t num_found = 0;
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (step.application->get_arg(i) != free.second.constant) continue;
    step.free.set(i);
    ++num_found;
  }
  if (num_found == 1) return;
  throw InputError(named.place, describe_name(free.first) + " was found as a free argument of " +
                                    make_excerpt(named.step->first) + ", but its definition has it " +
                                    (num_found == 0 ? "not as an argument" : "as several arguments"));
}

Trail read_trail(TermManager& mgr, std::span<const Term* const> constants, std::string_view text)
{
  return TrailReader(mgr, text).read(constants);
}

}  // namespace lumo::smtlib
