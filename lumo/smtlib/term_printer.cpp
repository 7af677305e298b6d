#include "lumo/smtlib/term_printer.h"

#include "lumo/smtlib/name_printer.h"

namespace lumo::smtlib {

TermPrinter::TermPrinter(TextBuffer& out, PrintedTerms& terms)
    : out_(out), terms_(terms), prefix_(terms.make_free_prefix())
{}

void TermPrinter::write_constant(const Term* constant)
{
  const bool is_quoted = terms_.is_quoted(constant);
  if (is_quoted) out_ << '|';
  write_name(out_, constant->get_symbol());
  if (is_quoted) out_ << '|';
}

void TermPrinter::write_sort(const DataType* sort)
{
  if (sort != last_sort_) {
    last_sort_text_ = sort->to_string();
    last_sort_ = sort;
  }
  out_ << last_sort_text_;
}

void TermPrinter::write_declaration(const Term* constant)
{
  out_ << "(declare-fun ";
  write_constant(constant);
  out_ << " () ";
  write_sort(constant->get_symbol()->get_output_type());
  out_ << ")\n";
}

void TermPrinter::write_new_name(PrintedTerms::Slot application)
{
  PrintedTerms::Node& node = terms_.get_node(application);
  node.number = ++num_names_;
  out_ << prefix_ << node.number;
}

std::size_t TermPrinter::open_lets(std::uint32_t piece)
{
  std::size_t num_layers = 0;
  for (const PrintedTerms::Binding& binding : terms_.take_bound(piece)) {
    const bool is_new_layer = num_layers <= binding.layer;
    if (!is_new_layer) {
      out_ << "\n      (";
    } else {
      out_ << (num_layers == 0 ? "\n(let ((" : ")\n(let ((");
      ++num_layers;
    }
    write_new_name(binding.slot);
    out_ << ' ';
    write_slot(binding.slot);
    out_ << ')';
  }
  out_ << (num_layers == 0 ? " " : ")\n");
  return num_layers;
}

void TermPrinter::write(const Term* t)
{
  write_leaf_or_open(t);
  finish_open();
}

void TermPrinter::write_application(const Term* application)
{
  write_operator(application->get_symbol());
  for (std::size_t i = 0; i < application->get_num_args(); ++i) {
    out_ << ' ';
    write(application->get_arg(i));
  }
  out_ << ')';
}

void TermPrinter::write_slot(PrintedTerms::Slot slot)
{
  open(terms_.get_term(slot), slot);
  finish_open();
}

void TermPrinter::finish_open()
{
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (visit.application->get_num_args() == 0) [[unlikely]] {
      finish_foreign(visit);
    } else if (visit.next < visit.application->get_num_args()) {
      out_ << ' ';
      write_leaf_or_open(visit.application->get_arg(visit.next++));
    } else if (const PrintedTerms::Node& node = terms_.get_node(visit.slot); node.is_inner) {
      // The first argument of the next member is completely written.
      visit = {terms_.get_term(node.number), node.number, 1};
    } else {
      out_ << ')';
      visits_.pop_back();
    }
  }
}

void TermPrinter::write_leaf_or_open(const Term* t)
{
  const Symbol* symbol = t->get_symbol();
  const bool is_constant = symbol->get_kind() == Kind::kConstant;
  const ForeignTerms::Index foreign = is_constant ? terms_.find_foreign(t) : ForeignTerms::kNone;
  if (is_constant && foreign == ForeignTerms::kNone) {
    write_constant(t);
  } else if (!is_constant && t->get_num_args() == 0) {
    write_name(out_, symbol);
  } else if (is_constant && terms_.get_num_args(t) == 0) {
    out_ << terms_.get_foreign_head(foreign).text;
  } else {
    const PrintedTerms::Slot slot = terms_.get_slot(t);
    const PrintedTerms::Node& node = terms_.get_node(slot);
    if (node.is_bound || node.has_own_piece) {
      out_ << prefix_ << node.number;
    } else {
      open(t, slot);
    }
  }
}

/// Begins an application, or the chain whose last member it is.
void TermPrinter::open(const Term* t, PrintedTerms::Slot slot)
{
  if (t->get_num_args() == 0) [[unlikely]] {
    open_foreign(t, slot, terms_.get_foreign_head(terms_.find_foreign(t)));
    return;
  }
  write_operator(t->get_symbol());
  for (;;) {
    const Term* first = t->get_arg(0);
    if (terms_.get_num_args(first) == 0) break;
    const PrintedTerms::Slot first_slot = terms_.get_slot(first);
    if (!terms_.get_node(first_slot).is_inner) break;
    t = first;
    slot = first_slot;
  }
  visits_.push_back({t, slot, 0});
}

void TermPrinter::open_foreign(const Term* t, PrintedTerms::Slot slot, const ForeignHead& head)
{
  if (head.role == ForeignRole::kBinder) {
    if (!head.names.empty()) out_ << "(let (";
  } else {
    out_ << '(' << head.text;
  }
  visits_.push_back({t, slot, 0});
}

/// Continues a foreign term. Of a binder, only the terms of names are printed: its text mentions its other arguments.
void TermPrinter::finish_foreign(Visit& visit)
{
  const Term* t = visit.application;
  const ForeignHead& head = terms_.get_foreign_head(terms_.find_foreign(t));
  const bool is_binder = head.role == ForeignRole::kBinder;
  const std::size_t num_printed = is_binder ? head.names.size() : terms_.get_num_args(t);
  if (is_binder) write_binder_piece(head, visit.next);
  if (visit.next < num_printed) {
    out_ << ' ';
    write_leaf_or_open(terms_.get_arg(t, visit.next++));
    return;
  }
  if (!is_binder) out_ << ')';
  visits_.pop_back();
}

void TermPrinter::write_binder_piece(const ForeignHead& head, std::uint32_t arg)
{
  if (arg > 0) out_ << ')';
  if (arg < head.names.size()) {
    out_ << (arg > 0 ? " (" : "(") << head.names[arg];
  } else if (head.names.empty()) {
    out_ << head.text;
  } else {
    out_ << ") " << head.text << ')';
  }
}

}  // namespace lumo::smtlib
