// The printing of a trail; the reading is in trail_reader.cpp.

#include "lumo/smtlib/trail_printer.h"

#include <optional>
#include <string_view>

#include "lumo/smtlib/definition_printer.h"
#include "lumo/smtlib/term_printer.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

namespace {

constexpr std::string_view kHeader =
    "; The applications that lumo eliminated from a script, in the order of elimination.\n"
    ";\n"
    "; Each definition gives the application that a fresh constant replaced. The :lumo-step after it\n"
    "; has the fresh constant and then the free arguments of the application, which occur nowhere else:\n"
    "; lumo extend chooses their values so that the application has the value that a model gives the\n"
    "; fresh constant. A definition without a :lumo-step is a part that several others share. An\n"
    "; asserted constant replaced a whole assertion, so it is true.\n";

/// Writes a symbol within a string, where a quotation mark is written twice.
void write_in_string(TextBuffer& out, TermPrinter& writer, const Term* constant)
{
  const std::optional<std::string_view> name = constant->get_symbol()->find_name();
  if (!name || name->find('"') == std::string_view::npos) {
    writer.write_constant(constant);
    return;
  }
  out << '|';
  for (const char c : *name)
    out << (c == '"' ? "\"\"" : std::string_view(&c, 1));
  out << '|';
}

void print_step(TextBuffer& out, TermPrinter& writer, const Step& step)
{
  out << "(set-info :lumo-step \"";
  write_in_string(out, writer, step.constant);
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (!step.free[i]) continue;
    out << ' ';
    write_in_string(out, writer, step.application->get_arg(i));
  }
  out << "\")\n";
}

}  // namespace

void print_trail(std::ostream& out, std::span<const Term* const> constants, const Trail& trail)
{
  DefinitionPrinter definitions(constants, trail);
  TextBuffer buffer(out);
  buffer << kHeader << "(set-logic QF_BV)\n";
  definitions.print_declarations(buffer);
  definitions.print_definitions(
      buffer, [&](const Step& step, TermPrinter& writer) { print_step(buffer, writer, step); });
  definitions.print_facts(buffer);
  buffer.flush();
}

}  // namespace lumo::smtlib
