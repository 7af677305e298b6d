#ifndef LUMO_SMTLIB_SCANNER_H
#define LUMO_SMTLIB_SCANNER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lumo/smtlib/lexer.h"
#include "lumo/smtlib/rewritten_text.h"
#include "lumo/smtlib/sorts.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Goes over the commands of a text, refuses those that are not for us, and writes what the parser of terms
/// needs to see of the others:
///
/// - declarations, assertions and definitions of functions with parameters as they are;
/// - `(define-fun x () S t)` as `(declare-const x S)` and `(assert (= x t))`, since the parser would walk all
///   of t at each use of x;
/// - a long literal as a constant of the same sort, since the parser needs quadratic time or memory for it;
/// - nothing of commands that only set options, ask for output, and the like.
class Scanner
{
 public:
  struct Declaration
  {
    Token name;
    const DataType* sort;
  };
  /// An assertion of the rewritten text, in the order of its assertions
  struct Item
  {
    Place place;            ///< of the command
    bool is_definition;     ///< an equation that defines a name, its left side
    std::string_view name;  ///< that is defined
  };

  /// What a `set-info` says
  struct Info
  {
    Token keyword;
    Lexer content;  ///< stands behind the keyword; the command is closed for sure
  };

  /// The text must outlive the object.
  Scanner(TermManager& mgr, std::string_view text)
      : mgr_(mgr), text_(text), lexer_(text), sorts_(mgr, lexer_), rewritten_(text)
  {}

  /// Goes over the whole text; what is refused is an InputError.
  void scan();

  [[nodiscard]] const std::vector<Declaration>& get_declarations() const { return declarations_; }
  [[nodiscard]] const std::vector<Item>& get_items() const { return items_; }
  /// In their order
  [[nodiscard]] const std::vector<Info>& get_infos() const { return infos_; }
  [[nodiscard]] const RewrittenText& get_rewritten_text() const { return rewritten_; }
  /// What the constants that stand for literals mean, by name.
  [[nodiscard]] const std::unordered_map<std::string, const Term*>& get_literals() const { return literals_; }

 private:
  using Action = void (Scanner::*)();
  struct Command
  {
    std::string_view name;
    Action action;
  };
  static const Command kCommands[];
  /// A long literal from one position to another, and the constant that stands for it
  struct Replacement
  {
    std::size_t first;
    std::size_t last;
    std::string name;
  };

  void scan_command();
  void close_command() { lexer_.expect(TokenKind::kClose, "the end of the command"); }
  /// Reads a name that has no meaning yet, and gives it one.
  Token read_new_name();

  void skip() { lexer_.skip_list(place_); }
  void check_sat();
  void set_info();
  void exit();
  void assert_term();
  void declare_const();
  void declare_fun();
  void declare(const Token& name);
  void define_const();
  void define_fun();
  void define(const Token& name);
  void define_sort();

  void read_term();
  void note_literal(const Token& token);
  bool note_decimal_literal(const Token& name, const Token& width, std::size_t first);
  void note_replacement(std::size_t first, const Term* literal);
  void declare_replacements();
  void keep(std::size_t first, std::size_t last);
  void keep_command();

  TermManager& mgr_;
  std::string_view text_;
  Lexer lexer_;
  SortReader sorts_;
  RewrittenText rewritten_;
  std::vector<Declaration> declarations_;
  std::vector<Item> items_;
  std::vector<Info> infos_;
  std::unordered_set<std::string_view> names_;
  std::unordered_map<std::string, const Term*> literals_;

  Place place_;                            ///< of the command that is being read
  std::size_t start_ = 0;                  ///< its position
  std::vector<Replacement> replacements_;  ///< in the command that is being read
  bool has_query_ = false;
  bool is_done_ = false;
};

}  // namespace lumo::smtlib

#endif
