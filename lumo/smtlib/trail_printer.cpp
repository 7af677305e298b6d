// The printing of a trail; the reading is in trail_reader.cpp.

#include "lumo/smtlib/trail_printer.h"

#include <algorithm>
#include <optional>
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
using Slot = PrintedTerms::Slot;

constexpr std::string_view kHeader =
    "; The applications that lumo eliminated from a script, in the order of elimination.\n"
    ";\n"
    "; Each definition gives the application that a fresh constant replaced. The :lumo-step after it\n"
    "; has the fresh constant and then the free arguments of the application, which occur nowhere else:\n"
    "; lumo extend chooses their values so that the application has the value that a model gives the\n"
    "; fresh constant. A definition without a :lumo-step is a part that several others share. An\n"
    "; asserted constant replaced a whole assertion, so it is true.\n";

std::size_t count_ids(Terms constants, const Trail& trail)
{
  std::size_t num_ids = 0;
  const auto count = [&num_ids](const Term* t) { num_ids = std::max(num_ids, t->get_id() + 1); };
  std::for_each(constants.begin(), constants.end(), count);
  std::for_each(trail.facts.begin(), trail.facts.end(), count);
  for (const Step& step : trail.steps) {
    count(step.constant);
    count(step.application);
  }
  return num_ids;
}

/// Adds the trail's terms, the declared constants first. Definitions precede the terms that need them.
void add_terms(PrintedTerms& terms, Terms constants, const Trail& trail)
{
  const auto ignore = [](Slot) {};
  for (const Term* constant : constants) {
    if (terms.is_defined(constant)) {
      throw Exception("the constant " + make_name_excerpt(constant) +
                      " is the fresh constant of a step, but the script declares it");
    }
    terms.add(constant, ignore);
  }
  const std::size_t num_declared = terms.get_constants().size();
  for (const Step& step : trail.steps)
    terms.add(step.constant, ignore);
  for (const Term* fact : trail.facts)
    terms.add(fact, ignore);
  if (terms.get_constants().size() != num_declared) {
    throw Exception("the trail contains the constant " +
                    make_name_excerpt(terms.get_constants()[num_declared]) +
                    ", but the script does not declare it, and no step introduces it");
  }
  terms.finish_adding();
}

void note_use(PrintedTerms::Node& node, std::uint32_t piece)
{
  if (node.num_uses == 0) {
    node.piece = piece;
  } else if (node.piece != piece) {
    node.has_own_piece = true;
  }
  node.num_uses = node.num_uses == 0 ? 1 : 2;
}

/// Gives each slot its piece. A piece is a definition; its name is the slot of what it defines: a fresh constant, or
/// an application that several pieces contain.
void choose_pieces(PrintedTerms& terms)
{
  for (auto slot = static_cast<Slot>(terms.get_num_slots()); slot-- > 0;) {
    PrintedTerms::Node& node = terms.get_node(slot);
    if (node.is_step || node.has_own_piece) node.piece = slot;
    const Term* body = terms.get_slot_body(slot);
    for (std::size_t i = 0; i < body->get_num_args(); ++i) {
      const Term* arg = body->get_arg(i);
      if (arg->get_num_args() != 0) note_use(terms.get_node(terms.get_slot(arg)), node.piece);
    }
  }
}

/// Prints the definition of a fresh constant or of an application that several definitions contain.
void print_piece(TextBuffer& out, TermPrinter& writer, PrintedTerms& terms, Slot slot)
{
  const PrintedTerms::Node& node = terms.get_node(slot);
  const Term* t = terms.get_term(slot);
  out << "(define-fun ";
  if (node.is_step) {
    writer.write_constant(t);
  } else {
    writer.write_new_name(slot);
  }
  out << " () ";
  writer.write_sort(t->get_symbol()->get_output_type());
  const std::size_t num_layers = writer.open_lets(slot);
  if (node.is_step) {
    writer.write_application(terms.get_slot_body(slot));
  } else {
    writer.write_slot(slot);
  }
  out << std::string(num_layers, ')') << ")\n";
}

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

void print_steps(TextBuffer& out, TermPrinter& writer, PrintedTerms& terms, const Trail& trail)
{
  Slot slot = 0;
  for (const Step& step : trail.steps) {
    // The step needs the slots up to that of its constant; print those that are not printed yet.
    for (; slot <= terms.get_slot(step.constant); ++slot) {
      const PrintedTerms::Node& node = terms.get_node(slot);
      if (node.is_step || node.has_own_piece) print_piece(out, writer, terms, slot);
    }
    print_step(out, writer, step);
  }
}

}  // namespace

void print_trail(std::ostream& out, Terms constants, const Trail& trail)
{
  PrintedTerms terms(count_ids(constants, trail), trail.steps);
  add_terms(terms, constants, trail);
  choose_pieces(terms);
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  buffer << kHeader << "(set-logic QF_BV)\n";
  for (const Term* constant : terms.get_constants())
    writer.write_declaration(constant);
  print_steps(buffer, writer, terms, trail);
  for (const Term* fact : trail.facts) {
    buffer << "(assert ";
    writer.write_constant(fact);
    buffer << ")\n";
  }
  buffer.flush();
}

}  // namespace lumo::smtlib
