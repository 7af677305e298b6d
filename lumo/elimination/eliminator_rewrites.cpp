// The rules that depend on more than the set of free arguments.

#include <algorithm>

#include "lumo/elimination/eliminator.h"
#include "lumo/elimination/order_atom.h"
#include "lumo/numbers/bvnumber.h"

namespace lumo {

namespace {

unsigned long count_trailing_zeros(const QNumber& number)
{
  unsigned long k = 0;
  while (!BVNumber::is_bit_set(number, k))
    ++k;
  return k;
}

/// The number as a shift amount, at most the limit.
unsigned long clamp(const QNumber& number, unsigned long limit)
{
  long word;
  if (!number.get_word(word)) return limit;
  return std::min(static_cast<unsigned long>(word), limit);
}

}  // namespace

/// The calculator gives values to the condition and a branch, or to both branches, whatever the third argument is.
/// But for an `ite` of Booleans with a free condition it always takes the first branch. So if the second branch is
/// the free one: before: ite(c, e, x), after: ite(not c, x, e).
void Eliminator::visit_ite(NodeIndex n)
{
  const FreeArguments free = get_free(n);
  if (free.count() < 2) return;
  const Node node = graph_[n];
  const bool takes_second = free[0] && !free[1] && node.symbol->get_output_type()->is_bool();
  if (!takes_second) {
    eliminate_application(n, free);
    return;
  }
  const NodeIndex negated =
      add_step_leaf(n, mgr_.make_not_symbol(), {node.args[0], kNoNode, kNoNode}, FreeArguments(0b1), nullptr);
  add_step(n, node.symbol, {negated, node.args[2], node.args[1]}, FreeArguments(0b11), node.term);
  replace_by_leaf(n, steps_.back().constant);
}

// ------------------------------------------------------------------------------------------------------
// Order atoms

void Eliminator::visit_order_atom(NodeIndex n)
{
  const FreeArguments free = get_free(n);
  const std::size_t position = free[0] ? 0 : 1;
  const NodeIndex other = graph_[n].args[1 - position];
  if (free.count() < 2 && !graph_.is_numeral(other)) {
    guard_order_atom(n, position);
    return;
  }
  const OrderLimit limit = get_order_limit(graph_.get_kind(n), position == 0, graph_.get_width(other));
  QNumber number;
  const bool is_number = mgr_.is_number(graph_[other].symbol, &number);
  if (is_number && number == limit.bound) {
    replace_by_leaf(n, limit.truth ? mgr_.make_true() : mgr_.make_false());
  } else {
    eliminate_application(n, free);
  }
}

/// Before: x < e, after: f and not e = bound; before: x <= e, after: f or e = bound. In a model in which e is the
/// bound, f does not determine the atom; `extend` handles this case.
void Eliminator::guard_order_atom(NodeIndex n, std::size_t free_position)
{
  const Node node = graph_[n];
  const NodeIndex other = node.args[1 - free_position];
  const unsigned long w = graph_.get_width(other);
  const auto [bound, truth] = get_order_limit(node.symbol->get_kind(), free_position == 0, w);

  FreeArguments free;
  free.set(free_position);
  const NodeIndex atom = add_step_leaf(n, node.symbol, node.args, free, node.term);
  const NodeIndex limit = graph_.add_leaf(mgr_.make_bv_number(bound, w));
  NodeIndex guard = add_application(n, mgr_.make_eq_symbol(mgr_.make_bv_type(w)), {other, limit, kNoNode});
  if (!truth) guard = add_application(n, mgr_.make_not_symbol(), {guard, kNoNode, kNoNode});
  replace_by_application(n, truth ? mgr_.make_or_symbol() : mgr_.make_and_symbol(), {atom, guard, kNoNode});

  chains_.start(n);
  join_chain(n);
  work_.push_back(atom);
}

NodeIndex Eliminator::add_application(NodeIndex owner, const Symbol* s, const Node::Arguments& args)
{
  const NodeIndex n = graph_.add_application(s, args);
  if (keeps_owners_) owners_.emplace(n, get_owner(owner));
  return n;
}

// ------------------------------------------------------------------------------------------------------
// Applications to a free argument and a numeral

void Eliminator::rewrite_shift(NodeIndex n)
{
  const Node node = graph_[n];
  const Kind kind = node.symbol->get_kind();
  QNumber amount;
  if (!mgr_.is_number(graph_[node.args[1]].symbol, &amount)) return;

  const unsigned long w = graph_.get_width(n);
  // From w - 1 bits on, all bits are copies of the sign bit.
  const unsigned long k = clamp(amount, kind == Kind::kBvAsr ? w - 1 : w);
  if (k == 0) {
    replace_by_leaf(n, graph_[node.args[0]].term);
  } else if (k == w) {
    replace_by_leaf(n, mgr_.make_bv_number(0, w));
  } else {
    replace_by_moved(n, kind, node.args[0], k, node.term);
  }
}

/// A free x times an odd number can take any value. x times 2^k m with an odd m is m x, shifted by k bits.
void Eliminator::rewrite_product(NodeIndex n)
{
  const Node node = graph_[n];
  const bool is_left_free = graph_.is_free(node.args[0]);
  const NodeIndex x = node.args[is_left_free ? 0 : 1];
  QNumber factor;
  mgr_.is_number(graph_[node.args[is_left_free ? 1 : 0]].symbol, &factor);

  const unsigned long w = graph_.get_width(n);
  if (factor.sign() == 0) {
    replace_by_leaf(n, mgr_.make_bv_number(0, w));
    return;
  }
  const unsigned long k = count_trailing_zeros(factor);
  if (k == 0) {
    eliminate_application(n, get_free(n));
    return;
  }
  const QNumber odd_factor = BVNumber::shift_right(factor, k);
  NodeIndex product = x;
  if (odd_factor != QNumber(1)) {
    const NodeIndex numeral = graph_.add_leaf(mgr_.make_bv_number(odd_factor, w));
    product = add_step_leaf(n, node.symbol, {x, numeral, kNoNode}, FreeArguments(0b1), nullptr);
  }
  replace_by_moved(n, Kind::kBvLsl, product, k, node.term);
}

/// The remaining bits of x are free, so they become a step. Before: a shift of x by k; after: these bits and padding.
void Eliminator::replace_by_moved(NodeIndex n, Kind direction, NodeIndex x, unsigned long k,
                                  const Term* original)
{
  const unsigned long w = graph_.get_width(n);
  const Symbol* extract = direction == Kind::kBvLsl ? mgr_.make_bv_extract_symbol(w - k - 1, 0, w)
                                                    : mgr_.make_bv_extract_symbol(w - 1, k, w);
  const NodeIndex rest = add_step_leaf(n, extract, {x, kNoNode, kNoNode}, FreeArguments(0b1), original);
  if (direction == Kind::kBvAsr) {
    replace_by_application(n, mgr_.make_bv_sign_extend_symbol(k, w - k), {rest, kNoNode, kNoNode});
    return;
  }
  const NodeIndex zeros = graph_.add_leaf(mgr_.make_bv_number(0, k));
  if (direction == Kind::kBvLsl) {
    replace_by_application(n, mgr_.make_bv_concat_symbol(w - k, k), {rest, zeros, kNoNode});
  } else {
    replace_by_application(n, mgr_.make_bv_concat_symbol(k, w - k), {zeros, rest, kNoNode});
  }
}

}  // namespace lumo
