// The part of the reader of terms that makes foreign terms.

#include <algorithm>
#include <charconv>
#include <string>

#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/term_reader.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

std::vector<const DataType*> list_sorts(Arguments args)
{
  std::vector<const DataType*> sorts;
  for (const Term* arg : args)
    sorts.push_back(arg->get_sort());
  return sorts;
}

/// `(_ name 1 2)`
std::string make_indexed_text(const TheoryFunction& function, std::span<const unsigned long> indices)
{
  if (function.num_indices == 0) return {};
  std::string text = "(_ " + std::string(function.name);
  for (std::size_t i = 0; i < function.num_indices; ++i)
    text += ' ' + std::to_string(indices[i]);
  return text + ')';
}

/// Passes the parameters of a definition, which was read before, and returns them.
std::vector<Token> pass_parameters(Lexer& lexer)
{
  for (int i = 0; i < 4; ++i)  // ( define-fun NAME (
    static_cast<void>(lexer.next());
  std::vector<Token> parameters;
  while (lexer.next().kind == TokenKind::kOpen) {
    parameters.push_back(lexer.next());
    for (std::size_t depth = 1; depth != 0;) {
      const TokenKind kind = lexer.next().kind;
      if (kind == TokenKind::kOpen) ++depth;
      if (kind == TokenKind::kClose) --depth;
    }
  }
  return parameters;
}

}  // namespace

// -----------------------------------------------------------------------------------------------------------
// Heads

bool TermReader::find_foreign(const Head& head, ForeignApplication& application)
{
  if (foreign_ == nullptr) return false;
  const Meaning meaning = symbols_.get_meaning(head.number);
  if (meaning.is_none()) return find_theory_head(head, application);
  if (meaning.get_foreign() == nullptr || head.num_indices != 0) return false;
  application.function = meaning.get_foreign();
  application.qualifier = head.qualifier;
  application.role = application.function->is_interpreted ? ForeignRole::kOther : ForeignRole::kDeclared;
  if (head.qualifier != nullptr) {
    application.text =
        "(as " + make_symbol_text(application.function->name) + ' ' + head.qualifier->to_string() + ')';
  }
  return true;
}

bool TermReader::find_theory_head(const Head& head, ForeignApplication& application)
{
  if (head.symbol.text == "const" && head.qualifier != nullptr && as_array(head.qualifier) != nullptr) {
    application.qualifier = head.qualifier;
    application.role = ForeignRole::kConstantArray;
    application.text = "(as const " + head.qualifier->to_string() + ')';
    return true;
  }
  if (foreign_->has_elements && find_element(head, application)) return true;
  if (head.symbol.text == "is" && head.num_indices == 1) return find_tester(head, application);
  const TheoryFunction* theory = find_theory_function(head.symbol.text);
  if (theory == nullptr || head.num_indices != theory->num_indices) return false;
  application.theory = theory;
  application.role = theory->role;
  application.qualifier = head.qualifier;
  for (std::size_t i = 0; i < theory->num_indices; ++i) {
    const std::string_view digits = head.indices[i].text;
    const auto [end, failure] =
        std::from_chars(digits.data(), digits.data() + digits.size(), application.indices[i]);
    if (failure != std::errc() || application.indices[i] > TermManager::kMaxWidth)
      lexer_->refuse(head.indices[i], "an index up to " + std::to_string(TermManager::kMaxWidth));
  }
  application.text = make_indexed_text(*theory, application.indices);
  return true;
}

/// The name of an element of a sort S in a model: `(as @name S)`, `S!val!0`
bool TermReader::find_element(const Head& head, ForeignApplication& application)
{
  const std::string_view name = head.symbol.text;
  application.role = ForeignRole::kDeclared;
  if (name.starts_with('@') && head.qualifier != nullptr) {
    application.qualifier = head.qualifier;
    application.text = "(as " + make_symbol_text(name) + ' ' + head.qualifier->to_string() + ')';
    return true;
  }
  const std::size_t end = name.find("!val!");
  if (end == std::string_view::npos || head.qualifier != nullptr || head.num_indices != 0) return false;
  application.qualifier = sorts_.find_declared(name.substr(0, end));
  application.text = make_symbol_text(name);
  return application.qualifier != nullptr;
}

/// `(_ is C)`, for a constructor C
bool TermReader::find_tester(const Head& head, ForeignApplication& application)
{
  const Token& constructor = head.indices[0];
  if (!constructor.is_symbol()) return false;
  static constexpr TheoryFunction kTester{"is", ResultRule::kBool, 0, 1, 1};
  application.theory = &kTester;
  application.text = "(_ is " + make_symbol_text(constructor.text) + ')';
  return true;
}

ForeignTerms::HeadIndex TermReader::find_head(const ForeignApplication& application)
{
  const void* function = application.function;
  if (function == nullptr) function = application.theory;
  const bool is_plain = application.text.empty();
  if (const auto known = heads_.find(function); is_plain && known != heads_.end()) return known->second;
  ForeignHead head;
  head.role = application.role;
  head.function = application.function;
  head.text = application.text;
  if (is_plain && application.function != nullptr) head.text = make_symbol_text(application.function->name);
  if (is_plain && application.theory != nullptr) head.text = application.theory->name;
  if (application.function != nullptr && application.function->declaration != ForeignFunction::kNone)
    head.declarations.push_back(application.function->declaration);
  const ForeignTerms::HeadIndex index = foreign_->make_head(std::move(head));
  if (is_plain) heads_.emplace(function, index);
  return index;
}

// -----------------------------------------------------------------------------------------------------------
// Applications

const Term* TermReader::apply_foreign(const Frame& frame, Arguments args)
{
  const Term* t = make_foreign(foreign_heads_.back(), frame.position, args);
  foreign_heads_.pop_back();
  return t;
}

const Term* TermReader::make_foreign(const ForeignApplication& application, std::size_t position,
                                     Arguments args)
{
  try {
    const DataType* sort = find_sort(application, args);
    if (sort == nullptr) refuse_foreign(application, position, args);
    return foreign_->make(find_head(application), sort, args);
  } catch (const InputError&) {
    throw;
  } catch (const Exception& e) {
    lexer_->fail(position, e.what());
  }
}

const DataType* TermReader::find_sort(const ForeignApplication& application, Arguments args)
{
  if (application.role == ForeignRole::kConstantArray) {
    const bool fits_element =
        args.size() == 1 &&
        can_stand_for(args[0]->get_sort(), as_array(application.qualifier)->get_args()[1]);
    return fits_element ? application.qualifier : nullptr;
  }
  if (application.function == nullptr && application.theory == nullptr)
    return args.empty() ? application.qualifier : nullptr;
  const DataType* sort = application.function != nullptr
                             ? find_function_sort(application, args)
                             : find_result_sort(mgr_, foreign_->sorts, *application.theory,
                                                application.indices, list_sorts(args));
  const bool is_other = application.qualifier != nullptr && application.qualifier != sort;
  return is_other ? nullptr : sort;
}

const DataType* TermReader::find_function_sort(const ForeignApplication& application, Arguments args)
{
  const ForeignFunction& function = *application.function;
  if (args.size() != function.parameters.size()) return nullptr;
  std::vector<const DataType*> known(function.num_sort_parameters);
  const bool is_unknown =
      application.qualifier != nullptr && !match_sort(function.result, application.qualifier, known);
  if (is_unknown) return nullptr;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const DataType* found = args[i]->get_sort();
    if (!can_stand_for(found, function.parameters[i]) && !match_sort(function.parameters[i], found, known))
      return nullptr;
  }
  if (std::find(known.begin(), known.end(), nullptr) != known.end()) return nullptr;
  return foreign_->sorts.substitute(function.result, known);
}

void TermReader::refuse_foreign(const ForeignApplication& application, std::size_t position,
                                Arguments args) const
{
  std::string sorts;
  for (const Term* arg : args)
    sorts += (sorts.empty() ? "" : ", ") + arg->get_sort()->to_string();
  const std::string name = application.function != nullptr ? application.function->name
                           : application.theory != nullptr ? std::string(application.theory->name)
                                                           : application.text;
  std::string sentence = make_excerpt(name) + " was given ";
  sentence += args.empty()
                  ? "no arguments"
                  : (args.size() == 1 ? "an argument of the sort " : "arguments of the sorts ") + sorts;
  if (application.function != nullptr) {
    std::string wanted;
    for (const DataType* sort : application.function->parameters)
      wanted += (wanted.empty() ? "" : ", ") + sort->to_string();
    sentence += application.function->num_sort_parameters != 0 ? ", which do not tell which sort it has"
                : wanted.empty()
                    ? ", but it takes none"
                    : ", but " + wanted +
                          (application.function->parameters.size() == 1 ? " was expected" : " were expected");
  } else {
    sentence += args.empty() ? ", but it takes some" : ", which it does not take";
  }
  lexer_->fail(position, sentence);
}

const Term* TermReader::apply_foreign_operator(const Operator& op, Arguments args)
{
  const bool is_ite = op.signature == Signature::kIte;
  if (foreign_ == nullptr || (!is_ite && op.signature != Signature::kAlike)) return nullptr;
  if (args.size() < op.min_args || (is_ite && args.size() != op.min_args)) return nullptr;
  const Arguments alike = args.subspan(is_ite ? 1 : 0);
  const DataType* sort = alike[0]->get_sort();
  for (const Term* arg : alike) {
    if (can_stand_for(sort, arg->get_sort())) sort = arg->get_sort();
  }
  const bool are_alike = sort->is_opaque() && std::all_of(alike.begin(), alike.end(), [=](const Term* arg) {
                           return can_stand_for(arg->get_sort(), sort);
                         });
  if (!are_alike || (is_ite && args[0]->get_sort() != mgr_.make_bool_type())) return nullptr;
  ForeignHead head;
  head.text = op.name;
  head.role = is_ite ? ForeignRole::kIte : op.name == "=" ? ForeignRole::kEqual : ForeignRole::kDistinct;
  const auto known = heads_.find(&op);
  const ForeignTerms::HeadIndex index =
      known != heads_.end() ? known->second : foreign_->make_head(std::move(head));
  heads_.emplace(&op, index);
  return foreign_->make(index, is_ite ? sort : mgr_.make_bool_type(), args);
}

const Term* TermReader::make_foreign_literal(const Token& token)
{
  // Where there are only bit-vectors, a number is more likely a literal that was typed wrong.
  const bool is_known = foreign_ != nullptr && !foreign_->logic.empty() && foreign_->logic != "QF_BV";
  if (!is_known) return nullptr;
  ForeignHead head;
  head.text = token.text;
  if (token.kind == TokenKind::kString) head.text = '"' + head.text + '"';
  const char* sort = token.kind == TokenKind::kString    ? "String"
                     : token.kind == TokenKind::kNumeral ? "Int"
                                                         : "Real";
  return foreign_->make(foreign_->make_head(std::move(head)), foreign_->sorts.make(sort, {}), {});
}

// -----------------------------------------------------------------------------------------------------------
// Binders

/// Takes the whole term as it is written. What it mentions of the text around it becomes its arguments.
const Term* TermReader::read_binder(const Token& word, std::size_t position)
{
  const bool is_quantifier = word.text == "forall" || word.text == "exists";
  if (foreign_ == nullptr || !is_quantifier) {
    lexer_->fail(
        word.position,
        std::string(word.text) + (foreign_ == nullptr
                                      ? " was found, but only terms of Booleans and bit-vectors were expected"
                                      : " was found, but lumo cannot tell the sort of such a term"));
  }
  Lexer inside = *lexer_;
  lexer_->skip_list(position);
  const std::size_t end = lexer_->get_position();
  ForeignHead head;
  head.role = ForeignRole::kBinder;
  head.text = lexer_->get_text(position, end);
  Mentioned mentioned = list_mentioned(inside, end);
  head.names = std::move(mentioned.names);
  head.declarations = std::move(mentioned.declarations);
  std::sort(head.declarations.begin(), head.declarations.end());
  std::vector<const Term*> args = std::move(mentioned.terms);
  args.insert(args.end(), mentioned.constants.begin(), mentioned.constants.end());
  return foreign_->make(foreign_->make_head(std::move(head)), mgr_.make_bool_type(), args);
}

/// Whether a symbol's term is the constant that it declares.
bool TermReader::means_itself(const Token& symbol, const Term* t) const
{
  const ForeignTerms::Index foreign = foreign_->find(t);
  if (foreign != ForeignTerms::kNone) {
    const ForeignFunction* function = foreign_->get_head_of(foreign).function;
    return foreign_->get_args(foreign).empty() && function != nullptr && function->name == symbol.text;
  }
  return t->get_symbol()->get_kind() == Kind::kConstant && t->get_symbol()->find_name() == symbol.text;
}

TermReader::Mentioned TermReader::list_mentioned(Lexer lexer, std::size_t end,
                                                 const std::vector<Token>& parameters)
{
  const Lexer text = lexer;
  Mentioned mentioned;
  begin_names();
  for (const Token& parameter : parameters)
    static_cast<void>(is_new_name(symbols_.find(parameter.text)));
  for (Token token = lexer.next(); token.position < end && token.kind != TokenKind::kEnd;
       token = lexer.next()) {
    if (token.is_symbol()) note_mentioned(token, text, mentioned);
  }
  return mentioned;
}

void TermReader::note_mentioned(const Token& symbol, const Lexer& text, Mentioned& mentioned)
{
  const SymbolTable::Number number = symbols_.find(symbol.text);
  if (symbols_.is_predefined(number) || !is_new_name(number)) return;
  const Meaning meaning = symbols_.get_meaning(number);
  if (const Term* t = meaning.get_term(); t != nullptr) {
    if (means_itself(symbol, t)) {
      mentioned.constants.push_back(t);
    } else {
      mentioned.names.push_back(make_symbol_text(symbol.text));
      mentioned.positions.push_back(symbol.position);
      mentioned.terms.push_back(t);
    }
  } else if (const ForeignFunction* foreign = meaning.get_foreign(); foreign != nullptr) {
    if (foreign->declaration != ForeignFunction::kNone)
      mentioned.declarations.push_back(foreign->declaration);
  } else if (const Function* function = meaning.get_function(); function != nullptr) {
    mentioned.declarations.push_back(need_definition(function, text));
  }
}

// -----------------------------------------------------------------------------------------------------------
// Definitions that binders mention

void TermReader::note_definition(const Function* function, const Lexer& lexer, std::size_t begin,
                                 std::size_t end)
{
  Definition definition{begin, end, foreign_->make_order(), {}};
  if (copies_definitions_) definition.copy = lexer.get_text(begin, end);
  definitions_.emplace(function, std::move(definition));
}

std::size_t TermReader::need_definition(const Function* function, const Lexer& text)
{
  Definition& definition = definitions_.at(function);
  if (definition.declaration == ForeignFunction::kNone) {
    definition.declaration = foreign_->declarations.size();
    ForeignDeclaration& declaration = foreign_->declarations.emplace_back();
    declaration.text = definition.copy;
    if (!copies_definitions_) declaration.text = text.get_text(definition.begin, definition.end);
    declaration.order = definition.order;
    needed_.push_back(function);
  }
  return definition.declaration;
}

void TermReader::note_needs(const Lexer& lexer)
{
  while (!needed_.empty()) {
    const Definition& definition = definitions_.at(needed_.back());
    needed_.pop_back();
    Lexer inside = copies_definitions_ ? Lexer(definition.copy) : lexer;
    inside.set_position(copies_definitions_ ? 0 : definition.begin);
    const std::size_t end = copies_definitions_ ? definition.copy.size() : definition.end;
    const std::vector<Token> parameters = pass_parameters(inside);
    ForeignDeclaration found;
    collect_mentioned(inside, end, parameters, found);
    ForeignDeclaration& declaration = foreign_->declarations[definition.declaration];
    declaration.needs = std::move(found.needs);
    declaration.constants = std::move(found.constants);
  }
}

void TermReader::collect_mentioned(const Lexer& body, std::size_t end, const std::vector<Token>& parameters,
                                   ForeignDeclaration& declaration)
{
  const Mentioned mentioned = list_mentioned(body, end, parameters);
  if (!mentioned.terms.empty()) {
    body.fail(
        mentioned.positions.front(),
        mentioned.names.front() +
            " is defined, and a function that must be printed mentions it, but such a function may only "
            "mention what is declared, and functions with parameters");
  }
  declaration.needs = mentioned.declarations;
  declaration.constants = mentioned.constants;
}

}  // namespace lumo::smtlib
