#include "lumo/smtlib/conversation_reader.h"

#include <algorithm>

namespace lumo::smtlib {

namespace {

/// Of constants that cannot have the names that the text gives them
constexpr const char* kRenamedPrefix = "lumo!c";

/// Whether the term that comes next is an annotated one.
bool begins_annotation(Lexer lexer)
{
  return lexer.next().kind == TokenKind::kOpen && lexer.next().is_word("!");
}

}  // namespace

Command ConversationReader::read(const CommandText& text)
{
  const std::size_t num_declarations = symbols_.get_num_declarations();
  const std::size_t num_sort_definitions = sorts_.get_num_definitions();
  const std::size_t num_foreign = foreign_ == nullptr ? 0 : foreign_->declarations.size();
  terms_read_.clear();
  label_.reset();
  try {
    lexer_ = Lexer(text.text, text.place);
    Command command;
    if (!read_name(command)) return command;
    const Lexer after_name = lexer_;
    read_command(command);
    note_sorts(num_foreign, num_sort_definitions);
    note_names(command, num_declarations, after_name);
    return command;
  } catch (...) {
    note_sorts(num_foreign, num_sort_definitions);
    take_back(num_declarations, num_sort_definitions);
    throw;
  }
}

void ConversationReader::read_command(Command& command)
{
  if (command.name == "check-sat-assuming") {
    command.kind = CommandKind::kCheckSatAssuming;
    read_terms(command, true);
  } else if (command.name == "get-value") {
    command.kind = CommandKind::kGetValue;
    read_terms(command, false);
  } else if (command.name == "get-info" || command.name == "get-option") {
    command.kind = CommandKind::kGet;
    command.keyword = lexer_.expect(TokenKind::kKeyword, "a keyword");
    close(command);
  } else if (command.name == "echo") {
    command.kind = CommandKind::kEcho;
    command.symbol = lexer_.expect(TokenKind::kString, "a string");
    close(command);
  } else if (command.name == "reset") {
    command.kind = CommandKind::kReset;
    reset(command);
  } else if (command.name == "reset-assertions") {
    command.kind = CommandKind::kResetAssertions;
    reset_assertions(command);
  } else {
    read_rest(command);
  }
}

void ConversationReader::read_terms(Command& command, bool are_assumptions)
{
  lexer_.expect(TokenKind::kOpen, "a list of terms");
  for (;;) {
    Lexer ahead = lexer_;
    const Token next = ahead.next();
    if (next.kind == TokenKind::kClose) {
      lexer_ = ahead;
      break;
    }
    const std::size_t start = lexer_.get_position();
    const Term* t = terms_.read(lexer_, command.position);
    if (are_assumptions) check_sort(start, t, mgr_.make_bool_type(), "the assumption");
    terms_read_.push_back({lexer_.get_text(next.position, lexer_.get_position()), t});
  }
  close(command);
}

void ConversationReader::reset(Command& command)
{
  close(command);
  drop_levels();
  take_back(0, 0);
  keeps_declarations_ = false;
}

void ConversationReader::reset_assertions(Command& command)
{
  close(command);
  drop_levels();
  forget(0, 0);
}

void ConversationReader::note_names(const Command& command, std::size_t num_declarations,
                                    const Lexer& after_name)
{
  if (command.kind == CommandKind::kDeclareForeign) return;
  std::size_t last = symbols_.get_num_declarations();
  const bool declares = command.kind == CommandKind::kDeclare || command.kind == CommandKind::kDefine ||
                        command.kind == CommandKind::kDefineFunction;
  if (declares) --last;
  for (std::size_t i = num_declarations; i < last; ++i) {
    const SymbolTable::Number symbol = symbols_.get_declared(i);
    named_terms_.push_back({symbols_.get_text(symbol), symbols_.get_meaning(symbol).get_term(), i});
  }
  const bool may_have_label = command.kind == CommandKind::kAssert && last > num_declarations &&
                              named_terms_.back().term == command.term;
  if (may_have_label && begins_annotation(after_name)) label_ = named_terms_.back().name;
}

std::vector<const Term*> ConversationReader::list_constants() const
{
  std::vector<const Term*> constants;
  constants.reserve(constants_.size());
  for (const Declared& declared : constants_)
    constants.push_back(declared.constant);
  return constants;
}

std::string_view ConversationReader::get_text_name(const Term* constant) const
{
  const auto place = text_names_.find(constant);
  return place != text_names_.end() ? symbols_.get_text(place->second) : constant->get_symbol()->get_name();
}

bool ConversationReader::has_begun() const
{
  return symbols_.get_num_declarations() > 0 || sorts_.get_num_definitions() > 0 || get_num_levels() > 0;
}

const Term* ConversationReader::make_constant(std::string_view name, SymbolTable::Number symbol,
                                              const DataType* sort)
{
  if (symbol >= sorts_of_names_.size()) sorts_of_names_.resize(2 * std::size_t{symbol} + 1);
  const DataType*& sort_of_name = sorts_of_names_[symbol];
  const bool has_own_name =
      !name.starts_with(kReservedPrefix) && (sort_of_name == nullptr || sort_of_name == sort);
  const Term* constant = nullptr;
  if (has_own_name) {
    constant = CommandReader::make_constant(name, symbol, sort);
    sort_of_name = sort;
  } else {
    const Term*& renamed = renamed_[{symbol, sort}];
    if (renamed == nullptr) renamed = mgr_.make_fresh_constant(kRenamedPrefix, sort);
    text_names_.emplace(renamed, symbol);
    constant = renamed;
  }
  constants_.push_back({constant, symbols_.get_num_declarations()});
  return constant;
}

void ConversationReader::forget(std::size_t num_declarations, std::size_t num_sort_definitions)
{
  if (!keeps_declarations_) take_back(num_declarations, num_sort_definitions);
}

/// Notes the declarations of sorts after the first ones.
void ConversationReader::note_sorts(std::size_t num_before, std::size_t num_sort_definitions)
{
  for (std::size_t i = num_before; foreign_ != nullptr && i < foreign_->declarations.size(); ++i) {
    if (foreign_->declarations[i].is_of_sorts) sort_declarations_.push_back({i, num_sort_definitions});
  }
}

void ConversationReader::take_back(std::size_t num_declarations, std::size_t num_sort_definitions)
{
  for (;
       !sort_declarations_.empty() && sort_declarations_.back().num_sort_definitions >= num_sort_definitions;
       sort_declarations_.pop_back())
    foreign_->declarations[sort_declarations_.back().declaration].is_of_sorts = false;
  CommandReader::forget(num_declarations, num_sort_definitions);
  while (!constants_.empty() && constants_.back().declaration >= num_declarations)
    constants_.pop_back();
  while (!named_terms_.empty() && named_terms_.back().declaration >= num_declarations)
    named_terms_.pop_back();
}

}  // namespace lumo::smtlib
