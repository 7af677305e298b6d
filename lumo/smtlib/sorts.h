#ifndef LUMO_SMTLIB_SORTS_H
#define LUMO_SMTLIB_SORTS_H

#include <string_view>
#include <unordered_map>

#include "lumo/smtlib/lexer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// The number of a token that must be the numeral of a width.
[[nodiscard]] unsigned long read_width(const Token& token);

/// Reads sorts: Bool, (_ BitVec w), and the names that a file defines for them.
class SortReader
{
 public:
  SortReader(TermManager& mgr, Lexer& lexer) : mgr_(mgr), lexer_(lexer) {}

  /// Reads the sort that comes next.
  const DataType* read();
  /// Gives a sort another name; answers false if the name has a meaning already.
  [[nodiscard]] bool define(std::string_view name, const DataType* sort);

 private:
  TermManager& mgr_;
  Lexer& lexer_;
  std::unordered_map<std::string_view, const DataType*> defined_;
};

}  // namespace lumo::smtlib

#endif
