#include "lumo/smtlib/printed_terms.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/symbol_text.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

constexpr std::uint16_t kMaxHeight = 1000;

}  // namespace

void PrintedTerms::define(const Term* constant, const Term* application)
{
  Node& node = make_node(constant);
  if (node.definition != nullptr) {
    throw Exception("two definitions of " + make_excerpt(constant->get_symbol()->get_name()) +
                    " were found, but each constant may have one");
  }
  node.definition = application;
}

void PrintedTerms::add(const Term* root)
{
  open(root);
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (visit.next < visit.body->get_num_args()) {
      open(visit.body->get_arg(visit.next++));
    } else {
      close(visit.term);
    }
  }
}

PrintedTerms::Node& PrintedTerms::make_node(const Term* t)
{
  const std::size_t id = t->get_id();
  if (id >= nodes_.size()) nodes_.resize(std::max(id + 1, 2 * nodes_.size()));
  return nodes_[id];
}

/// Begins the visit of a term, unless it is known already.
void PrintedTerms::open(const Term* t)
{
  Node& node = make_node(t);
  if (node.is_open) {
    throw Exception("the definition of " + make_excerpt(t->get_symbol()->get_name()) +
                    " needs the constant itself, but definitions must not go round in circles");
  }
  if (node.is_seen) return;
  node.is_seen = true;
  node.is_open = true;
  const Symbol* symbol = t->get_symbol();
  if (symbol->get_kind() == Kind::kConstant) {
    node.is_quoted = make_symbol_text(symbol->get_name()).starts_with('|');
    constants_.push_back(t);
  }
  visits_.push_back({t, node.definition == nullptr ? t : node.definition, 0});
}

void PrintedTerms::close(const Term* t)
{
  (*this)[t].is_open = false;
  order_.push_back(t);
  visits_.pop_back();
}

void PrintedTerms::choose_bindings()
{
  for (const Term* t : order_) {
    Node& node = (*this)[t];
    const Term* body = node.definition == nullptr ? t : node.definition;
    for (std::size_t i = 0; i < body->get_num_args(); ++i) {
      const Term* arg = body->get_arg(i);
      const Node& used = (*this)[arg];
      // Leaves, and among them constants that are defined, are printed as they are.
      if (arg->get_num_args() == 0 || used.has_own_piece) continue;
      if (used.height == kMaxHeight) bind(arg);
      node.level = std::max(node.level, used.is_bound ? used.level + 1 : used.level);
      if (!used.is_bound) node.height = std::max(node.height, used.height);
    }
    ++node.height;
    if (t->get_num_args() != 0 && node.num_uses > 1 && !node.has_own_piece) bind(t);
  }
  std::stable_sort(bound_.begin(), bound_.end(), [this](const Term* lhs, const Term* rhs) {
    const Node& a = (*this)[lhs];
    const Node& b = (*this)[rhs];
    return std::tie(a.piece, a.level) < std::tie(b.piece, b.level);
  });
}

void PrintedTerms::bind(const Term* t)
{
  Node& node = (*this)[t];
  if (node.is_bound) return;
  node.is_bound = true;
  bound_.push_back(t);
}

std::span<const Term* const> PrintedTerms::take_bound(std::size_t piece)
{
  const std::size_t first = num_taken_;
  while (num_taken_ < bound_.size() && (*this)[bound_[num_taken_]].piece == piece)
    ++num_taken_;
  return std::span(bound_).subspan(first, num_taken_ - first);
}

}  // namespace lumo::smtlib
