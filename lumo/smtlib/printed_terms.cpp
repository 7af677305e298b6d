#include "lumo/smtlib/printed_terms.h"

#include <algorithm>
#include <cassert>

#include "lumo/smtlib/input_error.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

constexpr std::uint16_t kMaxHeight = 1000;

/// Whether SMT-LIB 2 applies the operator to many arguments, nested from the left.
bool is_flat_kind(Kind kind)
{
  switch (kind) {
    case Kind::kAnd:
    case Kind::kOr:
    case Kind::kBvAnd:
    case Kind::kBvOr:
    case Kind::kBvXor:
    case Kind::kBvAdd:
    case Kind::kBvMul:
    case Kind::kBvConcat:
      return true;
    default:
      return false;
  }
}

/// Whether a chain of applications continues from an application to its first argument.
bool continues_chain(const Term* t, const Term* first_arg)
{
  const Kind kind = t->get_symbol()->get_kind();
  return kind == first_arg->get_symbol()->get_kind() && is_flat_kind(kind);
}

}  // namespace

PrintedTerms::PrintedTerms(std::size_t num_ids, std::span<const Step> steps, const ForeignForms* foreign)
    : steps_(steps), foreign_(foreign), codes_(num_ids)
{
  if (foreign != nullptr) {
    for (const ForeignFunction& function : foreign->get_terms().functions) {
      const std::string_view name = function.name;
      static_cast<void>(names_.note(name));
    }
  }
  assert(steps.size() < kOpen && "the number of a step fits its bits");
  for (std::uint32_t i = 0; i < steps.size(); ++i) {
    std::uint32_t& code = codes_[steps[i].constant->get_id()];
    if (code != kUnknown) {
      throw Exception("two definitions of " + make_name_excerpt(steps[i].constant) +
                      " were found, but each constant may have one");
    }
    code = kDefined | i;
  }
}

/// The term that must be walked before an open term is closed.
const Term* PrintedTerms::get_body(const Term* t) const
{
  const std::uint32_t code = codes_[t->get_id()];
  return (code & kDefined) == 0 ? t : steps_[code & ~(kDefined | kOpen)].application;
}

/// Opens a term for the walk and returns true, unless it is already known or a leaf.
bool PrintedTerms::open_if_new(const Term* t)
{
  std::uint32_t& code = codes_[t->get_id()];
  if (code != kUnknown && (code & kDefined) == 0) return false;
  if ((code & kDefined) != 0) {
    open_definition(t, code);
  } else if (get_num_args(t) == 0) {
    note_leaf(t, code);
    return false;
  }
  open_.emplace_back(t);
  return true;
}

void PrintedTerms::open_definition(const Term* constant, std::uint32_t& code)
{
  if ((code & kOpen) != 0) {
    throw Exception("the definition of " + make_name_excerpt(constant) +
                    " needs the constant itself, but definitions must not be cyclic");
  }
  code |= kOpen;
}

void PrintedTerms::note_leaf(const Term* t, std::uint32_t& code)
{
  code = kLeaf;
  const Symbol* symbol = t->get_symbol();
  if (symbol->get_kind() != Kind::kConstant) return;
  if (const ForeignTerms::Index foreign = find_foreign(t); foreign != ForeignTerms::kNone) {
    foreign_met_.push_back(foreign);
    return;
  }
  if (names_.note(symbol)) code = kQuotedLeaf;
  constants_.push_back(t);
}

/// Opens the first argument that is not closed, if there is one.
bool PrintedTerms::open_argument(const Term* body)
{
  const std::size_t num_args = get_num_args(body);
  for (std::size_t i = 0; i < num_args; ++i) {
    if (open_if_new(get_arg(body, i))) return true;
  }
  return false;
}

std::size_t PrintedTerms::get_num_foreign_args(const Term* t) const
{
  const ForeignTerms::Index foreign = find_foreign(t);
  return foreign == ForeignTerms::kNone ? 0 : foreign_->get_terms().get_args(foreign).size();
}

PrintedTerms::Slot PrintedTerms::close(const Term* t)
{
  std::uint32_t& code = codes_[t->get_id()];
  Node node{};
  if ((code & kDefined) != 0) {
    node.is_step = true;
    node.number = code & ~(kDefined | kOpen);
    node.is_quoted = names_.note(t->get_symbol());
  }
  if (const ForeignTerms::Index foreign = find_foreign(t); foreign != ForeignTerms::kNone)
    foreign_met_.push_back(foreign);
  const auto slot = static_cast<Slot>(nodes_.size());
  assert(slot < kDefined - kFirstSlot && "slots fit their bits");
  code = slot + kFirstSlot;
  terms_.emplace_back(t);
  nodes_.emplace_back(node);
  open_.pop_back();
  return slot;
}

bool PrintedTerms::is_defined(const Term* constant) const
{
  const std::uint32_t code = codes_[constant->get_id()];
  return (code & kDefined) != 0 || (code >= kFirstSlot && nodes_[code - kFirstSlot].is_step);
}

bool PrintedTerms::is_quoted(const Term* constant) const
{
  const std::uint32_t code = codes_[constant->get_id()];
  return code >= kFirstSlot ? nodes_[code - kFirstSlot].is_quoted : code == kQuotedLeaf;
}

void PrintedTerms::choose_bindings()
{
  for (Slot slot = 0; slot < nodes_.size(); ++slot)
    place(slot);
  if (!std::is_sorted(bindings_.begin(), bindings_.end())) std::sort(bindings_.begin(), bindings_.end());
}

/// Decides how the arguments of a slot's body are printed, and whether the slot must be bound itself. The slots
/// that it needs were placed before.
void PrintedTerms::place(Slot slot)
{
  Node& node = nodes_[slot];
  const Term* body = get_slot_body(slot);
  std::uint32_t level = 0;
  std::uint16_t height = 0;
  const std::size_t num_args = get_num_args(body);
  for (std::size_t i = 0; i < num_args; ++i) {
    // Leaves, including defined constants, are printed directly.
    const Term* arg = get_arg(body, i);
    if (get_num_args(arg) == 0) continue;
    const Slot arg_slot = get_slot(arg);
    Node& used = nodes_[arg_slot];
    if (used.has_own_piece) continue;
    // A step names the free arguments of its application, so its application must keep its form.
    const bool is_inner = i == 0 && !node.is_step && continues_chain(body, arg) && used.num_uses == 1;
    if (used.height == kMaxHeight && !is_inner) bind(arg_slot);
    level = std::max(level, used.is_bound ? used.number + 1 : used.number);
    if (is_inner) {
      height = std::max<std::uint16_t>(height, used.height - 1);
      used.is_inner = true;
      used.number = slot;
    } else if (!used.is_bound) {
      height = std::max(height, used.height);
    }
  }
  node.height = height + 1;
  if (node.is_step) return;
  node.number = level;
  if (node.num_uses > 1 && !node.has_own_piece) bind(slot);
}

void PrintedTerms::bind(Slot slot)
{
  Node& node = nodes_[slot];
  if (node.is_bound) return;
  node.is_bound = true;
  bindings_.push_back({node.piece, node.number, slot});
}

std::span<const PrintedTerms::Binding> PrintedTerms::take_bound(std::uint32_t piece)
{
  const std::size_t first = num_taken_;
  while (num_taken_ < bindings_.size() && bindings_[num_taken_].piece == piece)
    ++num_taken_;
  return std::span(bindings_).subspan(first, num_taken_ - first);
}

}  // namespace lumo::smtlib
