#include "lumo/smtlib/certificate_printer.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "lumo/smtlib/assertion_printer.h"
#include "lumo/smtlib/definition_printer.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

namespace {

constexpr std::string_view kCertificateHeader =
    "; This is unsatisfiable if and only if what lumo left of a script follows from the script.\n"
    ";\n"
    "; First come the declarations and assertions of the script, then the definitions of the constants with\n"
    "; which lumo replaced applications, and at last the negation of what is left.\n";

/// The constants that need no declaration.
class DeclaredConstants
{
 public:
  explicit DeclaredConstants(const Claim& claim)
  {
    for (const Term* constant : claim.constants)
      note(constant);
    for (const Step& step : claim.trail.steps)
      note(step.constant);
  }

  /// Notes a constant; false if it was noted before.
  bool note(const Term* constant)
  {
    const std::size_t id = constant->get_id();
    if (id >= is_declared_.size()) is_declared_.resize(std::max(id + 1, 2 * is_declared_.size()));
    const bool is_new = !is_declared_[id];
    is_declared_[id] = true;
    return is_new;
  }

 private:
  std::vector<bool> is_declared_;  ///< by the term's id
};

}  // namespace

void print_certificate(std::ostream& out, const Claim& claim)
{
  DefinitionPrinter definitions(claim.constants, claim.trail);
  DeclaredConstants declared(claim);
  const auto declare = [&declared](const Term* constant) { return declared.note(constant); };
  TextBuffer buffer(out);

  buffer << kCertificateHeader << "(set-logic QF_BV)\n";
  definitions.print_declarations(buffer);
  buffer.flush();
  print_assertions(out, claim.assertions, declare);
  definitions.print_definitions(buffer, [](const Step& /*step*/, TermPrinter& /*writer*/) {});
  buffer.flush();
  print_negation(out, claim.rest, declare);
  buffer << "(check-sat)\n";
  buffer.flush();
}

}  // namespace lumo::smtlib
