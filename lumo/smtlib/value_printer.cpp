#include "lumo/smtlib/value_printer.h"

#include "lumo/smtlib/name_printer.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

void print_values(std::ostream& out, std::span<const TextValue> values)
{
  TextBuffer buffer(out);
  std::string_view separator;
  buffer << '(';
  for (const TextValue& value : values) {
    buffer << separator << '(' << value.text << ' ';
    write_name(buffer, value.value->get_symbol());
    buffer << ')';
    separator = "\n ";
  }
  buffer << ")\n";
  buffer.flush();
}

void print_named_model(std::ostream& out, std::span<const TextValue> values,
                       std::span<const std::string> definitions)
{
  for (const TextValue& value : values)
    static_cast<void>(needs_bars(value.text));

  TextBuffer buffer(out);
  buffer << "(\n";
  for (const std::string& definition : definitions)
    buffer << "  " << definition << '\n';
  for (const TextValue& value : values) {
    const Symbol* symbol = value.value->get_symbol();
    buffer << "  (define-fun " << make_symbol_text(value.text) << " () "
           << symbol->get_output_type()->to_string() << ' ';
    write_name(buffer, symbol);
    buffer << ")\n";
  }
  buffer << ")\n";
  buffer.flush();
}

}  // namespace lumo::smtlib
