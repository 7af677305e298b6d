#include "lumo/smtlib/model_printer.h"

#include "lumo/smtlib/name_printer.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

namespace {

void write_definition(TextBuffer& out, const ModelValue& definition)
{
  const Symbol* symbol = definition.constant->get_symbol();
  out << "(define-fun " << make_symbol_text(symbol->get_name()) << " () "
      << symbol->get_output_type()->to_string() << ' ';
  write_name(out, definition.value->get_symbol());
  out << ")\n";
}

}  // namespace

void print_model(std::ostream& out, std::span<const ModelValue> model) { print_model(out, model, {}); }

void print_model(std::ostream& out, std::span<const ModelValue> model,
                 std::span<const std::string> definitions)
{
  for (const ModelValue& definition : model)
    static_cast<void>(needs_bars(definition.constant->get_symbol()->get_name()));

  TextBuffer buffer(out);
  buffer << "(\n";
  for (const std::string& definition : definitions)
    buffer << "  " << definition << '\n';
  for (const ModelValue& definition : model) {
    buffer << "  ";
    write_definition(buffer, definition);
  }
  buffer << ")\n";
  buffer.flush();
}

void print_definition(std::ostream& out, const ModelValue& definition)
{
  TextBuffer buffer(out);
  write_definition(buffer, definition);
  buffer.flush();
}

}  // namespace lumo::smtlib
