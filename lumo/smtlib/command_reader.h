#ifndef LUMO_SMTLIB_COMMAND_READER_H
#define LUMO_SMTLIB_COMMAND_READER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/function_table.h"
#include "lumo/smtlib/lexer.h"
#include "lumo/smtlib/sort_reader.h"
#include "lumo/smtlib/symbol_table.h"
#include "lumo/smtlib/term_reader.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

enum class CommandKind : std::uint8_t
{
  kAssert,  ///< term: the asserted term
  kCheckSat,
  kCheckSatAssuming,  ///< in a conversation; elsewhere kOther
  kDeclare,           ///< symbol, term: the constant
  kDeclareForeign,    ///< sorts, functions, constants of other sorts
  kDefine,            ///< symbol, term: its meaning; without parameters
  kDefineFunction,    ///< symbol; with parameters; term: its body, over constants that stand for them
  kDefineSort,
  kEcho,
  kExit,
  kGet,              ///< asks for output: get-model, get-value, ...
  kGetValue,         ///< in a conversation; elsewhere kGet
  kPop,              ///< number
  kPush,             ///< number
  kReset,            ///< in a conversation; elsewhere kOther
  kResetAssertions,  ///< likewise
  kSetInfo,          ///< keyword, if there is one, and content
  kSetLogic,
  kSetOption,
  kOther,  ///< any other command; it was skipped
  kEnd,    ///< the end of the text
};

/// A command of a script, as far as it was read.
struct Command
{
  CommandKind kind = CommandKind::kEnd;
  std::string_view name;     ///< `assert`, `check-sat`, ...
  std::size_t position = 0;  ///< of its opening parenthesis
  Token symbol{};            ///< the declared or defined symbol
  const Term* term = nullptr;
  unsigned long number = 0;  ///< of levels
  Token keyword{};
  std::string_view content;  ///< the text after the keyword, without the closing parenthesis
  std::size_t content_position = 0;
};

/// Reads the commands of a script one by one, and stores what they declare and define.
///
/// Declarations and definitions belong to their level, and a pop removes them. After an InputError, the reader is
/// within the wrong command; everything that it read before stays valid.
class CommandReader
{
 public:
  /// The manager must outlive the reader; it should be new, since the manager must not have the names of the text's
  /// constants with other sorts already. The text must outlive the reader, too.
  /// With a table for foreign terms, the text may contain such terms.
  CommandReader(TermManager& mgr, std::string_view text, std::shared_ptr<ForeignTerms> foreign = nullptr)
      : mgr_(mgr),
        foreign_(std::move(foreign)),
        lexer_(text),
        symbols_(mgr),
        sorts_(mgr, foreign_ != nullptr ? &foreign_->sorts : nullptr),
        functions_(mgr, foreign_.get()),
        terms_(mgr, symbols_, sorts_, functions_, foreign_.get())
  {}
  CommandReader(const CommandReader&) = delete;
  CommandReader& operator=(const CommandReader&) = delete;
  virtual ~CommandReader() = default;

  /// Reads the next command.
  [[nodiscard]] Command read();
  /// The position at which the search for the next command starts.
  [[nodiscard]] std::size_t get_position() const { return lexer_.get_position(); }
  [[nodiscard]] Place get_place(std::size_t position) const { return lexer_.get_place(position); }
  /// The known command that differs from a name by one or two mistakes in typing; empty if there is none.
  [[nodiscard]] static std::string_view find_nearest(std::string_view name);
  /// The number of levels that were pushed and not popped.
  [[nodiscard]] std::size_t get_num_levels() const { return levels_.size(); }
  /// Replaces the meaning of a declared or defined symbol by another term.
  void replace(const Token& symbol, const Term* t);

 protected:
  /// Reads the start of a command; false at the end of the text.
  bool read_name(Command& command);
  /// Reads what comes after the name of a command.
  void read_rest(Command& command);
  void close(Command& command);
  void skip(Command& command);
  void read_attribute(Command& command);
  /// Refuses a term of another sort; `start` is a position before it, and `what` names it in the message.
  void check_sort(std::size_t start, const Term* t, const DataType* sort, std::string_view what) const;
  /// The constant that a declaration makes; `symbol` is that of its name.
  virtual const Term* make_constant(std::string_view name, SymbolTable::Number symbol, const DataType* sort);
  /// Takes declarations and definitions back: those of symbols and those of sorts, except for the first ones.
  virtual void forget(std::size_t num_declarations, std::size_t num_sort_definitions);
  /// Drops all levels, and what was declared on them.
  void drop_levels();

  TermManager& mgr_;
  std::shared_ptr<ForeignTerms> foreign_;  ///< null if the text may not contain foreign terms
  Lexer lexer_;
  SymbolTable symbols_;
  SortReader sorts_;
  FunctionTable functions_;
  TermReader terms_;

 private:
  /// The state at the start of a level
  struct Level
  {
    std::size_t num_declarations;
    std::size_t num_sort_definitions;
  };
  using Action = void (CommandReader::*)(Command& command);
  struct Row
  {
    std::string_view name;
    CommandKind kind;
    Action action;
  };
  static const Row kRows[];
  static const Row kForeignRows[];  ///< of commands that are known only where foreign terms are
  /// More open levels are refused.
  static constexpr unsigned long kMaxLevels = 1'000'000;

  void read_assertion(Command& command);
  void read_constant_declaration(Command& command);
  void read_function_declaration(Command& command);
  void declare(Command& command);
  void read_constant_definition(Command& command);
  void read_function_definition(Command& command);
  void define(Command& command);
  void read_sort_definition(Command& command);
  void read_logic(Command& command);

  // Declarations of what is foreign
  void read_sort_declaration(Command& command);
  void read_datatype(Command& command);
  void read_datatypes(Command& command);
  void read_recursive_definition(Command& command);
  void read_recursive_definitions(Command& command);
  void declare_foreign(Command& command, std::vector<const DataType*> parameters, const DataType* sort);
  ForeignFunction& add_function(const Token& name, std::vector<const DataType*> parameters,
                                const DataType* sort);
  /// Notes the command, which ends here, as a declaration, and returns its number.
  std::size_t add_declaration(const Command& command, bool is_of_sorts);
  void read_constructors(const Token& datatype, std::size_t arity);
  void read_constructor(const Token& open, const DataType* datatype, const std::vector<Token>& parameters);
  void read_signature(std::vector<Token>& names);
  void note_bodies(Lexer& bodies, const std::vector<std::vector<Token>>& parameters, std::size_t declaration);
  void push(Command& command);
  void pop(Command& command);

  /// Reads a name that has no meaning yet.
  [[nodiscard]] Token read_new_name();
  void read_parameters(const Token& first);
  /// Reads a term of that sort and the end of the command; `what` names it in messages.
  [[nodiscard]] const Term* read_term(Command& command, const DataType* sort, std::string_view what);
  [[nodiscard]] unsigned long read_number_of_levels();

  SymbolTable::Number symbol_ = 0;  ///< the symbol that is declared or defined
  std::vector<Level> levels_;
  std::vector<Token> parameters_;  ///< of the definition that is being read
  std::vector<const DataType*> parameter_sorts_;
};

}  // namespace lumo::smtlib

#endif
