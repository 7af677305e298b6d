#include "lumo/smtlib/term_printer.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace lumo::smtlib {

namespace {

/// An `s` and more exclamation marks than any of the names has behind an `s` at its front
std::string make_prefix(std::span<const Term* const> constants)
{
  std::size_t most = 0;
  for (const Term* constant : constants) {
    const std::string_view name = constant->get_symbol()->get_name();
    if (!name.starts_with('s')) continue;
    const std::size_t last = std::min(name.find_first_not_of('!', 1), name.size());
    most = std::max(most, last - 1);
  }
  std::string prefix = "s";
  prefix.append(most + 1, '!');
  return prefix;
}

}  // namespace

TermPrinter::TermPrinter(TextBuffer& out, PrintedTerms& terms)
    : out_(out), terms_(terms), prefix_(make_prefix(terms.get_constants()))
{}

void TermPrinter::write_constant(const Term* constant)
{
  const std::string_view name = constant->get_symbol()->get_name();
  if (terms_[constant].is_quoted) {
    out_ << '|' << name << '|';
  } else {
    out_ << name;
  }
}

void TermPrinter::write_declaration(const Term* constant)
{
  out_ << "(declare-fun ";
  write_constant(constant);
  out_ << " () " << constant->get_symbol()->get_output_type()->to_string() << ")\n";
}

void TermPrinter::write_new_name(const Term* application)
{
  PrintedTerms::Node& node = terms_[application];
  node.name = ++num_names_;
  write_name(node.name);
}

std::size_t TermPrinter::open_lets(std::size_t piece)
{
  std::size_t num_layers = 0;
  for (const Term* bound : terms_.take_bound(piece)) {
    // Within a layer, no binding needs another one.
    const bool is_new_layer = num_layers <= terms_[bound].level;
    if (!is_new_layer) {
      out_ << "\n      (";
    } else {
      out_ << (num_layers == 0 ? "\n(let ((" : ")\n(let ((");
      ++num_layers;
    }
    write_new_name(bound);
    out_ << ' ';
    write_application(bound);
    out_ << ')';
  }
  out_ << (num_layers == 0 ? " " : ")\n");
  return num_layers;
}

void TermPrinter::write(const Term* t)
{
  write_leaf_or_open(t);
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (visit.next == visit.application->get_num_args()) {
      out_ << ')';
      visits_.pop_back();
    } else {
      out_ << ' ';
      write_leaf_or_open(visit.application->get_arg(visit.next++));
    }
  }
}

void TermPrinter::write_application(const Term* application)
{
  out_ << '(' << application->get_symbol()->get_name();
  for (std::size_t i = 0; i < application->get_num_args(); ++i) {
    out_ << ' ';
    write(application->get_arg(i));
  }
  out_ << ')';
}

void TermPrinter::write_leaf_or_open(const Term* t)
{
  const Symbol* symbol = t->get_symbol();
  if (symbol->get_kind() == Kind::kConstant) {
    write_constant(t);
  } else if (t->get_num_args() == 0) {
    out_ << symbol->get_name();
  } else if (const std::uint32_t number = terms_[t].name; number != 0) {
    write_name(number);
  } else {
    out_ << '(' << symbol->get_name();
    visits_.push_back({t, 0});
  }
}

}  // namespace lumo::smtlib
