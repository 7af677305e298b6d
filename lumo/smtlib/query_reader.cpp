#include "lumo/smtlib/query_reader.h"

#include <algorithm>
#include <string>
#include <vector>

#include "lumo/smtlib/command_splitter.h"
#include "lumo/smtlib/conversation_reader.h"

namespace lumo::smtlib {

namespace {

bool is_query(const CommandText& command)
{
  try {
    Lexer lexer(command.text);
    if (lexer.next().kind != TokenKind::kOpen) return false;
    const Token name = lexer.next();
    return name.is_word("check-sat") || name.is_word("check-sat-assuming");
  } catch (const InputError&) {
    return false;  // The reader of the command reports it.
  }
}

std::size_t count_queries(std::string_view text)
{
  CommandSplitter commands;
  commands.add(text);
  commands.finish();
  std::size_t count = 0;
  for (auto command = commands.take(); command; command = commands.take()) {
    if (is_query(*command)) ++count;
  }
  return count;
}

/// Follows a text up to a query.
class QueryReader
{
 public:
  explicit QueryReader(TermManager& mgr) : reader_(mgr) {}

  /// Takes a command; true if it is a query.
  bool take(const CommandText& text);
  [[nodiscard]] Script make_script(const Place& place);

 private:
  void note_skipped(std::string_view name);
  void pop(std::size_t number);

  ConversationReader reader_;
  Script script_;
  std::vector<std::size_t> first_;  ///< assertion of each level but the lowest
};

bool QueryReader::take(const CommandText& text)
{
  const Command command = reader_.read(text);
  switch (command.kind) {
    case CommandKind::kAssert:
      script_.assertions.push_back({command.term, text.place});
      break;
    case CommandKind::kCheckSat:
    case CommandKind::kCheckSatAssuming:
      return true;
    case CommandKind::kPush:
      first_.insert(first_.end(), command.number, script_.assertions.size());
      break;
    case CommandKind::kPop:
      pop(command.number);
      break;
    case CommandKind::kReset:
    case CommandKind::kResetAssertions:
      script_.assertions.clear();
      first_.clear();
      break;
    case CommandKind::kSetOption:
      if (command.keyword.text == ":global-declarations")
        reader_.keep_declarations(command.content.find("true") != std::string_view::npos);
      break;
    case CommandKind::kEcho:
    case CommandKind::kGet:
    case CommandKind::kGetValue:
      note_skipped(command.name);
      break;
    case CommandKind::kOther:
      throw InputError(
          text.place,
          "the command " + make_excerpt(command.name) +
              " was found, but only declarations, definitions, assertions, levels and queries were "
              "expected");
    case CommandKind::kDeclare:
    case CommandKind::kDefine:
    case CommandKind::kDefineFunction:
    case CommandKind::kDeclareForeign:
    case CommandKind::kDefineSort:
    case CommandKind::kEnd:
    case CommandKind::kExit:
    case CommandKind::kSetInfo:
    case CommandKind::kSetLogic:
      break;
  }
  return false;
}

void QueryReader::pop(std::size_t number)
{
  if (number == 0) return;
  const std::size_t level = first_.size() - number;
  script_.assertions.resize(first_[level]);
  first_.resize(level);
}

void QueryReader::note_skipped(std::string_view name)
{
  if (std::find(script_.skipped.begin(), script_.skipped.end(), name) == script_.skipped.end()) {
    script_.skipped.emplace_back(name);
  }
}

/// The script of the query that was taken last.
Script QueryReader::make_script(const Place& place)
{
  for (const WrittenTerm& assumption : reader_.get_terms())
    script_.assertions.push_back({assumption.term, place});
  script_.constants = reader_.list_constants();
  for (const Term* constant : script_.constants) {
    const std::string_view name = reader_.get_text_name(constant);
    if (name == constant->get_symbol()->get_name()) continue;
    throw InputError(place,
                     "the constant " + make_excerpt(name) +
                         " of this query has a reserved name, or one that had another sort before, but what "
                         "is about one query needs one sort for each name");
  }
  return std::move(script_);
}

}  // namespace

Script read_query(TermManager& mgr, std::string_view text, std::optional<std::size_t> number)
{
  const std::size_t num_queries = count_queries(text);
  const std::size_t wanted = number.value_or(num_queries);
  if (num_queries == 0) throw Exception("the text has levels, but does not make a query");
  if (wanted == 0 || wanted > num_queries) {
    throw Exception("query " + std::to_string(wanted) +
                    " was asked for, but the queries have the numbers 1 to " + std::to_string(num_queries));
  }
  CommandSplitter commands;
  commands.add(text);
  commands.finish();
  QueryReader reader(mgr);
  std::size_t count = 0;
  for (auto command = commands.take(); command; command = commands.take()) {
    if (reader.take(*command) && ++count == wanted) return reader.make_script(command->place);
  }
  // GCOVR_EXCL_START: the queries were counted.
  throw Exception("the text has changed");
  // GCOVR_EXCL_STOP
}

}  // namespace lumo::smtlib
