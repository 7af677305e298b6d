#include "lumo/smtlib/foreign_model.h"

#include <algorithm>
#include <map>
#include <optional>

#include "lumo/model/model_store.h"
#include "lumo/smtlib/command_reader.h"
#include "lumo/smtlib/foreign_evaluation.h"
#include "lumo/smtlib/model_reader.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/value_table.h"
#include "lumo/terms/exception.h"
#include "lumo/terms/fold.h"

namespace lumo::smtlib {

/// What lumo understands of a definition.
struct ForeignModel::Definition
{
  const Term* body = nullptr;
  const Function* function = nullptr;     ///< null without parameters
  std::vector<const Term*> parameters{};  ///< as they stand in the body
  std::optional<ValueTable> table{};      ///< of a body that is a list of cases
  bool is_array = false;                  ///< whether the function is the meaning of an array
};

/// Reads the definitions of a model as commands, those first that others mention.
class ForeignModel::Reader : public CommandReader
{
 public:
  Reader(TermManager& mgr, const std::shared_ptr<ForeignTerms>& terms) : CommandReader(mgr, {}, terms) {}

  /// Reads a command of the script that declares a sort.
  void declare(std::string_view text);
  void add(std::string_view text);
  void read_all();
  [[nodiscard]] Definition* find(const std::string& name)
  {
    const auto place = definitions_.find(name);
    return place == definitions_.end() ? nullptr : &place->second;
  }
  [[nodiscard]] const Term* expand(const Function& function, std::span<const Term* const> args)
  {
    return functions_.expand(function, args);
  }
  [[nodiscard]] ForeignTerms& get_terms() { return *foreign_; }

 private:
  struct Entry
  {
    std::string name;
    std::string text;
    std::vector<std::size_t> mentioned{};
    bool is_open = false;
    bool is_read = false;
  };

  void list_mentioned();
  void read_definition(Entry& entry);
  [[nodiscard]] std::string make_plain(const Entry& entry, Definition& definition);

  std::vector<Entry> entries_;
  std::map<std::string, std::size_t, std::less<>> numbers_;
  std::map<std::string, std::string, std::less<>> aliases_;
  std::map<std::string, Definition, std::less<>> definitions_;
};

void ForeignModel::Reader::declare(std::string_view text)
{
  lexer_ = Lexer(text);
  static_cast<void>(read());
}

void ForeignModel::Reader::add(std::string_view text)
{
  Lexer lexer(text);
  static_cast<void>(lexer.next());
  const bool is_definition = lexer.next().is_word("define-fun");
  const Token name = lexer.next();
  if (!is_definition || !name.is_symbol()) {
    try {
      declare(text);
    } catch (const Exception&) {
      // What is not understood is not evaluated.
    }
    return;
  }
  numbers_.emplace(name.text, entries_.size());
  entries_.push_back({std::string(name.text), std::string(text)});
}

void ForeignModel::Reader::list_mentioned()
{
  for (Entry& entry : entries_) {
    Lexer lexer(entry.text);
    for (Token token = lexer.next(); token.kind != TokenKind::kEnd; token = lexer.next()) {
      if (!token.is_symbol()) continue;
      const auto place = numbers_.find(token.text);
      if (place != numbers_.end()) entry.mentioned.push_back(place->second);
    }
  }
}

void ForeignModel::Reader::read_all()
{
  list_mentioned();
  std::vector<std::size_t> stack;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    stack.push_back(i);
    while (!stack.empty()) {
      Entry& entry = entries_[stack.back()];
      if (!entry.is_open && !entry.is_read) {
        entry.is_open = true;
        for (const std::size_t other : entry.mentioned) {
          if (!entries_[other].is_open && !entries_[other].is_read) stack.push_back(other);
        }
        continue;
      }
      if (!entry.is_read) read_definition(entry);
      entry.is_read = true;
      stack.pop_back();
    }
  }
}

/// The text of a definition as one that the reader of commands knows. An array whose meaning is a function, `(_ as-array
/// f)` or `(lambda ((i S)) v)`, becomes that function.
std::string ForeignModel::Reader::make_plain(const Entry& entry, Definition& definition)
{
  Lexer lexer(entry.text);
  for (int i = 0; i < 4; ++i)  // ( define-fun NAME (
    static_cast<void>(lexer.next());
  if (lexer.next().kind != TokenKind::kClose) return entry.text;
  const ForeignSort* array = as_array(sorts_.read(lexer));
  if (array == nullptr || lexer.next().kind != TokenKind::kOpen) return entry.text;
  const Token word = lexer.next();
  const std::string start = "(define-fun " + make_symbol_text(entry.name) + ' ';
  const std::string element = array->get_args()[1]->to_string();
  if (word.is_word("lambda")) {
    definition.is_array = true;
    const std::size_t begin = lexer.get_position();
    const Token open = lexer.next();
    lexer.skip_list(open.position);
    const std::string parameters(lexer.get_text(begin, lexer.get_position()));
    return start + parameters + ' ' + element +
           std::string(lexer.get_text(lexer.get_position(), entry.text.rfind(')')));
  }
  if (word.is_word("_") && lexer.next().text == "as-array") {
    definition.is_array = true;
    return start + "((i " + array->get_args()[0]->to_string() + ")) " + element + " (" +
           make_symbol_text(lexer.next().text) + " i))";
  }
  return entry.text;
}

void ForeignModel::Reader::read_definition(Entry& entry)
{
  try {
    Definition definition;
    entry.text = make_plain(entry, definition);
    lexer_ = Lexer(entry.text);
    const Command command = read();
    definition.body = command.term;
    if (command.kind == CommandKind::kDefineFunction) {
      definition.function = symbols_.get_meaning(symbols_.find(command.symbol.text)).get_function();
      for (std::size_t i = 0; i < definition.function->get_num_parameters(); ++i)
        definition.parameters.push_back(
            functions_.get_parameter(i, definition.function->get_parameter_sort(i)));
      // A list of cases may call other functions in its values only after it was expanded.
      const Term* body = definition.body;
      if (definition.is_array) body = functions_.expand(*definition.function, definition.parameters);
      definition.table = make_value_table(mgr_, *foreign_, definition.parameters, body);
    }
    definitions_.emplace(entry.name, std::move(definition));
  } catch (const Exception&) {
    // What is not understood is not evaluated.
  }
}

// -----------------------------------------------------------------------------------------------------------
// Values

/// Evaluates terms of the definitions, which are closed.
class ForeignModel::Evaluation
{
 public:
  Evaluation(TermManager& mgr, ForeignTerms& terms) : mgr_(mgr), terms_(terms), store_(&mgr) {}

  [[nodiscard]] ForeignValue evaluate(const Term* t);

 private:
  [[nodiscard]] ForeignValue compute(ForeignTerms::Index term);
  [[nodiscard]] ForeignValue get_value(const Term* t);

  TermManager& mgr_;
  ForeignTerms& terms_;
  ModelStore store_;
  std::vector<ForeignValue> values_;  ///< by foreign term
  std::vector<bool> is_done_;
};

ForeignValue ForeignModel::Evaluation::evaluate(const Term* t)
{
  if (is_value(mgr_, t)) return {t};
  const std::vector<ForeignTerms::Index> terms = terms_.collect(std::span(&t, 1));
  values_.resize(terms_.size());
  is_done_.resize(terms_.size());
  bool is_known = true;
  for (const ForeignTerms::Index term : terms) {
    if (!is_done_[term]) values_[term] = compute(term);
    is_done_[term] = true;
    const Term* placeholder = terms_.get_placeholder(term);
    if (placeholder->get_sort()->is_opaque()) continue;
    if (values_[term].scalar == nullptr) {
      is_known = false;
    } else {
      store_.set_value(placeholder, values_[term].scalar);
    }
  }
  return is_known ? get_value(t) : ForeignValue{};
}

ForeignValue ForeignModel::Evaluation::get_value(const Term* t)
{
  if (t->get_sort()->is_opaque()) return values_[terms_.find(t)];
  return {store_.get_value(t)};
}

ForeignValue ForeignModel::Evaluation::compute(ForeignTerms::Index term)
{
  const Term* placeholder = terms_.get_placeholder(term);
  const ForeignHead& head = terms_.get_head_of(term);
  if (terms_.get_args(term).empty()) {
    // The name of an element of a declared sort: elements with other names are other elements.
    const bool is_element =
        head.role == ForeignRole::kDeclared && as_array(placeholder->get_sort()) == nullptr;
    return is_element ? ForeignValue{placeholder} : ForeignValue{};
  }
  std::vector<ForeignValue> args;
  for (const Term* arg : terms_.get_args(term))
    args.push_back(get_value(arg));
  return apply_theory(mgr_, terms_, term, args);
}

// -----------------------------------------------------------------------------------------------------------
// Models

ForeignModel::ForeignModel(TermManager& mgr, const ForeignTerms& script) : mgr_(mgr), script_(script)
{
  auto terms = std::make_shared<ForeignTerms>(mgr_);
  terms->logic = "ALL";
  terms->has_elements = true;
  reader_ = std::make_unique<Reader>(mgr_, terms);
  for (const ForeignDeclaration& declaration : script.declarations) {
    if (declaration.is_of_sorts) reader_->declare(declaration.text);
  }
  evaluation_ = std::make_unique<Evaluation>(mgr_, *terms);
}

ForeignModel::~ForeignModel() = default;

namespace {

/// The entries of a model that was read before.
std::vector<std::string_view> list_entries(std::string_view text)
{
  std::vector<std::string_view> entries;
  Lexer lexer(text);
  Token token = lexer.next();
  while (token.is_symbol())  // sat, success
    token = lexer.next();
  const Token head = Lexer(lexer).next();
  const bool is_list = head.kind != TokenKind::kSymbol || head.text == "model";
  if (head.is_word("model")) static_cast<void>(lexer.next());
  if (is_list) token = lexer.next();
  for (; token.kind == TokenKind::kOpen; token = lexer.next()) {
    lexer.skip_list(token.position);
    entries.push_back(lexer.get_text(token.position, lexer.get_position()));
  }
  return entries;
}

bool is_kept(std::string_view entry)
{
  Lexer lexer(entry);
  static_cast<void>(lexer.next());
  return !lexer.next().is_word("forall");
}

std::string find_defined_name(std::string_view entry)
{
  Lexer lexer(entry);
  for (int i = 0; i < 2; ++i)
    static_cast<void>(lexer.next());
  const Token name = lexer.next();
  return name.is_symbol() ? std::string(name.text) : std::string();
}

}  // namespace

void ForeignModel::read(std::span<const Term* const> constants, std::string_view text)
{
  values_ = read_model(mgr_, constants, text);
  std::set<std::string, std::less<>> known;
  for (const Term* constant : constants)
    known.insert(constant->get_symbol()->get_name());
  for (const std::string_view entry : list_entries(text)) {
    std::string name = find_defined_name(entry);
    if (known.contains(name) || !is_kept(entry)) continue;
    texts_.emplace_back(entry);
    reader_->add(entry);
    names_.insert(std::move(name));
  }
  reader_->read_all();
}

/// An array whose meaning is a function, not a list of cases. Small ones become lists, since these can be compared.
ForeignValue ForeignModel::make_array(const Definition& definition)
{
  constexpr unsigned long kMaxWidth = 12;
  const Function* function = definition.function;
  const auto select = [this, function](const Term* index) -> ForeignValue {
    try {
      return evaluation_->evaluate(reader_->expand(*function, std::span(&index, 1)));
    } catch (const Exception&) {
      return {};
    }
  };
  ArrayValue array{ArrayValue::Rule(select)};
  const DataType* index = function->get_parameter_sort(0);
  if (index->is_bit_vector() && index->get_width() <= kMaxWidth) {
    for (int i = 0; i < 1 << index->get_width(); ++i) {
      const Term* numeral = mgr_.make_bv_number(i, index->get_width());
      array = array.store(numeral, select(numeral));
    }
  }
  return {nullptr, std::make_shared<const ArrayValue>(std::move(array))};
}

ForeignValue ForeignModel::apply(const std::string& name, std::span<const ForeignValue> args)
{
  Definition* definition = reader_->find(name);
  if (definition == nullptr) return {};
  if (definition->is_array) {
    if (!args.empty()) return {};
    return definition->table ? definition->table->make_array() : make_array(*definition);
  }
  if (definition->function == nullptr)
    return args.empty() ? evaluation_->evaluate(definition->body) : ForeignValue{};
  std::vector<const Term*> terms;
  for (const ForeignValue& arg : args) {
    if (arg.scalar == nullptr) return {};
    terms.push_back(arg.scalar);
  }
  if (definition->table) return {definition->table->find(terms)};
  try {
    return evaluation_->evaluate(reader_->expand(*definition->function, terms));
  } catch (const Exception&) {
    return {};
  }
}

// -----------------------------------------------------------------------------------------------------------
// Defaults

/// The element of a sort that stands for any: one that the model has, or else one of its own.
const Term* ForeignModel::find_element(const DataType* sort)
{
  const std::string spelling = sort->to_string();
  const Term*& element = elements_[spelling];
  if (element != nullptr) return element;
  ForeignTerms& terms = reader_->get_terms();
  for (ForeignTerms::Index i = 0; i < terms.size() && element == nullptr; ++i) {
    const Term* placeholder = terms.get_placeholder(i);
    const bool is_element = terms.get_args(i).empty() && placeholder->get_sort()->is_opaque() &&
                            terms.get_head_of(i).role == ForeignRole::kDeclared &&
                            placeholder->get_sort()->to_string() == spelling;
    if (is_element) element = placeholder;
  }
  if (element == nullptr) {
    ForeignHead head;
    head.role = ForeignRole::kDeclared;
    head.text = "lumo!element!" + std::to_string(elements_.size());
    element_texts_.push_back("(declare-fun " + head.text + " () " + spelling + ')');
    element = terms.make(terms.make_head(std::move(head)), sort, {});
  }
  return element;
}

// The depth of the functions that follow is limited by that of sorts.
// NOLINTBEGIN(misc-no-recursion)

ForeignValue ForeignModel::make_default(const DataType* sort)
{
  if (sort->is_bool()) return {mgr_.make_false()};
  if (sort->is_bit_vector()) return {mgr_.make_bv_number(0, sort->get_width())};
  if (script_.sorts.is_uninterpreted(sort)) return {find_element(sort)};
  const ForeignSort* array = as_array(sort);
  if (array == nullptr) return {};
  const ForeignValue element = make_default(array->get_args()[1]);
  if (!element.is_known()) return {};
  return {nullptr, std::make_shared<const ArrayValue>(element)};
}

std::string ForeignModel::make_default_text(const DataType* sort)
{
  if (sort->is_bool()) return "false";
  if (sort->is_bit_vector()) return "(_ bv0 " + std::to_string(sort->get_width()) + ')';
  if (script_.sorts.is_uninterpreted(sort)) {
    const ForeignTerms& terms = reader_->get_terms();
    return terms.get_head_of(terms.find(find_element(sort))).text;
  }
  const ForeignSort* array = as_array(sort);
  const std::string element = array == nullptr ? "" : make_default_text(array->get_args()[1]);
  return element.empty() ? "" : "((as const " + sort->to_string() + ") " + element + ')';
}

// NOLINTEND(misc-no-recursion)

std::string ForeignModel::make_default_definition(const ForeignFunction& function)
{
  const std::string value = make_default_text(function.result);
  if (value.empty()) return {};
  std::string text = "(define-fun " + make_symbol_text(function.name) + " (";
  for (std::size_t i = 0; i < function.parameters.size(); ++i) {
    text += (i == 0 ? "(x!" : " (x!") + std::to_string(i) + ' ' + function.parameters[i]->to_string() + ')';
  }
  return text + ") " + function.result->to_string() + ' ' + value + ')';
}

}  // namespace lumo::smtlib
