#include "lumo/smtlib/term_reader.h"

#include <charconv>
#include <limits>
#include <string>

#include "lumo/smtlib/literals.h"
#include "lumo/smtlib/nearest_word.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

const DataType* sort_of(const Term* t) { return t->get_symbol()->get_output_type(); }

std::string count(std::size_t number, const std::string& noun, const std::string& plural)
{
  return std::to_string(number) + " " + (number == 1 ? noun : plural);
}

}  // namespace

const Term* TermReader::read(Lexer& lexer, std::size_t open)
{
  lexer_ = &lexer;
  open_ = open;
  try {
    return read_all();
  } catch (...) {
    reset();
    throw;
  }
}

const Term* TermReader::read_body(Lexer& lexer, std::size_t open, const std::vector<Token>& names,
                                  const std::vector<const DataType*>& sorts)
{
  lexer_ = &lexer;
  is_body_ = true;
  try {
    begin_names();
    for (std::size_t i = 0; i < names.size(); ++i) {
      const SymbolTable::Number name = symbols_.find(names[i].text);
      if (!is_new_name(name)) {
        lexer.fail(names[i].position, describe(names[i]) + " is a parameter already, but names must differ");
      }
      hide(name, functions_.get_parameter(i, sorts[i]));
    }
  } catch (...) {
    reset();
    throw;
  }
  const Term* body = read(lexer, open);
  reset();
  return body;
}

const Term* TermReader::read_all()
{
  for (;;) {
    const Token token = lexer_->next();
    const Term* t = take(token);
    if (t != nullptr) t = deliver(t);
    if (t != nullptr) return t;
  }
}

/// Discards everything that is not complete, and restores the meanings of hidden names.
void TermReader::reset()
{
  unhide(0);
  is_body_ = false;
  frames_.clear();
  arguments_.clear();
  bindings_.clear();
  indices_.clear();
  qualifiers_.clear();
  foreign_heads_.clear();
}

inline const Term* TermReader::take(const Token& token)
{
  switch (token.kind) {
    case TokenKind::kOpen:
      return open(token.position);
    case TokenKind::kClose:
      return close(token);
    case TokenKind::kSymbol:
    case TokenKind::kQuotedSymbol: {
      const SymbolTable::Number symbol = symbols_.find(token.text);
      const Term* t = symbols_.get_meaning(symbol).get_term();
      return t != nullptr ? t : make_constant({token, symbol});
    }
    case TokenKind::kHexadecimal:
    case TokenKind::kBinary:
      return read_literal(token);
    case TokenKind::kEnd:
      lexer_->fail(open_, "a parenthesis opens here, but the text ends before it is closed");
    case TokenKind::kNumeral:
    case TokenKind::kDecimal:
    case TokenKind::kString:
      if (const Term* t = make_foreign_literal(token); t != nullptr) return t;
      break;
    case TokenKind::kKeyword:
      break;
  }
  lexer_->refuse(token, "a term");
}

inline const Term* TermReader::open(std::size_t position)
{
  const Token token = lexer_->next();
  if (!token.is_symbol()) {
    open_compound(token, position);
    return nullptr;
  }
  const SymbolTable::Number number = symbols_.find(token.text);
  const Operator* op = symbols_.get_meaning(number).get_operator();
  if (op != nullptr && op->num_indices == 0) [[likely]] {
    push_frame(FrameKind::kOperator, position, arguments_.size());
    frames_.back().op = op;
    return nullptr;
  }
  const ReservedWord word = symbols_.get_reserved_word(number);
  if (word != ReservedWord::kNone && token.kind == TokenKind::kSymbol)
    return open_word(word, token, position);
  push_application({token, number}, position);
  return nullptr;
}

/// Opens an application whose head is indexed or qualified; its first token was read.
void TermReader::open_compound(const Token& head, std::size_t position)
{
  if (head.kind != TokenKind::kOpen) lexer_->refuse(head, "an operator or a function");
  const Token word = lexer_->next();
  if (!word.is_word("_") && !word.is_word("as")) lexer_->refuse(word, "_ or as");
  push_application(word.is_word("_") ? read_indexed_head() : read_qualified_head(), position);
}

const Term* TermReader::open_word(ReservedWord word, const Token& token, std::size_t position)
{
  switch (word) {
    case ReservedWord::kLet:
      open_let(position);
      return nullptr;
    case ReservedWord::kAnnotation:
      push_frame(FrameKind::kAnnotation, position, 0);
      return nullptr;
    case ReservedWord::kIndexed:
      return make_constant(read_indexed_head());
    case ReservedWord::kAs:
      return make_constant(read_qualified_head());
    case ReservedWord::kBinder:
      return read_binder(token, position);
    case ReservedWord::kNone:
      break;
  }
  lexer_->refuse(token, "an operator or a function");  // GCOVR_EXCL_LINE: the callers have a reserved word
}

/// Closes the innermost application.
inline const Term* TermReader::close(const Token& parenthesis)
{
  if (frames_.empty() || !is_application(frames_.back().kind)) lexer_->refuse(parenthesis, "a term");
  const Frame frame = frames_.back();
  const Term* t = apply(frame);
  arguments_.resize(frame.first);
  frames_.pop_back();
  return t;
}

inline const Term* TermReader::deliver(const Term* t)
{
  if (frames_.empty()) return t;
  const FrameKind kind = frames_.back().kind;
  if (!is_application(kind)) return deliver_to_word(t);
  arguments_.push_back(t);
  return nullptr;
}

/// The same if what waits for the term is not an application.
const Term* TermReader::deliver_to_word(const Term* t)
{
  while (!frames_.empty()) {
    Frame& frame = frames_.back();
    switch (frame.kind) {
      case FrameKind::kOperator:
      case FrameKind::kFunction:
      case FrameKind::kForeign:
        arguments_.push_back(t);
        return nullptr;
      case FrameKind::kBindings:
        bindings_.back().term = t;
        lexer_->expect_close("the end of the binding");
        read_binding(lexer_->next());
        return nullptr;
      case FrameKind::kBody:
        lexer_->expect_close("the end of the let");
        unhide(frame.first);
        break;
      case FrameKind::kAnnotation:
        read_attributes(t);
        break;
    }
    frames_.pop_back();
  }
  return t;
}

inline void TermReader::push_frame(FrameKind kind, std::size_t position, std::size_t first)
{
  // The number fits, since a manager has fewer than 2^32 terms.
  frames_.emplace_back(Frame{{nullptr}, position, static_cast<std::uint32_t>(first), kind, false, false});
}

// -----------------------------------------------------------------------------------------------------------
// Let

void TermReader::open_let(std::size_t position)
{
  push_frame(FrameKind::kBindings, position, bindings_.size());
  lexer_->expect_open("a list of bindings");
  const Token first = lexer_->next();
  if (first.kind == TokenKind::kClose) lexer_->refuse(first, "a binding");
  read_binding(first);
}

/// Reads the name of a binding, or the end of the list; after that, the body of the let follows.
void TermReader::read_binding(const Token& token)
{
  if (token.kind == TokenKind::kClose) {
    bind();
    return;
  }
  if (token.kind != TokenKind::kOpen) lexer_->refuse(token, "a binding");
  const Token name = lexer_->expect_name("the name of a variable");
  bindings_.push_back({symbols_.find(name.text), name.position, nullptr});
}

/// Binds the variables of the innermost let to their terms.
void TermReader::bind()
{
  Frame& frame = frames_.back();
  const std::size_t first_hidden = shadowed_.size();
  const bool is_single = bindings_.size() - frame.first == 1;
  begin_names();
  for (std::size_t i = frame.first; i < bindings_.size(); ++i) {
    const Binding& binding = bindings_[i];
    if (!is_single && !is_new_name(binding.variable)) {
      lexer_->fail(binding.position, "the symbol " + make_excerpt(symbols_.get_text(binding.variable)) +
                                         " is bound already in this let, but names must differ");
    }
    hide(binding.variable, binding.term);
  }
  bindings_.resize(frame.first);
  frame.kind = FrameKind::kBody;
  frame.first = static_cast<std::uint32_t>(first_hidden);
}

void TermReader::hide(SymbolTable::Number variable, const Term* t)
{
  shadowed_.emplace_back(variable, symbols_.get_meaning(variable));
  symbols_.set_meaning(variable, Meaning(t));
}

void TermReader::unhide(std::size_t first)
{
  for (; shadowed_.size() > first; shadowed_.pop_back())
    symbols_.set_meaning(shadowed_.back().variable, shadowed_.back().meaning);
}

bool TermReader::is_new_name(SymbolTable::Number symbol)
{
  if (symbol >= name_lists_.size()) name_lists_.resize(2 * std::size_t{symbol} + 1);
  if (name_lists_[symbol] == name_list_) return false;
  name_lists_[symbol] = name_list_;
  return true;
}

// -----------------------------------------------------------------------------------------------------------
// Annotations

/// Reads the attributes of an annotated term up to the closing parenthesis.
void TermReader::read_attributes(const Term* t)
{
  Token token = lexer_->expect(TokenKind::kKeyword, "an attribute");
  while (token.kind != TokenKind::kClose) {
    if (token.kind != TokenKind::kKeyword) lexer_->refuse(token, "an attribute");
    if (token.text == ":named") {
      name_term(t);
    } else {
      skip_attribute_value();
    }
    token = lexer_->next();
  }
}

void TermReader::name_term(const Term* t)
{
  const Token name = lexer_->expect_name("a name");
  if (is_body_) {
    lexer_->fail(name.position, describe(name) +
                                    " names a part of a definition with parameters, but only terms "
                                    "without parameters can have names");
  }
  const SymbolTable::Number symbol = symbols_.find(name.text);
  if (!symbols_.get_meaning(symbol).is_none()) {
    lexer_->fail(name.position, describe(name) + " is declared here, but it has a meaning already");
  }
  symbols_.declare(symbol, Meaning(t));
}

void TermReader::skip_attribute_value()
{
  Lexer ahead = *lexer_;
  const Token token = ahead.next();
  if (token.kind == TokenKind::kKeyword || token.kind == TokenKind::kClose) return;
  *lexer_ = ahead;
  if (token.kind == TokenKind::kOpen) lexer_->skip_list(token.position);
}

// -----------------------------------------------------------------------------------------------------------
// Identifiers

TermReader::Head TermReader::read_indexed_head()
{
  Head head{lexer_->next()};
  if (!head.symbol.is_symbol())
    lexer_->refuse(head.symbol, "the name of an indexed operator or a literal bvN");
  if (is_decimal_literal_name(head.symbol.text)) {
    head.literal = read_decimal_literal(head.symbol);
    return head;
  }
  head.number = symbols_.find(head.symbol.text);
  Token token = lexer_->next();
  const bool takes_symbol = foreign_ != nullptr && head.symbol.text == "is";
  for (; token.kind == TokenKind::kNumeral || (takes_symbol && token.is_symbol()); token = lexer_->next()) {
    if (head.num_indices < head.indices.size()) head.indices[head.num_indices] = token;
    ++head.num_indices;
  }
  if (token.kind != TokenKind::kClose || head.num_indices == 0)
    lexer_->refuse(token, "a numeral as an index");
  return head;
}

TermReader::Head TermReader::read_qualified_head()
{
  Head head{lexer_->next()};
  if (head.symbol.kind == TokenKind::kOpen) {
    const Token word = lexer_->next();
    if (!word.is_word("_")) lexer_->refuse(word, "_");
    head = read_indexed_head();
  } else if (head.symbol.is_symbol()) {
    head.number = symbols_.find(head.symbol.text);
  } else {
    lexer_->refuse(head.symbol, "a symbol");
  }
  head.qualifier = sorts_.read(*lexer_);
  lexer_->expect_close("the end of the qualified name");
  return head;
}

void TermReader::push_application(const Head& head, std::size_t position)
{
  if (head.literal != nullptr) {
    lexer_->fail(head.symbol.position, "a literal was found before arguments, but it does not take any");
  }
  const Meaning meaning = symbols_.get_meaning(head.number);
  if (const Operator* op = meaning.get_operator(); op != nullptr) {
    push_operator(*op, head, position);
  } else if (const Function* function = meaning.get_function(); function != nullptr) {
    if (head.num_indices != 0)
      lexer_->fail(head.symbol.position, describe(head.symbol) + " takes no indices");
    push_frame(FrameKind::kFunction, position, arguments_.size());
    frames_.back().function = function;
  } else if (ForeignApplication application; find_foreign(head, application)) {
    push_frame(FrameKind::kForeign, position, arguments_.size());
    foreign_heads_.push_back(std::move(application));
    return;
  } else if (!meaning.is_none()) {
    lexer_->fail(head.symbol.position,
                 describe(head.symbol) + " was found before arguments, but it does not take any");
  } else {
    refuse_unknown(head.symbol);
  }
  if (head.qualifier == nullptr) return;
  frames_.back().is_qualified = true;
  qualifiers_.push_back(head.qualifier);
}

void TermReader::push_operator(const Operator& op, const Head& head, std::size_t position)
{
  if (head.num_indices != op.num_indices) {
    lexer_->fail(head.symbol.position, std::string(op.name) + " was given " +
                                           count(head.num_indices, "index", "indices") + ", but " +
                                           std::to_string(op.num_indices) +
                                           (op.num_indices == 1 ? " was" : " were") + " expected");
  }
  push_frame(FrameKind::kOperator, position, arguments_.size());
  frames_.back().op = &op;
  if (op.num_indices == 0) return;
  Indices indices{};
  for (std::size_t i = 0; i < op.num_indices; ++i)
    indices[i] = make_index(op, head.indices[i]);
  frames_.back().has_indices = true;
  indices_.push_back(indices);
}

Index TermReader::make_index(const Operator& op, const Token& token) const
{
  Index index{token.text, std::numeric_limits<unsigned long>::max()};
  const char* end = token.text.data() + token.text.size();
  const bool fits = std::from_chars(token.text.data(), end, index.value).ec == std::errc();
  if (!op.takes_any_index && (!fits || index.value > TermManager::kMaxWidth)) {
    lexer_->refuse(token, "an index up to " + std::to_string(TermManager::kMaxWidth));
  }
  return index;
}

const Term* TermReader::make_constant(const Head& head)
{
  const Term* t = head.literal;
  if (t == nullptr) {
    const Meaning meaning = symbols_.get_meaning(head.number);
    t = meaning.get_term();
    if (ForeignApplication application; t == nullptr && find_foreign(head, application)) {
      return make_foreign(application, head.symbol.position, {});
    }
    if (t == nullptr && meaning.is_none()) {
      if (head.symbol.kind == TokenKind::kSymbol &&
          symbols_.get_reserved_word(head.number) != ReservedWord::kNone) {
        lexer_->check_name(head.symbol, "a term");
      }
      refuse_unknown(head.symbol);
    }
    if (t == nullptr || head.num_indices != 0) {
      lexer_->fail(head.symbol.position,
                   describe(head.symbol) + " was found as a constant, but it is " +
                       (meaning.get_operator() != nullptr   ? "an operator"
                        : meaning.get_function() != nullptr ? "a function with parameters"
                                                            : "declared without indices"));
    }
  }
  if (head.qualifier != nullptr) check_qualifier(t, head.qualifier, head.symbol.position);
  return t;
}

const Term* TermReader::read_literal(const Token& token)
{
  try {
    return make_literal(mgr_, token);
  } catch (const Exception& e) {
    lexer_->fail(token.position, e.what());
  }
}

/// Reads the width and the end of `(_ bvN w)`.
const Term* TermReader::read_decimal_literal(const Token& symbol)
{
  const unsigned long width = sorts_.read_width(*lexer_);
  lexer_->expect_close("the end of the literal");
  const Term* literal = make_decimal_literal(mgr_, symbol.text, width);
  if (literal == nullptr) {
    lexer_->fail(symbol.position, describe(symbol) + " was found, but a value below 2^" +
                                      std::to_string(width) + " was expected, since the width is " +
                                      std::to_string(width));
  }
  return literal;
}

void TermReader::check_qualifier(const Term* t, const DataType* qualifier, std::size_t position) const
{
  if (sort_of(t) == qualifier) return;
  lexer_->fail(position, "a term of sort " + sort_of(t)->to_string() +
                             " was found, but it is declared as one of sort " + qualifier->to_string());
}

// -----------------------------------------------------------------------------------------------------------
// Applications

inline const Term* TermReader::apply(const Frame& frame)
{
  const Arguments args = Arguments(arguments_).subspan(frame.first);
  const Term* t = frame.kind == FrameKind::kOperator ? apply_operator(frame, args) : apply_other(frame, args);
  if (!frame.is_qualified) return t;
  check_qualifier(t, qualifiers_.back(), frame.position);
  qualifiers_.pop_back();
  return t;
}

inline const Term* TermReader::apply_operator(const Frame& frame, Arguments args)
{
  static constexpr Indices kNoIndices{};
  if (!fits(mgr_, *frame.op, args)) [[unlikely]] {
    const Term* t = apply_foreign_operator(*frame.op, args);
    if (t == nullptr) refuse_arguments(frame, find_misfit(mgr_, *frame.op, args));
    return t;
  }
  try {
    const Term* t = frame.op->build(mgr_, frame.has_indices ? indices_.back() : kNoIndices, args);
    if (frame.has_indices) indices_.pop_back();
    return t;
  } catch (const Exception& e) {
    lexer_->fail(frame.position, e.what());
  }
}

const Term* TermReader::apply_other(const Frame& frame, Arguments args)
{
  return frame.kind == FrameKind::kFunction ? apply_function(frame, args) : apply_foreign(frame, args);
}

const Term* TermReader::apply_function(const Frame& frame, Arguments args)
{
  const Function& function = *frame.function;
  if (const Misfit misfit = find_function_misfit(function, args); !misfit.sentence.empty()) {
    refuse_arguments(frame, misfit);
  }
  if (is_body_) return functions_.make_call(function, args);
  try {
    return functions_.expand(function, args);
  } catch (const Exception& e) {
    lexer_->fail(frame.position, e.what());
  }
}

Misfit TermReader::find_function_misfit(const Function& function, Arguments args)
{
  const std::size_t expected = function.get_num_parameters();
  const std::string name = make_excerpt(function.get_name());
  if (args.size() != expected) {
    return {args.size(), name + " was given " + count(args.size(), "argument", "arguments") + ", but " +
                             std::to_string(expected) + (expected == 1 ? " was" : " were") + " expected"};
  }
  for (std::size_t i = 0; i < expected; ++i) {
    const DataType* sort = function.get_parameter_sort(i);
    if (sort_of(args[i]) == sort) continue;
    return {i, "argument " + std::to_string(i + 1) + " of " + name + " has sort " +
                   sort_of(args[i])->to_string() + ", but sort " + sort->to_string() + " was expected"};
  }
  return {expected, {}};
}

void TermReader::refuse_arguments(const Frame& frame, const Misfit& misfit) const
{
  const bool is_one = frame.first + misfit.argument < arguments_.size();
  lexer_->fail(is_one ? find_argument(frame, misfit.argument) : frame.position, misfit.sentence);
}

std::size_t TermReader::find_argument(const Frame& frame, std::size_t argument) const
{
  Lexer lexer = *lexer_;
  lexer.set_position(frame.position + 1);
  // Skip the head of the application and the arguments before the wanted one.
  for (std::size_t i = 0; i <= argument; ++i) {
    const Token token = lexer.next();
    if (token.kind == TokenKind::kOpen) lexer.skip_list(token.position);
  }
  return lexer.next().position;
}

void TermReader::refuse_unknown(const Token& symbol) const
{
  std::string nearest = symbols_.find_nearest(symbol.text);
  std::string_view function;
  const bool is_near = foreign_ != nullptr && nearest.empty() &&
                       find_nearest_theory_function(symbol.text, function) != kNotNear;
  if (is_near) nearest = function;
  lexer_->fail(symbol.position,
               describe(symbol) + " is not declared" +
                   (nearest.empty() ? "" : "; perhaps " + make_excerpt(nearest) + " was meant"));
}

}  // namespace lumo::smtlib
