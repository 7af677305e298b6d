#include "lumo/smtlib/script_reader.h"

#include <algorithm>

#include "lumo/smtlib/command_reader.h"

namespace lumo::smtlib {

namespace {

/// Reads a script and refuses commands that make more than one query of it.
class ScriptReader
{
 public:
  ScriptReader(TermManager& mgr, std::string_view text, std::shared_ptr<ForeignTerms> foreign)
      : foreign_(std::move(foreign)), commands_(mgr, text, foreign_)
  {}

  Script read(const std::function<void(std::size_t)>& pass);

 private:
  /// After how many characters `pass` is called
  static constexpr std::size_t kPiece = std::size_t{1} << 18U;

  /// Adds a command to the script; returns whether the script continues.
  bool take(const Command& command);
  void add_assertion(const Command& command);
  void check_query(const Command& command);
  void check_push(const Command& command) const;
  void check_pop(const Command& command);
  void note_skipped(const Command& command);
  [[noreturn]] void refuse_other(const Command& command) const;
  /// Refuses what makes several queries of the text.
  [[noreturn]] void fail(const Command& command, const std::string& sentence) const;

  std::shared_ptr<ForeignTerms> foreign_;
  CommandReader commands_;
  Script script_;
  bool has_query_ = false;
};

Script ScriptReader::read(const std::function<void(std::size_t)>& pass)
{
  std::size_t num_passed = 0;
  while (take(commands_.read())) {
    if (!pass || commands_.get_position() < num_passed + kPiece) continue;
    num_passed = commands_.get_position();
    pass(num_passed);
  }
  if (foreign_ != nullptr && (!foreign_->empty() || !foreign_->declarations.empty()))
    script_.foreign = foreign_;
  return std::move(script_);
}

bool ScriptReader::take(const Command& command)
{
  switch (command.kind) {
    case CommandKind::kAssert:
      add_assertion(command);
      break;
    case CommandKind::kCheckSat:
      check_query(command);
      break;
    case CommandKind::kDeclare:
      script_.constants.push_back(command.term);
      break;
    case CommandKind::kEcho:
    case CommandKind::kGet:
      note_skipped(command);
      break;
    case CommandKind::kPush:
      check_push(command);
      break;
    case CommandKind::kPop:
      check_pop(command);
      break;
    case CommandKind::kCheckSatAssuming:
    case CommandKind::kGetValue:
    case CommandKind::kReset:
    case CommandKind::kResetAssertions:
    case CommandKind::kOther:
      refuse_other(command);
    case CommandKind::kExit:
    case CommandKind::kEnd:
      return false;
    case CommandKind::kDefine:
    case CommandKind::kDefineFunction:
    case CommandKind::kDeclareForeign:
    case CommandKind::kDefineSort:
    case CommandKind::kSetInfo:
    case CommandKind::kSetLogic:
    case CommandKind::kSetOption:
      break;
  }
  return true;
}

void ScriptReader::add_assertion(const Command& command)
{
  if (has_query_) {
    fail(command, "an assertion was found after check-sat, but all were expected before it");
  }
  script_.assertions.push_back({command.term, commands_.get_place(command.position)});
}

void ScriptReader::check_query(const Command& command)
{
  if (has_query_) fail(command, "a second check-sat was found, but only one was expected");
  has_query_ = true;
}

void ScriptReader::check_push(const Command& command) const
{
  if (has_query_ || commands_.get_num_levels() > 1) {
    fail(command, "a push was found, but only one level around one check-sat was expected");
  }
}

void ScriptReader::check_pop(const Command& command)
{
  if (!has_query_) fail(command, "a pop was found before check-sat, but it was expected after it");
}

void ScriptReader::note_skipped(const Command& command)
{
  if (std::find(script_.skipped.begin(), script_.skipped.end(), command.name) == script_.skipped.end()) {
    script_.skipped.emplace_back(command.name);
  }
}

void ScriptReader::refuse_other(const Command& command) const
{
  std::string sentence =
      "the command " + make_excerpt(command.name) +
      " was found, but only declarations, definitions, assertions and one check-sat were expected";
  const bool is_known =
      command.name == "check-sat-assuming" || command.name == "reset" || command.name == "reset-assertions";
  if (is_known) fail(command, sentence);
  const std::string_view nearest = CommandReader::find_nearest(command.name);
  if (!nearest.empty()) sentence.append("; perhaps ").append(nearest).append(" was meant");
  throw InputError(commands_.get_place(command.position), sentence);
}

void ScriptReader::fail(const Command& command, const std::string& sentence) const
{
  throw SeveralQueries(commands_.get_place(command.position), sentence);
}

}  // namespace

std::vector<const Term*> Script::get_asserted_terms() const
{
  std::vector<const Term*> terms;
  terms.reserve(assertions.size());
  for (const Assertion& assertion : assertions)
    terms.push_back(assertion.term);
  return terms;
}

Script read_script(TermManager& mgr, std::string_view text, const std::function<void(std::size_t)>& pass,
                   ForeignText foreign)
{
  return ScriptReader(mgr, text,
                      foreign == ForeignText::kTaken ? std::make_shared<ForeignTerms>(mgr) : nullptr)
      .read(pass);
}

}  // namespace lumo::smtlib
