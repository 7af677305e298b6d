#include "lumo/smtlib/script_printer.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "lumo/smtlib/printed_terms.h"
#include "lumo/smtlib/term_printer.h"
#include "lumo/smtlib/text_buffer.h"

namespace lumo::smtlib {

namespace {

using Terms = std::span<const Term* const>;

/// Sets of assertions that share something; a set's name is its first member.
class AssertionSets
{
 public:
  explicit AssertionSets(std::size_t num_assertions) : parents_(num_assertions)
  {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }

  [[nodiscard]] std::size_t find(std::size_t i)
  {
    while (parents_[i] != i) {
      parents_[i] = parents_[parents_[i]];
      i = parents_[i];
    }
    return i;
  }
  void unite(std::size_t i, std::size_t j)
  {
    const auto [first, second] = std::minmax({find(i), find(j)});
    parents_[second] = first;
  }

 private:
  std::vector<std::size_t> parents_;
};

/// Counts one more use of a term, in the piece of one of the assertions.
void note_use(PrintedTerms& terms, const Term* t, std::size_t piece, AssertionSets& sets)
{
  if (t->get_num_args() == 0) return;
  PrintedTerms::Node& node = terms[t];
  if (node.num_uses == 0) {
    node.piece = piece;
  } else if (node.piece != piece) {
    sets.unite(node.piece, piece);
  }
  node.num_uses = node.num_uses == 0 ? 1 : 2;
}

/// Gives each application its piece, which is the set of the assertions that use it.
AssertionSets choose_pieces(PrintedTerms& terms, Terms assertions)
{
  AssertionSets sets(assertions.size());
  for (std::size_t i = 0; i < assertions.size(); ++i)
    note_use(terms, assertions[i], i, sets);
  const Terms order = terms.get_order();
  for (std::size_t i = order.size(); i-- > 0;) {
    for (std::size_t j = 0; j < order[i]->get_num_args(); ++j)
      note_use(terms, order[i]->get_arg(j), terms[order[i]].piece, sets);
  }
  for (const Term* t : order) {
    PrintedTerms::Node& node = terms[t];
    if (t->get_num_args() != 0) node.piece = sets.find(node.piece);
  }
  return sets;
}

/// Prints one set of assertions, given by the places of its members.
void print_set(TextBuffer& out, TermPrinter& writer, Terms assertions, std::span<const std::size_t> members)
{
  out << "(assert";
  const std::size_t num_layers = writer.open_lets(members.front());
  if (members.size() > 1) out << "(and";
  for (const std::size_t i : members) {
    if (members.size() > 1) out << "\n  ";
    writer.write(assertions[i]);
  }
  if (members.size() > 1) out << ')';
  out << std::string(num_layers, ')') << ")\n";
}

void print_assertions(TextBuffer& out, TermPrinter& writer, Terms assertions, AssertionSets& sets)
{
  std::vector<std::size_t> places(assertions.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(),
                   [&sets](std::size_t i, std::size_t j) { return sets.find(i) < sets.find(j); });
  for (std::size_t first = 0; first < places.size();) {
    std::size_t last = first + 1;
    while (last < places.size() && sets.find(places[last]) == places[first])
      ++last;
    print_set(out, writer, assertions, std::span(places).subspan(first, last - first));
    first = last;
  }
}

}  // namespace

void print_script(std::ostream& out, Terms constants, Terms assertions, bool wants_model)
{
  PrintedTerms terms;
  for (const Term* constant : constants)
    terms.add(constant);
  for (const Term* assertion : assertions)
    terms.add(assertion);
  AssertionSets sets = choose_pieces(terms, assertions);
  terms.choose_bindings();

  TextBuffer buffer(out);
  TermPrinter writer(buffer, terms);
  if (wants_model) buffer << "(set-option :produce-models true)\n";
  buffer << "(set-logic QF_BV)\n";
  for (const Term* constant : terms.get_constants())
    writer.write_declaration(constant);
  print_assertions(buffer, writer, assertions, sets);
  buffer << "(check-sat)\n";
  if (wants_model) buffer << "(get-model)\n";
  buffer.flush();
}

}  // namespace lumo::smtlib
