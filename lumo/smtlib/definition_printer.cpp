#include "lumo/smtlib/definition_printer.h"

#include <ostream>
#include <string>

#include "lumo/smtlib/symbol_text.h"

namespace lumo::smtlib {

void print_definition(std::ostream& out, const Term* constant, const Term* value)
{
  const Symbol* symbol = constant->get_symbol();
  const std::string name = make_symbol_text(symbol->get_name());
  out << "(define-fun " << name << " () " << symbol->get_output_type()->to_string() << ' '
      << value->get_symbol()->get_name() << ")\n";
}

}  // namespace lumo::smtlib
