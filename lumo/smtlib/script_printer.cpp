#include "lumo/smtlib/script_printer.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "lumo/smtlib/assertion_printer.h"
#include "lumo/smtlib/conjuncts.h"
#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/printed_terms.h"
#include "lumo/smtlib/term_printer.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

namespace {

using Terms = std::span<const Term* const>;
using Slot = PrintedTerms::Slot;

/// Sets of assertions that share an application; a set's name is its first member.
class AssertionSets
{
 public:
  using Index = std::uint32_t;

  explicit AssertionSets(std::size_t num_assertions) : num_assertions_(num_assertions) {}

  /// Whether each assertion is a set of its own; then the sets need no memory, as for most texts.
  [[nodiscard]] bool are_singletons() const { return parents_.empty(); }

  [[nodiscard]] Index find(Index i)
  {
    if (are_singletons()) return i;
    while (parents_[i] != i) {
      parents_[i] = parents_[parents_[i]];
      i = parents_[i];
    }
    return i;
  }
  void unite(Index i, Index j)
  {
    if (are_singletons()) {
      parents_.resize(num_assertions_);
      std::iota(parents_.begin(), parents_.end(), Index{0});
    }
    const auto [first, second] = std::minmax({find(i), find(j)});
    parents_[second] = first;
  }
  /// For each assertion the next one of its set, or 0 for the last.
  [[nodiscard]] std::vector<Index> make_links()
  {
    std::vector<Index> next(num_assertions_);
    for (auto i = static_cast<Index>(num_assertions_); i-- > 0;) {
      const Index first = find(i);
      if (first == i) continue;
      next[i] = next[first];
      next[first] = i;
    }
    return next;
  }

 private:
  std::size_t num_assertions_;
  std::vector<Index> parents_;
};

/// Counts one more use of a term in an assertion.
void note_use(PrintedTerms& terms, const Term* t, std::uint32_t assertion, AssertionSets& sets)
{
  if (terms.get_num_args(t) == 0) return;
  PrintedTerms::Node& node = terms.get_node(terms.get_slot(t));
  if (node.piece != assertion) sets.unite(node.piece, assertion);
  node.num_uses = node.num_uses == 0 ? 1 : 2;
}

/// Takes the assertions; the piece of each application becomes the set of the assertions that use it.
AssertionSets add_assertions(PrintedTerms& terms, Terms assertions)
{
  AssertionSets sets(assertions.size());
  for (std::uint32_t i = 0; i < assertions.size(); ++i) {
    terms.add(assertions[i], [&](Slot slot) {
      terms.get_node(slot).piece = i;
      const Term* t = terms.get_term(slot);
      const std::size_t num_args = terms.get_num_args(t);
      for (std::size_t j = 0; j < num_args; ++j)
        note_use(terms, terms.get_arg(t, j), i, sets);
    });
    note_use(terms, assertions[i], i, sets);
  }
  terms.finish_adding();
  for (Slot slot = 0; !sets.are_singletons() && slot < terms.get_num_slots(); ++slot)
    terms.get_node(slot).piece = sets.find(terms.get_node(slot).piece);
  return sets;
}

/// Sorts the constants that were not given by the order in which they were made.
void sort_constants(std::span<const Term*> constants)
{
  const auto is_older = [](const Term* lhs, const Term* rhs) { return lhs->get_id() < rhs->get_id(); };
  if (!std::is_sorted(constants.begin(), constants.end(), is_older))
    std::sort(constants.begin(), constants.end(), is_older);
}

/// Prints one set of assertions, of which the first is given.
void print_set(TextBuffer& out, TermPrinter& writer, Terms assertions, std::uint32_t first,
               const std::vector<std::uint32_t>& next)
{
  out << "(assert";
  const std::size_t num_layers = writer.open_lets(first);
  const bool is_singleton = next.empty() || next[first] == 0;
  if (!is_singleton) out << "(and";
  std::uint32_t i = first;
  do {
    if (!is_singleton) out << "\n  ";
    writer.write(assertions[i]);
    i = is_singleton ? 0 : next[i];
  } while (i != 0);
  if (!is_singleton) out << ')';
  out << std::string(num_layers, ')') << ")\n";
}

void write_assertions(TextBuffer& out, TermPrinter& writer, Terms assertions, AssertionSets& sets)
{
  const std::vector<std::uint32_t> next =
      sets.are_singletons() ? std::vector<std::uint32_t>() : sets.make_links();
  for (std::uint32_t i = 0; i < assertions.size(); ++i) {
    if (sets.find(i) == i) print_set(out, writer, assertions, i, next);
  }
}

std::size_t count_ids(Terms constants, Terms assertions, const ForeignForms* foreign = nullptr)
{
  // The arguments of a foreign term may be newer than its placeholder.
  if (foreign != nullptr) return foreign->get_terms().get_num_ids();
  std::size_t num_ids = 0;
  for (const Terms terms : {constants, assertions}) {
    for (const Term* t : terms)
      num_ids = std::max(num_ids, t->get_id() + 1);
  }
  return num_ids;
}

/// The declarations that the terms need; adds the constants that these mention.
std::vector<std::size_t> add_declarations(PrintedTerms& terms, const ForeignForms& forms)
{
  const ForeignTerms& table = forms.get_terms();
  for (;;) {
    const std::size_t num_met = terms.get_foreign().size();
    ForeignTerms::Needs needs = table.list_declarations(terms.get_foreign());
    for (const Term* constant : needs.constants)
      terms.add(constant, [](Slot) {});
    if (terms.get_foreign().size() == num_met) return std::move(needs.declarations);
  }
}

/// Those of them that must be printed.
std::vector<std::size_t> list_new_declarations(PrintedTerms& terms, const ForeignDeclare& foreign)
{
  if (foreign.forms == nullptr) return {};
  std::vector<std::size_t> declarations = add_declarations(terms, *foreign.forms);
  std::erase_if(declarations, [&](std::size_t declaration) { return !foreign.declare(declaration); });
  return declarations;
}

/// Writes those of sorts, or the others; nothing if there are no foreign terms.
void write_foreign(TextBuffer& out, const ForeignForms* forms, std::span<const std::size_t> declarations,
                   bool of_sorts)
{
  if (forms == nullptr) return;
  for (const std::size_t number : declarations) {
    const ForeignDeclaration& declaration = forms->get_terms().declarations[number];
    if (declaration.is_of_sorts == of_sorts) out << declaration.text << '\n';
  }
}

/// Declares, in the order of their making, the constants that must be.
void print_declarations(TermPrinter& writer, std::span<const Term*> constants, const Declare& declare)
{
  sort_constants(constants);
  for (const Term* constant : constants) {
    if (declare(constant)) writer.write_declaration(constant);
  }
}

}  // namespace

void print_assertions(std::ostream& out, Terms assertions, const Declare& declare)
{
  print_assertions(out, assertions, declare, {});
}

void print_assertions(std::ostream& out, Terms assertions, const Declare& declare,
                      const ForeignDeclare& foreign)
{
  const std::vector<const Term*> conjuncts = list_conjuncts(assertions);
  PrintedTerms terms(count_ids({}, conjuncts, foreign.forms), {}, foreign.forms);
  AssertionSets sets = add_assertions(terms, conjuncts);
  const std::vector<std::size_t> declarations = list_new_declarations(terms, foreign);
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  write_foreign(buffer, foreign.forms, declarations, true);
  print_declarations(writer, terms.get_constants(), declare);
  write_foreign(buffer, foreign.forms, declarations, false);
  write_assertions(buffer, writer, conjuncts, sets);
  buffer.flush();
}

void print_named_assertion(std::ostream& out, const Term* assertion, std::string_view name,
                           const Declare& declare)
{
  print_named_assertion(out, assertion, name, declare, {});
}

void print_named_assertion(std::ostream& out, const Term* assertion, std::string_view name,
                           const Declare& declare, const ForeignDeclare& foreign)
{
  const std::vector<const Term*> assertions{assertion};
  PrintedTerms terms(count_ids({}, assertions, foreign.forms), {}, foreign.forms);
  add_assertions(terms, assertions);
  const std::vector<std::size_t> declarations = list_new_declarations(terms, foreign);
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  write_foreign(buffer, foreign.forms, declarations, true);
  print_declarations(writer, terms.get_constants(), declare);
  write_foreign(buffer, foreign.forms, declarations, false);
  buffer << "(assert (!";
  const std::size_t num_layers = writer.open_lets(0);
  writer.write(assertion);
  buffer << std::string(num_layers, ')') << " :named " << name << "))\n";
  buffer.flush();
}

void print_negation(std::ostream& out, Terms conjunction, const Declare& declare)
{
  const std::vector<const Term*> conjuncts = list_conjuncts(conjunction);
  PrintedTerms terms(count_ids({}, conjuncts));
  add_assertions(terms, conjuncts);
  // All are printed in one assertion.
  for (Slot slot = 0; slot < terms.get_num_slots(); ++slot)
    terms.get_node(slot).piece = 0;
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  print_declarations(writer, terms.get_constants(), declare);
  buffer << "(assert";
  const std::size_t num_layers = writer.open_lets(0);
  buffer << (conjuncts.size() > 1 ? "(not (and" : "(not");
  for (const Term* conjunct : conjuncts) {
    buffer << (conjuncts.size() > 1 ? "\n  " : " ");
    writer.write(conjunct);
  }
  if (conjuncts.empty()) buffer << " true";
  buffer << (conjuncts.size() > 1 ? "))" : ")") << std::string(num_layers, ')') << ")\n";
  buffer.flush();
}

void print_foreign_term(std::ostream& out, const Term* t, const ForeignForms& forms)
{
  const std::vector<const Term*> terms_to_print{t};
  PrintedTerms terms(count_ids({}, terms_to_print, &forms), {}, &forms);
  add_assertions(terms, terms_to_print);
  terms.choose_bindings();
  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  const std::size_t num_layers = writer.open_lets(0);
  writer.write(t);
  buffer << std::string(num_layers, ')');
  buffer.flush();
}

void print_declaration(std::ostream& out, const Term* constant)
{
  PrintedTerms terms(constant->get_id() + 1);
  terms.add(constant, [](Slot) {});
  TextBuffer buffer(out);
  TermPrinter(buffer, terms).write_declaration(constant);
  buffer.flush();
}

void print_script(std::ostream& out, Terms constants, Terms assertions, bool wants_model)
{
  const std::vector<const Term*> conjuncts = list_conjuncts(assertions);
  PrintedTerms terms(count_ids(constants, assertions));
  for (const Term* constant : constants)
    terms.add(constant, [](Slot) {});
  const std::size_t num_given = terms.get_constants().size();
  AssertionSets sets = add_assertions(terms, conjuncts);
  terms.choose_bindings();
  sort_constants(std::span(terms.get_constants()).subspan(num_given));

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  if (wants_model) buffer << "(set-option :produce-models true)\n";
  buffer << "(set-logic QF_BV)\n";
  for (const Term* constant : terms.get_constants())
    writer.write_declaration(constant);
  write_assertions(buffer, writer, conjuncts, sets);
  buffer << "(check-sat)\n";
  if (wants_model) buffer << "(get-model)\n";
  buffer.flush();
}

void print_script(std::ostream& out, Terms assertions, bool wants_model, const ForeignForms& foreign)
{
  const ForeignTerms& table = foreign.get_terms();
  const std::vector<const Term*> conjuncts = list_conjuncts(assertions);
  PrintedTerms terms(count_ids({}, conjuncts, &foreign), {}, &foreign);
  AssertionSets sets = add_assertions(terms, conjuncts);
  const std::vector<std::size_t> declarations = add_declarations(terms, foreign);
  terms.choose_bindings();
  sort_constants(terms.get_constants());

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  if (wants_model) buffer << "(set-option :produce-models true)\n";
  buffer << "(set-logic " << (table.logic.empty() ? "ALL" : table.logic) << ")\n";
  write_foreign(buffer, &foreign, declarations, true);
  for (const Term* constant : terms.get_constants())
    writer.write_declaration(constant);
  write_foreign(buffer, &foreign, declarations, false);
  write_assertions(buffer, writer, conjuncts, sets);
  buffer << "(check-sat)\n";
  if (wants_model) buffer << "(get-model)\n";
  buffer.flush();
}

}  // namespace lumo::smtlib
