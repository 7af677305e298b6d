#ifndef LUMO_SMTLIB_DEFINITION_PRINTER_H
#define LUMO_SMTLIB_DEFINITION_PRINTER_H

#include <functional>
#include <span>

#include "lumo/elimination/trail.h"
#include "lumo/smtlib/printed_terms.h"
#include "lumo/smtlib/term_printer.h"
#include "lumo/smtlib/text_buffer.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo::smtlib {

/// Prints the steps of a trail as definitions of their constants, each after those that it needs.
class DefinitionPrinter
{
 public:
  /// Takes the constants that are declared, and the trail, which must outlive the object. Throws an `Exception` for
  /// a name that SMT-LIB 2 cannot spell, for a constant that is neither declared nor defined, or both, or defined
  /// twice or by itself.
  DefinitionPrinter(std::span<const Term* const> constants, const Trail& trail);

  /// Declares the constants in their order.
  void print_declarations(TextBuffer& out);
  /// Prints a definition for each step and for each application that several of them contain. `defined` is called
  /// with each step, in the order of the trail, when its constant is defined.
  void print_definitions(TextBuffer& out, const std::function<void(const Step&, TermPrinter&)>& defined);
  /// Asserts the facts.
  void print_facts(TextBuffer& out);

 private:
  const Trail& trail_;
  PrintedTerms terms_;
};

}  // namespace lumo::smtlib

#pragma GCC visibility pop

#endif
