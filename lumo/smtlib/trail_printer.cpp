// The printing of a trail; the reading is in trail_reader.cpp.

#include "lumo/smtlib/trail_printer.h"

#include <string>
#include <string_view>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/printed_terms.h"
#include "lumo/smtlib/term_printer.h"
#include "lumo/smtlib/text_buffer.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

using Terms = std::span<const Term* const>;

constexpr std::string_view kHeader =
    "; What lumo has eliminated from a script, in the order of elimination.\n"
    ";\n"
    "; A definition says which application a fresh constant stands for. The :lumo-step behind it names the\n"
    "; fresh constant again and then the free arguments of the application, which occur nowhere else: lumo "
    "extend\n"
    "; chooses their values so that the application has the value that a model gives the fresh constant. A\n"
    "; definition without a :lumo-step is a part that several others share. An asserted constant is all that "
    "was\n"
    "; left of an assertion, so it is true.\n";

std::string get_excerpt(const Term* constant) { return make_excerpt(constant->get_symbol()->get_name()); }

/// Takes the trail's terms, the declared constants first; definitions come before what needs them.
void add_terms(PrintedTerms& terms, Terms constants, const Trail& trail)
{
  for (const Step& step : trail.steps)
    terms.define(step.constant, step.application);
  for (const Term* constant : constants) {
    terms.add(constant);
    if (terms[constant].definition != nullptr) {
      throw Exception("the constant " + get_excerpt(constant) +
                      " is the fresh constant of a step, but the script declares it");
    }
  }
  const std::size_t num_declared = terms.get_constants().size();
  for (const Step& step : trail.steps)
    terms.add(step.constant);
  for (const Term* fact : trail.facts)
    terms.add(fact);
  for (const Term* constant : terms.get_constants().subspan(num_declared)) {
    if (terms[constant].definition != nullptr) continue;
    throw Exception("the trail contains the constant " + get_excerpt(constant) +
                    ", but the script does not declare it, and no step introduces it");
  }
}

void note_use(PrintedTerms::Node& node, std::size_t piece)
{
  if (node.num_uses == 0) {
    node.piece = piece;
  } else if (node.piece != piece) {
    node.has_own_piece = true;
  }
  node.num_uses = node.num_uses == 0 ? 1 : 2;
}

/// Gives each application its piece. A piece is a definition; its name is the place in their order of what
/// it defines: a fresh constant, or an application that stands in several pieces.
void choose_pieces(PrintedTerms& terms)
{
  const Terms order = terms.get_order();
  for (std::size_t place = order.size(); place-- > 0;) {
    const Term* t = order[place];
    PrintedTerms::Node& node = terms[t];
    if (node.definition != nullptr || node.has_own_piece) node.piece = place;
    const Term* body = node.definition == nullptr ? t : node.definition;
    for (std::size_t i = 0; i < body->get_num_args(); ++i) {
      const Term* arg = body->get_arg(i);
      if (arg->get_num_args() != 0) note_use(terms[arg], node.piece);
    }
  }
}

/// Prints the definition of a fresh constant or of an application that several definitions contain.
void print_piece(TextBuffer& out, TermPrinter& writer, const Term* t, const PrintedTerms::Node& node)
{
  const bool is_step = node.definition != nullptr;
  out << "(define-fun ";
  if (is_step) {
    writer.write_constant(t);
  } else {
    writer.write_new_name(t);
  }
  out << " () " << t->get_symbol()->get_output_type()->to_string();
  const std::size_t num_layers = writer.open_lets(node.piece);
  writer.write_application(is_step ? node.definition : t);
  out << std::string(num_layers, ')') << ")\n";
}

/// Appends a symbol to the content of a string, in which a quotation mark is written twice.
void append_symbol(std::string& content, const Term* constant, bool is_quoted)
{
  if (is_quoted) content += '|';
  for (const char c : constant->get_symbol()->get_name())
    content.append(c == '"' ? 2 : 1, c);
  if (is_quoted) content += '|';
}

void print_step(TextBuffer& out, PrintedTerms& terms, const Step& step)
{
  std::string content;
  append_symbol(content, step.constant, terms[step.constant].is_quoted);
  for (std::size_t i = 0; i < step.application->get_num_args(); ++i) {
    if (!step.free[i]) continue;
    const Term* arg = step.application->get_arg(i);
    content += ' ';
    append_symbol(content, arg, terms[arg].is_quoted);
  }
  out << "(set-info :lumo-step \"" << content << "\")\n";
}

void print_steps(TextBuffer& out, TermPrinter& writer, PrintedTerms& terms, const Trail& trail)
{
  const Terms order = terms.get_order();
  std::size_t place = 0;
  for (const Step& step : trail.steps) {
    // What stands before the step's constant in the order and was not printed yet is what the step needs.
    for (; !terms[step.constant].is_printed; ++place) {
      PrintedTerms::Node& node = terms[order[place]];
      node.is_printed = true;
      if (node.definition != nullptr || node.has_own_piece) print_piece(out, writer, order[place], node);
    }
    print_step(out, terms, step);
  }
}

}  // namespace

void print_trail(std::ostream& out, Terms constants, const Trail& trail)
{
  PrintedTerms terms;
  add_terms(terms, constants, trail);
  choose_pieces(terms);
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  buffer << kHeader << "(set-logic QF_BV)\n";
  for (const Term* constant : terms.get_constants()) {
    if (terms[constant].definition == nullptr) writer.write_declaration(constant);
  }
  print_steps(buffer, writer, terms, trail);
  for (const Term* fact : trail.facts) {
    buffer << "(assert ";
    writer.write_constant(fact);
    buffer << ")\n";
  }
  buffer.flush();
}

}  // namespace lumo::smtlib
