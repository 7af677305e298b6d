#include "lumo/smtlib/script_reader.h"

#include <string>

#include "lumo/smtlib/scanner.h"
#include "lumo/smtlib/z3_converter.h"
#include "lumo/smtlib/z3_parser.h"

namespace lumo::smtlib {

std::vector<const Term*> Script::get_asserted_terms() const
{
  std::vector<const Term*> terms;
  terms.reserve(assertions.size());
  for (const Assertion& assertion : assertions)
    terms.push_back(assertion.term);
  return terms;
}

Script read_script(TermManager& mgr, std::string_view text)
{
  Scanner scanner(mgr, text);
  scanner.scan();

  Script script;
  for (const Scanner::Declaration& declaration : scanner.get_declarations())
    script.constants.push_back(mgr.make_constant(std::string(declaration.name.text), declaration.sort));

  const ParsedText parsed(scanner.get_rewritten_text());
  if (parsed.get_num_assertions() != scanner.get_items().size())
    throw Exception("the number of assertions that Z3 gives is not that of the text");
  Z3Converter converter(mgr, parsed.get_session(), scanner.get_literals());
  std::size_t next = 0;
  for (const Scanner::Item& item : scanner.get_items()) {
    try {
      const Z3_ast expression = parsed.get_assertion(next++);
      if (item.is_definition) {
        converter.define(item.name, expression);
      } else {
        script.assertions.push_back({converter.convert(expression), item.place});
      }
    } catch (const Exception& e) {
      throw InputError(item.place, e.what());
    }
  }
  return script;
}

}  // namespace lumo::smtlib
