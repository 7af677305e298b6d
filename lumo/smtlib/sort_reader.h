#ifndef LUMO_SMTLIB_SORT_READER_H
#define LUMO_SMTLIB_SORT_READER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/lexer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Reads sorts: Bool, (_ BitVec w), and the names that definitions give to sorts.
///
/// There are no sort constructors that take sorts. So a definition of a sort is one of its parameters, or does not
/// depend on them, and reading is linear.
class SortReader
{
 public:
  explicit SortReader(TermManager& mgr) : mgr_(mgr) {}

  /// Reads the next sort. Throws an InputError if it is not a sort.
  const DataType* read(Lexer& lexer)
  {
    // Most sorts are spelled like the one before.
    if (recent_sort_ != nullptr && lexer.take_text(recent_text_)) return recent_sort_;
    return read_anew(lexer);
  }
  /// Reads a definition, starting at the name: a name, names of parameters in parentheses, and a sort.
  void read_definition(Lexer& lexer);
  /// Reads the number of bits of a bit-vector sort.
  unsigned long read_width(Lexer& lexer);

  /// The number of definitions; `forget` removes all after the first `count`.
  [[nodiscard]] std::size_t get_num_definitions() const { return order_.size(); }
  void forget(std::size_t count);

 private:
  /// A sort, or a parameter of the definition that is being read
  struct Expression
  {
    const DataType* sort;   ///< null for a parameter
    std::size_t parameter;  ///< its place
  };
  struct Definition
  {
    std::size_t num_parameters;
    Expression body;
  };
  using Definitions = std::unordered_map<std::string, Definition>;
  /// An application of a defined sort whose arguments are being read
  struct Application
  {
    const Definition* definition;
    std::size_t position;  ///< of its parenthesis
    std::size_t first;     ///< of its arguments in `arguments_`
  };

  [[nodiscard]] const DataType* read_anew(Lexer& lexer);
  [[nodiscard]] Expression read_expression(Lexer& lexer);
  /// Reads a sort, or opens an application of a sort. In the second case, the result has neither a sort nor a
  /// parameter.
  [[nodiscard]] Expression read_start(Lexer& lexer, const Token& first);
  [[nodiscard]] Expression read_name(Lexer& lexer, const Token& name) const;
  [[nodiscard]] const DataType* read_bit_vector(Lexer& lexer);
  [[nodiscard]] Expression close(Lexer& lexer);

  TermManager& mgr_;
  const DataType* recent_sort_ = nullptr;  ///< the last bit-vector sort that was read with a width
  std::string recent_text_;                ///< its spelling, from parenthesis to parenthesis
  Definitions definitions_;
  std::vector<std::string> order_;  ///< of the definitions
  /// The places of the parameters of the definition that is being read
  std::unordered_map<std::string_view, std::size_t> parameters_;
  std::vector<Application> applications_;  ///< the open ones
  std::vector<Expression> arguments_;
};

}  // namespace lumo::smtlib

#endif
