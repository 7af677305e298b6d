#ifndef LUMO_SMTLIB_SORT_READER_H
#define LUMO_SMTLIB_SORT_READER_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/foreign_sorts.h"
#include "lumo/smtlib/lexer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads sorts: Bool, (_ BitVec w), and the names that definitions give to sorts; if it is given a table for them, also
/// sorts that the term layer does not have: those of theories and those that a script declares.
class SortReader
{
 public:
  /// The table, if there is one, must outlive the reader.
  explicit SortReader(TermManager& mgr, ForeignSortTable* foreign = nullptr)
      : mgr_(mgr),
        own_(mgr),
        foreign_(foreign != nullptr ? *foreign : own_),
        knows_foreign_(foreign != nullptr)
  {}
  SortReader(const SortReader&) = delete;
  SortReader& operator=(const SortReader&) = delete;

  /// Reads the next sort. Throws an InputError if it is not a sort.
  const DataType* read(Lexer& lexer)
  {
    // Most sorts are spelled like the one before.
    if (recent_sort_ != nullptr && lexer.take_text(recent_text_)) return recent_sort_;
    return read_anew(lexer);
  }
  /// Reads a definition, starting at the name: a name, names of parameters in parentheses, and a sort.
  void read_definition(Lexer& lexer);
  /// Declares a sort with that many parameters. The name must not be one of a sort.
  void declare(const Lexer& lexer, const Token& name, std::size_t num_parameters);
  /// Reads a sort in which these names are the parameters of a definition.
  [[nodiscard]] const DataType* read_with_parameters(Lexer& lexer, const std::vector<Token>& names);
  /// The declared sort of that name; null if there is none without parameters.
  [[nodiscard]] const DataType* find_declared(std::string_view name);
  /// The sort that a declared name makes of these sorts.
  [[nodiscard]] const DataType* apply(std::string_view name, Sorts args);
  /// Reads the number of bits of a bit-vector sort.
  unsigned long read_width(Lexer& lexer);

  /// The number of definitions; `forget` removes all after the first `count`.
  [[nodiscard]] std::size_t get_num_definitions() const { return order_.size(); }
  void forget(std::size_t count);

 private:
  struct Definition
  {
    std::size_t num_parameters;
    const DataType* body;  ///< null for a declared sort
  };
  using Definitions = std::unordered_map<std::string, Definition>;
  /// An application of a defined sort whose arguments are being read
  struct Application
  {
    std::string_view name;
    std::size_t position;  ///< of its parenthesis
    std::size_t first;     ///< of its arguments in `arguments_`
  };

  [[nodiscard]] const DataType* read_anew(Lexer& lexer);
  [[nodiscard]] const DataType* read_expression(Lexer& lexer);
  /// Reads a sort, or opens an application of a sort, and returns null.
  [[nodiscard]] const DataType* read_start(Lexer& lexer, const Token& first);
  [[nodiscard]] const DataType* read_name(Lexer& lexer, const Token& name);
  [[nodiscard]] const DataType* read_indexed(Lexer& lexer, const Token& open);
  [[nodiscard]] const DataType* close(Lexer& lexer);
  /// The number of sorts that a name takes; nothing if it is not one of a sort.
  [[nodiscard]] std::optional<std::size_t> find_arity(std::string_view name) const;
  [[nodiscard]] bool is_sort_name(std::string_view name) const;
  [[nodiscard]] std::string_view get_wanted() const;
  /// Refuses something that is not a sort, with the nearest name of one.
  [[noreturn]] void refuse(const Lexer& lexer, const Token& name) const;

  TermManager& mgr_;
  ForeignSortTable own_;  ///< of a reader without a table for foreign sorts: the parameters
  ForeignSortTable& foreign_;
  bool knows_foreign_ = false;
  const DataType* recent_sort_ = nullptr;  ///< the last bit-vector sort that was read with a width
  std::string recent_text_;                ///< its spelling, from parenthesis to parenthesis
  Definitions definitions_;
  std::vector<std::string> order_;  ///< of the definitions
  /// The places of the parameters of the definition that is being read
  std::unordered_map<std::string_view, std::size_t> parameters_;
  std::vector<Application> applications_;  ///< the open ones
  std::vector<const DataType*> arguments_;
};

}  // namespace lumo::smtlib

#endif
