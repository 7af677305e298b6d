#ifndef LUMO_SMTLIB_CONVERSATION_READER_H
#define LUMO_SMTLIB_CONVERSATION_READER_H

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumo/smtlib/command_reader.h"
#include "lumo/smtlib/command_splitter.h"

namespace lumo::smtlib {

/// A term as it was written; the text lies in that of its command.
struct WrittenTerm
{
  std::string_view text;
  const Term* term;
};

/// A term that an annotation `:named` gives a name.
struct NamedTerm
{
  std::string_view name;
  const Term* term;
  std::size_t declaration;  ///< its number among all declarations
};

/// Reads the commands of a conversation, one text after the other, and keeps what they declare and define between
/// them. After an InputError, everything is as before the command that is wrong, and the next one can be read.
///
/// A constant has its name from the text, with two exceptions. A name that was that of another sort, on a level that
/// was popped, and a name that starts with kReservedPrefix stand for constants with other names: the manager has one
/// sort for each name, and other users of the manager may call fresh constants `<kReservedPrefix><word>!<number>`, since
/// no constant of the text has such a name.
class ConversationReader : public CommandReader
{
 public:
  static constexpr std::string_view kReservedPrefix = "lumo!";

  /// The manager must outlive the reader, and be new. With a table for foreign terms, the texts may contain such terms.
  explicit ConversationReader(TermManager& mgr, std::shared_ptr<ForeignTerms> foreign = nullptr)
      : CommandReader(mgr, {}, std::move(foreign))
  {
    terms_.copy_definitions(true);
  }

  /// Reads one command. What the result and the members below refer to lies in the text.
  [[nodiscard]] Command read(const CommandText& text);
  /// The terms of the last command, if it is `get-value` or `check-sat-assuming`.
  [[nodiscard]] const std::vector<WrittenTerm>& get_terms() const { return terms_read_; }
  /// The name that the last command, if it is an assertion, gives to all of what it asserts. Valid as long as the
  /// reader.
  [[nodiscard]] std::optional<std::string_view> get_label() const { return label_; }

  /// The constants that are declared now, in the order of their declarations.
  [[nodiscard]] std::vector<const Term*> list_constants() const;
  /// The terms that have names now, in the order of the names.
  [[nodiscard]] const std::vector<NamedTerm>& get_named_terms() const { return named_terms_; }
  /// The name of a constant in the text. Valid as long as the reader.
  [[nodiscard]] std::string_view get_text_name(const Term* constant) const;

  /// Whether something is declared or defined now, or a level is pushed.
  [[nodiscard]] bool has_begun() const;
  /// Whether declarations and definitions stay when their levels are popped, and when assertions are reset.
  void keep_declarations(bool keeps) { keeps_declarations_ = keeps; }
  [[nodiscard]] bool keeps_declarations() const { return keeps_declarations_; }

 protected:
  const Term* make_constant(std::string_view name, SymbolTable::Number symbol, const DataType* sort) override;
  void forget(std::size_t num_declarations, std::size_t num_sort_definitions) override;

 private:
  struct Declared
  {
    const Term* constant;
    std::size_t declaration;
  };

  void read_command(Command& command);
  void read_terms(Command& command, bool are_assumptions);
  void reset(Command& command);
  void reset_assertions(Command& command);
  /// Notes the names that a command has given, after the first declarations.
  void note_names(const Command& command, std::size_t num_declarations, const Lexer& after_name);
  /// Takes back what was declared and defined after the first ones, kept or not.
  void take_back(std::size_t num_declarations, std::size_t num_sort_definitions);

  /// A declaration of a sort that is valid now
  struct SortDeclaration
  {
    std::size_t declaration;           ///< its number in the table for foreign terms
    std::size_t num_sort_definitions;  ///< before it
  };
  void note_sorts(std::size_t num_before, std::size_t num_sort_definitions);

  bool keeps_declarations_ = false;
  std::vector<SortDeclaration> sort_declarations_;
  std::vector<WrittenTerm> terms_read_;
  std::optional<std::string_view> label_;
  std::vector<Declared> constants_;
  std::vector<NamedTerm> named_terms_;
  std::vector<const DataType*> sorts_of_names_;  ///< by symbol: of the constant with this name, or null
  std::map<std::pair<SymbolTable::Number, const DataType*>, const Term*> renamed_;
  std::unordered_map<const Term*, SymbolTable::Number> text_names_;  ///< of the constants that are renamed
};

}  // namespace lumo::smtlib

#endif
