#ifndef LUMO_SMTLIB_NAME_PRINTER_H
#define LUMO_SMTLIB_NAME_PRINTER_H

#include <cstddef>
#include <string>
#include <string_view>

#include "lumo/smtlib/text_buffer.h"
#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

/// Writes `get_name()` of a symbol without storing it in the symbol, which would take more time and memory than all
/// the rest of a numeral or of a fresh constant.
void write_name(TextBuffer& out, const Symbol* symbol);

/// A constant's name for a message: on one line, and cut if it is long.
[[nodiscard]] std::string make_name_excerpt(const Term* constant);

/// Collects facts about the names of a text's constants.
class ConstantNames
{
 public:
  /// Takes one more name; returns whether it needs bars. A name that SMT-LIB 2 cannot spell is an `Exception`.
  bool note(const Symbol* constant);
  /// The same for a name that does not belong to a symbol.
  bool note(std::string_view name);
  /// An `s` and more exclamation marks than follow an initial `s` in any of the names.
  [[nodiscard]] std::string make_free_prefix() const { return 's' + std::string(most_marks_ + 1, '!'); }

 private:
  std::size_t most_marks_ = 0;
  const std::string* prefix_ = nullptr;  ///< of the last fresh constant; usually the same for all
  bool prefix_needs_bars_ = false;
};

}  // namespace lumo::smtlib

#endif
