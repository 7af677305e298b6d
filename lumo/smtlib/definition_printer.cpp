#include "lumo/smtlib/definition_printer.h"

#include <algorithm>
#include <string>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

using Terms = std::span<const Term* const>;
using Slot = PrintedTerms::Slot;

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

}  // namespace

DefinitionPrinter::DefinitionPrinter(Terms constants, const Trail& trail)
    : trail_(trail), terms_(count_ids(constants, trail), trail.steps)
{
  add_terms(terms_, constants, trail);
  choose_pieces(terms_);
  terms_.choose_bindings();
}

void DefinitionPrinter::print_declarations(TextBuffer& out)
{
  TermPrinter writer(out, terms_);
  for (const Term* constant : terms_.get_constants())
    writer.write_declaration(constant);
}

void DefinitionPrinter::print_definitions(TextBuffer& out,
                                          const std::function<void(const Step&, TermPrinter&)>& defined)
{
  TermPrinter writer(out, terms_);
  Slot slot = 0;
  for (const Step& step : trail_.steps) {
    // The step needs the slots up to that of its constant; print those that are not printed yet.
    for (; slot <= terms_.get_slot(step.constant); ++slot) {
      const PrintedTerms::Node& node = terms_.get_node(slot);
      if (node.is_step || node.has_own_piece) print_piece(out, writer, terms_, slot);
    }
    defined(step, writer);
  }
}

void DefinitionPrinter::print_facts(TextBuffer& out)
{
  TermPrinter writer(out, terms_);
  for (const Term* fact : trail_.facts) {
    out << "(assert ";
    writer.write_constant(fact);
    out << ")\n";
  }
}

}  // namespace lumo::smtlib
