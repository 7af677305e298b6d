#include "lumo/commands/dot_printer.h"

#include <ostream>
#include <string_view>
#include <unordered_set>

#include "lumo/commands/text_escapes.h"
#include "lumo/terms/term_walk.h"

namespace lumo::commands {

namespace {

std::string_view get_shape(Kind kind)
{
  if (is_operator(kind)) return "box";
  return kind == Kind::kConstant ? "ellipse" : "plaintext";
}

void print_node(std::ostream& out, const Term* t, bool is_marked)
{
  const Symbol* symbol = t->get_symbol();
  out << "  t" << t->get_id() << " [label=" << make_dot_string(symbol->get_name())
      << ", shape=" << get_shape(symbol->get_kind()) << (is_marked ? ", style=filled" : "") << "];\n";
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    out << "  t" << t->get_id() << " -> t" << t->get_arg(i)->get_id() << ";\n";
}

}  // namespace

void print_dot(std::ostream& out, std::span<const Term* const> assertions,
               std::span<const Term* const> marked)
{
  const std::unordered_set<const Term*> is_marked(marked.begin(), marked.end());
  out << "digraph assertions {\n  ordering=out;\n  node [fillcolor=gold];\n";
  for (const Term* t : collect_terms(assertions))
    print_node(out, t, is_marked.contains(t));
  for (std::size_t i = 0; i < assertions.size(); ++i) {
    out << "  a" << i + 1 << " [label=\"assertion " << i + 1 << "\", shape=cds];\n"
        << "  a" << i + 1 << " -> t" << assertions[i]->get_id() << ";\n";
  }
  out << "}\n";
}

}  // namespace lumo::commands
