#ifndef LUMO_SMTLIB_TERM_PRINTER_H
#define LUMO_SMTLIB_TERM_PRINTER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lumo/smtlib/printed_terms.h"
#include "lumo/smtlib/text_buffer.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo::smtlib {

/// Writes terms, whose bindings were chosen, as SMT-LIB 2 text. Precondition: no constant among them has a name that
/// the writer makes.
class TermPrinter
{
 public:
  TermPrinter(TextBuffer& out, PrintedTerms& terms);

  void write_constant(const Term* constant);
  void write_sort(const DataType* sort);
  void write_declaration(const Term* constant);
  /// Gives an application a name that replaces it from now on, and writes the name.
  void write_new_name(PrintedTerms::Slot application);
  /// Writes the space before a piece and the `let`s at its front; returns how many parentheses must be closed
  /// after it. Call this for all pieces in their order.
  std::size_t open_lets(std::uint32_t piece);
  /// Writes a term, by its name if it has one.
  void write(const Term* t);
  /// Writes an application itself, and its arguments by their names if they have one.
  void write_application(const Term* application);
  /// Writes the application of a slot and not its name.
  void write_slot(PrintedTerms::Slot slot);

 private:
  struct Visit
  {
    const Term* application;
    PrintedTerms::Slot slot;
    std::uint32_t next;  ///< argument
  };

  void write_operator(const Symbol* symbol) { out_ << '(' << *symbol->find_name(); }
  void write_leaf_or_open(const Term* t);
  void open_foreign(const Term* t, PrintedTerms::Slot slot, const ForeignHead& head);
  /// Writes what comes before the argument of that number of a binder's term, or after all of them.
  void write_binder_piece(const ForeignHead& head, std::uint32_t arg);
  void finish_foreign(Visit& visit);
  void open(const Term* t, PrintedTerms::Slot slot);
  void finish_open();

  TextBuffer& out_;
  PrintedTerms& terms_;
  std::string prefix_;  ///< of the new names
  std::uint32_t num_names_ = 0;
  const DataType* last_sort_ = nullptr;
  std::string last_sort_text_;
  std::vector<Visit> visits_;
};

}  // namespace lumo::smtlib

#pragma GCC visibility pop

#endif
