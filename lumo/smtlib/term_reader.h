#ifndef LUMO_SMTLIB_TERM_READER_H
#define LUMO_SMTLIB_TERM_READER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/function_table.h"
#include "lumo/smtlib/lexer.h"
#include "lumo/smtlib/operators.h"
#include "lumo/smtlib/sort_reader.h"
#include "lumo/smtlib/symbol_table.h"
#include "lumo/smtlib/theory_functions.h"
#include "lumo/terms/chunked_vector.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads terms from SMT-LIB 2 text into a term manager, in one pass and without recursion: time and memory are linear
/// in the text and the terms that are made from it.
///
/// Operators that the term layer does not have become applications of those that it has; an application to more
/// arguments than two becomes nested ones; lets, definitions and named terms are replaced by what they stand for.
/// Terms that the term layer does not have are foreign terms, if there is a table for them. Everything else is an
/// InputError at the wrong token. After an error the reader can be used again.
class TermReader
{
 public:
  /// The objects must outlive the reader. Without a table for foreign terms there are none.
  TermReader(TermManager& mgr, SymbolTable& symbols, SortReader& sorts, FunctionTable& functions,
             ForeignTerms* foreign)
      : mgr_(mgr), symbols_(symbols), sorts_(sorts), functions_(functions), foreign_(foreign)
  {}
  TermReader(const TermReader&) = delete;
  TermReader& operator=(const TermReader&) = delete;

  /// Reads the next term. `open` is the position of the parenthesis around it, which a message names if the
  /// text ends too soon.
  const Term* read(Lexer& lexer, std::size_t open);
  /// Reads the body of a definition with parameters of these names and sorts.
  const Term* read_body(Lexer& lexer, std::size_t open, const std::vector<Token>& names,
                        const std::vector<const DataType*>& sorts);
  /// Whether the texts of definitions do not live as long as the reader.
  void copy_definitions(bool copies) { copies_definitions_ = copies; }
  /// Notes where a function with parameters is defined: between two positions of the lexer's text.
  void note_definition(const Function* function, const Lexer& lexer, std::size_t begin, std::size_t end);
  /// To be called after a term or a body was read: what the definitions of functions that binders mention need.
  /// `lexer` reads the text of the definitions.
  void note_needs(const Lexer& lexer);
  /// What the body of functions mentions that means something outside of it: declarations and constants.
  void collect_mentioned(const Lexer& body, std::size_t end, const std::vector<Token>& parameters,
                         ForeignDeclaration& declaration);

 private:
  /// The kinds of context that wait for a term
  enum class FrameKind : std::uint8_t
  {
    kOperator,    ///< for one more argument
    kFunction,    ///< for one more argument
    kForeign,     ///< for one more argument; its head is the last in `foreign_heads_`
    kBindings,    ///< the last variable of a let, for its term
    kBody,        ///< a let, for its body
    kAnnotation,  ///< for the term that is annotated
  };
  /// Small, since there is one for each level of nesting.
  struct Frame
  {
    union {
      const Operator* op;
      const Function* function;
    };
    std::size_t position;  ///< of the parenthesis
    std::uint32_t first;   ///< in `arguments_`, `bindings_` or `shadowed_`
    FrameKind kind;
    bool has_indices;   ///< the last in `indices_`
    bool is_qualified;  ///< by the last sort in `qualifiers_`
  };
  /// The start of an application, or a constant: `f`, `(_ f 1 2)`, `(as f S)`, `(_ bv5 8)`
  struct Head
  {
    Token symbol{};
    SymbolTable::Number number = 0;  ///< of the symbol, unless it is a literal
    const Term* literal = nullptr;
    std::size_t num_indices = 0;
    std::array<Token, 2> indices{};  ///< the first ones; a symbol only of `is`
    const DataType* qualifier = nullptr;
  };
  /// The head of a foreign application
  struct ForeignApplication
  {
    const ForeignFunction* function = nullptr;
    const TheoryFunction* theory = nullptr;
    const DataType* qualifier = nullptr;
    std::array<unsigned long, 2> indices{};
    std::string text{};  ///< empty if it is the name of the function
    ForeignRole role = ForeignRole::kOther;
  };
  /// A function with parameters, as the text defines it
  struct Definition
  {
    std::size_t begin;
    std::size_t end;
    std::size_t order;
    std::string copy;  ///< of the text between the two; empty if that lives long enough
    std::size_t declaration = ForeignFunction::kNone;  ///< if a binder mentions it
  };
  /// What a text mentions
  struct Mentioned
  {
    std::vector<std::string> names;  ///< that stand for other terms than constants of these names
    std::vector<std::size_t> positions;
    std::vector<const Term*> terms;  ///< of these names
    std::vector<const Term*> constants;
    std::vector<std::size_t> declarations;
  };
  struct Binding
  {
    SymbolTable::Number variable;
    std::size_t position;
    const Term* term;
  };
  /// A variable that hides another meaning of its name
  struct Shadowed
  {
    SymbolTable::Number variable;
    Meaning meaning;
  };

  // Those that are inline are the loop over the tokens of most terms.
  const Term* read_all();
  /// Takes a token: the result is the term that ends with it, or null.
  inline const Term* take(const Token& token);
  inline const Term* open(std::size_t position);
  void open_compound(const Token& head, std::size_t position);
  const Term* open_word(ReservedWord word, const Token& token, std::size_t position);
  inline const Term* close(const Token& parenthesis);
  /// Passes a complete term to the innermost frame. Returns the term if there is no frame.
  inline const Term* deliver(const Term* t);
  const Term* deliver_to_word(const Term* t);
  inline void push_frame(FrameKind kind, std::size_t position, std::size_t first);
  void reset();

  void open_let(std::size_t position);
  void read_binding(const Token& token);
  void bind();
  void hide(SymbolTable::Number variable, const Term* t);
  void unhide(std::size_t first);
  /// Whether the symbol occurs for the first time since `begin_names`.
  [[nodiscard]] bool is_new_name(SymbolTable::Number symbol);
  void begin_names() { ++name_list_; }
  void read_attributes(const Term* t);
  void name_term(const Term* t);
  void skip_attribute_value();

  /// Read the text after `_` and after `as`.
  [[nodiscard]] Head read_indexed_head();
  [[nodiscard]] Head read_qualified_head();
  void push_application(const Head& head, std::size_t position);
  void push_operator(const Operator& op, const Head& head, std::size_t position);
  [[nodiscard]] Index make_index(const Operator& op, const Token& token) const;
  [[nodiscard]] const Term* make_constant(const Head& head);
  [[nodiscard]] const Term* read_literal(const Token& token);
  [[nodiscard]] const Term* read_decimal_literal(const Token& symbol);
  void check_qualifier(const Term* t, const DataType* qualifier, std::size_t position) const;

  [[nodiscard]] inline const Term* apply(const Frame& frame);
  [[nodiscard]] inline const Term* apply_operator(const Frame& frame, Arguments args);
  [[nodiscard]] const Term* apply_other(const Frame& frame, Arguments args);
  [[nodiscard]] const Term* apply_function(const Frame& frame, Arguments args);
  [[nodiscard]] static Misfit find_function_misfit(const Function& function, Arguments args);
  /// The position of an argument, found by reading the application again.
  [[nodiscard]] std::size_t find_argument(const Frame& frame, std::size_t argument) const;
  [[noreturn]] void refuse_arguments(const Frame& frame, const Misfit& misfit) const;
  [[noreturn]] void refuse_unknown(const Token& symbol) const;

  // Foreign terms
  [[nodiscard]] static bool is_application(FrameKind kind) { return kind <= FrameKind::kForeign; }
  /// Whether a head is that of a foreign term; if so, stores it.
  [[nodiscard]] bool find_foreign(const Head& head, ForeignApplication& application);
  [[nodiscard]] bool find_theory_head(const Head& head, ForeignApplication& application);
  [[nodiscard]] bool find_element(const Head& head, ForeignApplication& application);
  [[nodiscard]] bool find_tester(const Head& head, ForeignApplication& application);
  [[nodiscard]] const Term* make_foreign(const ForeignApplication& application, std::size_t position,
                                         Arguments args);
  [[nodiscard]] const Term* apply_foreign(const Frame& frame, Arguments args);
  /// `=`, `distinct` or `ite` of foreign sorts; null if it is none.
  [[nodiscard]] const Term* apply_foreign_operator(const Operator& op, Arguments args);
  [[nodiscard]] const DataType* find_sort(const ForeignApplication& application, Arguments args);
  [[nodiscard]] const DataType* find_function_sort(const ForeignApplication& application, Arguments args);
  [[nodiscard]] ForeignTerms::HeadIndex find_head(const ForeignApplication& application);
  [[noreturn]] void refuse_foreign(const ForeignApplication& application, std::size_t position,
                                   Arguments args) const;
  /// A number or a string, which no sort of the term layer has; null if it is to be refused.
  [[nodiscard]] const Term* make_foreign_literal(const Token& token);
  [[nodiscard]] const Term* read_binder(const Token& word, std::size_t position);
  [[nodiscard]] Mentioned list_mentioned(Lexer lexer, std::size_t end,
                                         const std::vector<Token>& parameters = {});
  void note_mentioned(const Token& symbol, const Lexer& text, Mentioned& mentioned);
  [[nodiscard]] std::size_t need_definition(const Function* function, const Lexer& text);
  [[nodiscard]] bool means_itself(const Token& symbol, const Term* t) const;

  TermManager& mgr_;
  SymbolTable& symbols_;
  SortReader& sorts_;
  FunctionTable& functions_;
  ForeignTerms* foreign_;   ///< null if there are no foreign terms
  Lexer* lexer_ = nullptr;  ///< of the term that is being read
  std::size_t open_ = 0;    ///< the position of the parenthesis around it
  bool is_body_ = false;    ///< whether it is the body of a definition with parameters

  ChunkedVector<Frame> frames_;
  std::vector<const Term*> arguments_;
  std::vector<Binding> bindings_;
  ChunkedVector<Shadowed> shadowed_;
  std::vector<Indices> indices_;
  std::vector<const DataType*> qualifiers_;
  std::vector<ForeignApplication> foreign_heads_;
  std::unordered_map<const void*, ForeignTerms::HeadIndex> heads_;  ///< of functions without indices
  std::unordered_map<const Function*, Definition> definitions_;
  bool copies_definitions_ = false;
  std::vector<const Function*> needed_;  ///< definitions that were mentioned and not looked into yet
  std::vector<std::size_t> name_lists_;  ///< by symbol: the last list of names that it occurred in
  std::size_t name_list_ = 0;
};

}  // namespace lumo::smtlib

#endif
