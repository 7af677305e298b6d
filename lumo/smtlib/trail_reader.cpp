#include "lumo/smtlib/trail_reader.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumo/calculators/calculator_table.h"
#include "lumo/smtlib/command_reader.h"

namespace lumo::smtlib {

namespace {

constexpr const char* kForeign = ", so the trail belongs to another script";

std::string describe_name(std::string_view name) { return "the constant " + make_excerpt(name); }

/// The content of a string, in whose text a quotation mark is written twice.
std::string make_content(std::string_view text)
{
  std::string content;
  for (std::size_t i = 0; i < text.size(); ++i) {
    content += text[i];
    if (text[i] == '"') ++i;
  }
  return content;
}

/// The content of a step's string: the names of its constant and of its free arguments
struct NamedStep
{
  std::size_t position;  ///< of the string
  std::vector<std::string> names;
};

class TrailReader
{
 public:
  TrailReader(TermManager& mgr, std::string_view text) : mgr_(mgr), lexer_(text), commands_(mgr, text) {}

  Trail read(std::span<const Term* const> constants);

 private:
  /// A name of the script or of a definition
  struct Name
  {
    const Term* constant = nullptr;     ///< the declared or fresh constant, or null
    const Term* application = nullptr;  ///< the application of the step
    bool is_declared = false;
    bool is_defined = false;
    bool is_step = false;  ///< whether the name is the first one of a step
    bool has_step = false;
    bool is_free = false;  ///< whether it is a free argument of a step
  };
  using Names = std::unordered_map<std::string, Name>;

  // The steps are read first, since they tell which definitions define fresh constants, and may be anywhere.
  void note_steps();
  void note_step();
  [[nodiscard]] NamedStep read_step(const Token& text) const;

  void read_commands();
  void take_declaration(const Command& command);
  void take_definition(const Command& command);
  void take_assertion(const Command& command);
  void check_declarations(std::span<const Term* const> constants) const;

  [[nodiscard]] Step make_step(const NamedStep& named);
  void set_free(Step& step, const NamedStep& named, const std::string& name);
  [[nodiscard]] Name& find_name(const NamedStep& named, const std::string& name);
  [[noreturn]] void fail(const NamedStep& named, const std::string& sentence) const;

  TermManager& mgr_;
  Lexer lexer_;
  CommandReader commands_;
  Names names_;
  std::vector<NamedStep> steps_;
  Trail trail_;
};

Trail TrailReader::read(std::span<const Term* const> constants)
{
  note_steps();
  for (const Term* constant : constants)
    names_[constant->get_symbol()->get_name()].constant = constant;
  read_commands();
  check_declarations(constants);
  trail_.steps.reserve(steps_.size());
  for (const NamedStep& named : steps_)
    trail_.steps.push_back(make_step(named));
  return std::move(trail_);
}

// -----------------------------------------------------------------------------------------------------------
// Steps

void TrailReader::note_steps()
{
  for (Token open = lexer_.next(); open.kind == TokenKind::kOpen; open = lexer_.next()) {
    const Lexer start = lexer_;
    const Token name = lexer_.next();
    if (name.is_word("exit")) break;
    if (name.is_word("set-info") && lexer_.next().text == ":lumo-step") {
      note_step();
    } else {
      lexer_ = start;
      lexer_.skip_list(open.position);
    }
  }
}

void TrailReader::note_step()
{
  const Token text = lexer_.expect(TokenKind::kString, "a string with the names of a step");
  lexer_.expect_close("the end of the command");
  NamedStep step = read_step(text);
  if (step.names.empty()) {
    fail(step, "an empty string was found, but a step starts with the name of a definition");
  }
  names_[step.names.front()].is_step = true;
  steps_.push_back(std::move(step));
}

NamedStep TrailReader::read_step(const Token& text) const
{
  NamedStep step{text.position, {}};
  const std::string content = make_content(text.text);
  Lexer names(content);
  try {
    for (Token token = names.next(); token.kind != TokenKind::kEnd; token = names.next()) {
      names.check_name(token, "the name of a constant");
      step.names.emplace_back(token.text);
    }
  } catch (const InputError& e) {
    fail(step, std::string("in a step, ") + e.what());
  }
  return step;
}

// -----------------------------------------------------------------------------------------------------------
// Commands

void TrailReader::read_commands()
{
  for (;;) {
    const Command command = commands_.read();
    switch (command.kind) {
      case CommandKind::kAssert:
        take_assertion(command);
        break;
      case CommandKind::kDeclare:
        take_declaration(command);
        break;
      case CommandKind::kDefine:
        take_definition(command);
        break;
      case CommandKind::kPop:
      case CommandKind::kPush:
      case CommandKind::kCheckSatAssuming:
      case CommandKind::kGetValue:
      case CommandKind::kReset:
      case CommandKind::kResetAssertions:
      case CommandKind::kOther:
        throw InputError(
            commands_.get_place(command.position),
            "the command " + make_excerpt(command.name) +
                " was found, but only declarations, definitions, steps and assertions were expected");
      case CommandKind::kExit:
      case CommandKind::kEnd:
        return;
      case CommandKind::kCheckSat:
      case CommandKind::kDefineFunction:
      case CommandKind::kDeclareForeign:
      case CommandKind::kDefineSort:
      case CommandKind::kEcho:
      case CommandKind::kGet:
      case CommandKind::kSetInfo:
      case CommandKind::kSetLogic:
      case CommandKind::kSetOption:
        break;
    }
  }
}

/// The declarations must be those of the script, in any order.
void TrailReader::take_declaration(const Command& command)
{
  Name& name = names_[std::string(command.symbol.text)];
  if (name.constant != command.term) {
    lexer_.fail(command.symbol.position,
                describe(command.symbol) + " is declared here, but not in the script" + kForeign);
  }
  name.is_declared = true;
}

void TrailReader::take_definition(const Command& command)
{
  const std::string text(command.symbol.text);
  Name& name = names_[text];
  name.is_defined = true;
  if (!name.is_step) return;
  const Symbol* symbol = command.term->get_symbol();
  if (find_calculator(mgr_, symbol) == nullptr) {
    lexer_.fail(command.symbol.position, "the definition of " + make_excerpt(text) + " is the term " +
                                             make_excerpt(symbol->get_name()) +
                                             ", but a step needs the application of an operator");
  }
  try {
    name.constant = mgr_.make_constant(text, symbol->get_output_type());
  } catch (const Exception& e) {
    lexer_.fail(command.symbol.position, e.what());
  }
  name.application = command.term;
  commands_.replace(command.symbol, name.constant);
}

void TrailReader::take_assertion(const Command& command)
{
  const Symbol* symbol = command.term->get_symbol();
  if (!mgr_.is_constant(symbol)) {
    lexer_.fail(command.position, "an assertion of the term " + make_excerpt(symbol->get_name()) +
                                      " was found, but a trail asserts only constants");
  }
  trail_.facts.push_back(command.term);
}

void TrailReader::check_declarations(std::span<const Term* const> constants) const
{
  for (const Term* constant : constants) {
    const std::string& name = constant->get_symbol()->get_name();
    if (names_.at(name).is_declared) continue;
    throw InputError({}, describe_name(name) + " is declared in the script, but not in the trail" + kForeign);
  }
}

// -----------------------------------------------------------------------------------------------------------
// Steps of the trail

Step TrailReader::make_step(const NamedStep& named)
{
  const std::string& text = named.names.front();
  Name& name = find_name(named, text);
  if (!name.is_defined) {
    fail(named, describe_name(text) + " was found, but a step starts with the name of a definition");
  }
  if (name.has_step) {
    fail(named, "a second step of " + describe_name(text) + " was found, but only one was expected");
  }
  name.has_step = true;
  Step step{name.constant, name.application, {}, nullptr};
  for (std::size_t i = 1; i < named.names.size(); ++i)
    set_free(step, named, named.names[i]);
  return step;
}

void TrailReader::set_free(Step& step, const NamedStep& named, const std::string& name)
{
  Name& free = find_name(named, name);
  if (free.is_free) {
    fail(named,
         describe_name(name) +
             " was found as a free argument for the second time, but a constant is free in one step only");
  }
  free.is_free = true;
  std::size_t num_found = 0;
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (step.application->get_arg(i) != free.constant) continue;
    step.free.set(i);
    ++num_found;
  }
  if (num_found == 1) return;
  fail(named, describe_name(name) + " was found as a free argument of " + make_excerpt(named.names.front()) +
                  ", but its definition has it " +
                  (num_found == 0 ? "not as an argument" : "as several arguments"));
}

TrailReader::Name& TrailReader::find_name(const NamedStep& named, const std::string& name)
{
  const auto known = names_.find(name);
  // A step alone does not define a name.
  if (known == names_.end() || (known->second.constant == nullptr && !known->second.is_defined)) {
    fail(named,
         "the symbol " + make_excerpt(name) + " was found in a step, but it is neither declared nor defined");
  }
  return known->second;
}

void TrailReader::fail(const NamedStep& named, const std::string& sentence) const
{
  lexer_.fail(named.position, sentence);
}

}  // namespace

Trail read_trail(TermManager& mgr, std::span<const Term* const> constants, std::string_view text)
{
  return TrailReader(mgr, text).read(constants);
}

}  // namespace lumo::smtlib
