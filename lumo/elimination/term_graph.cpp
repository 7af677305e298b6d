#include "lumo/elimination/term_graph.h"

#include <cassert>

#include "lumo/terms/exception.h"

namespace lumo {

namespace {

void check_assertion(TermManager& mgr, const Term* t)
{
  if (t == nullptr) throw Exception("an assertion is a null pointer, but a term was expected");
  const DataType* found = t->get_symbol()->get_output_type();
  if (found->get_manager() != &mgr) {
    throw Exception("an assertion belongs to another term manager, but a term of this one was expected");
  }
  if (!found->is_bool()) {
    throw Exception("an assertion has sort " + found->to_string() + ", but Bool was expected");
  }
}

void check_kept(const TermManager& mgr, const Term* t)
{
  if (t == nullptr) throw Exception("a kept term is a null pointer, but a term was expected");
  if (t->get_sort()->get_manager() != &mgr) {
    throw Exception("a kept term belongs to another term manager, but a term of this one was expected");
  }
}

}  // namespace

TermGraph::TermGraph(TermManager& mgr, std::span<const Term* const> assertions,
                     std::span<const Term* const> kept, const Background* background)
    : mgr_(mgr), background_(background)
{
  for (const Term* t : assertions)
    check_assertion(mgr, t);
  for (const Term* t : kept)
    check_kept(mgr, t);
  add_node(mgr.get_true_symbol(), mgr.make_true());  // index kAssertions
  if (background_ != nullptr) background_->record->terms.push_back(nullptr);
  NodeMap node_of(mgr.get_num_terms());  // maps to kAssertions, which is 0, if a term has no node yet
  for (const Term* t : assertions)
    add_assertion(t, node_of);
  for (const Term* t : kept)
    add_kept(t, node_of);
  background_ = nullptr;
}

void TermGraph::add_assertion(const Term* t, NodeMap& node_of)
{
  add_terms(t, node_of);
  const NodeIndex n = node_of.get(t->get_id());
  if (background_ != nullptr) {
    background_->record->asserted.push_back(n);
    background_->record->num_nodes.push_back(get_num_nodes());
  }
  if (nodes_[n].is_asserted) return;
  nodes_[n].is_asserted = true;
  add_use(n, kAssertions);
  assertions_.push_back(n);
}

void TermGraph::add_kept(const Term* t, NodeMap& node_of)
{
  add_terms(t, node_of);
  kept_.push_back(node_of.get(t->get_id()));
  nodes_[kept_.back()].num_uses += 2;  // not by a node: the exclusive or of the parents does not change
}

void TermGraph::add_terms(const Term* root, NodeMap& node_of)
{
  stack_of_terms_.assign(1, root);
  while (!stack_of_terms_.empty()) {
    const Term* t = stack_of_terms_.back();
    if (node_of.get(t->get_id()) != kAssertions || add_fixed(t, node_of)) {
      stack_of_terms_.pop_back();
      continue;
    }
    const std::size_t height = stack_of_terms_.size();
    Node::Arguments args{kNoNode, kNoNode, kNoNode};
    for (std::size_t i = t->get_num_args(); i-- > 0;) {
      args[i] = node_of.get(t->get_arg(i)->get_id());
      if (args[i] == kAssertions) stack_of_terms_.push_back(t->get_arg(i));
    }
    if (stack_of_terms_.size() != height) continue;
    add_term(t, args, node_of);
    stack_of_terms_.pop_back();
  }
}

void TermGraph::add_term(const Term* t, const Node::Arguments& args, NodeMap& node_of)
{
  const NodeIndex n = add_node(t->get_symbol(), t);
  node_of.set(t->get_id(), n);
  nodes_[n].args = args;
  for (const NodeIndex arg : args) {
    if (arg != kNoNode) add_use(arg, n);
  }
  if (background_ != nullptr) background_->record->terms.push_back(t);
}

bool TermGraph::add_fixed(const Term* t, NodeMap& node_of)
{
  if (background_ == nullptr) return false;
  const Term* form = background_->known->find_fixed(t);
  if (form == nullptr) return false;
  const NodeIndex n = add_node(form->get_symbol(), form);
  node_of.set(t->get_id(), n);
  nodes_[n].kind = Kind::kConstant;
  nodes_[n].is_built = true;
  nodes_[n].num_uses = 2;  // not by a node, as for kept terms
  background_->record->terms.push_back(t);
  return true;
}

NodeIndex TermGraph::add_node(const Symbol* s, const Term* t)
{
  if (nodes_.size() == kNoNode) throw Exception("the assertions contain more than 2^32 - 2 terms");
  nodes_.emplace_back();
  nodes_.back().set_symbol(s, t);
  return get_num_nodes() - 1;
}

NodeIndex TermGraph::add_leaf(const Term* t) { return add_node(t->get_symbol(), t); }

NodeIndex TermGraph::add_application(const Symbol* s, const Node::Arguments& args)
{
  const NodeIndex n = add_node(s, nullptr);
  nodes_[n].args = args;
  for (const NodeIndex arg : args) {
    if (arg != kNoNode) add_use(arg, n);
  }
  return n;
}

void TermGraph::add_use(NodeIndex n, NodeIndex parent)
{
  ++nodes_[n].num_uses;
  nodes_[n].parents ^= parent;
}

void TermGraph::drop_use(NodeIndex n, NodeIndex parent, std::vector<NodeIndex>& freed)
{
  if (!lose_use(n, parent, freed)) return;
  assert(stack_.empty() && "the stack is in use by one walk at a time");
  stack_.push_back(n);
  while (!stack_.empty()) {
    const NodeIndex unused = stack_.back();
    stack_.pop_back();
    for (const NodeIndex arg : nodes_[unused].args) {
      if (arg != kNoNode && lose_use(arg, unused, freed)) stack_.push_back(arg);
    }
  }
}

bool TermGraph::lose_use(NodeIndex n, NodeIndex parent, std::vector<NodeIndex>& freed)
{
  Node& node = nodes_[n];
  --node.num_uses;
  node.parents ^= parent;
  if (is_free(n)) freed.push_back(n);
  return node.num_uses == 0;
}

void TermGraph::become_leaf(NodeIndex n, const Term* t)
{
  nodes_[n].set_symbol(t->get_symbol(), t);
  nodes_[n].args = {kNoNode, kNoNode, kNoNode};
}

void TermGraph::become_application(NodeIndex n, const Symbol* s, const Node::Arguments& args)
{
  nodes_[n].set_symbol(s, nullptr);
  nodes_[n].args = args;
}

const Term* TermGraph::build_slow(NodeIndex n)
{
  stack_.push_back(n);
  while (!stack_.empty()) {
    const NodeIndex next = stack_.back();
    if (nodes_[next].is_built) {
      stack_.pop_back();
    } else {
      visit(next);
    }
  }
  return nodes_[n].term;
}

void TermGraph::visit(NodeIndex n)
{
  Node& node = nodes_[n];
  const std::size_t height = stack_.size();
  for (const NodeIndex arg : node.args) {
    if (arg != kNoNode && !nodes_[arg].is_built) stack_.push_back(arg);
  }
  if (stack_.size() != height) return;
  node.term = make_term(node);
  node.is_built = true;
}

/// Elimination may have removed arguments from an application of a chain and added another one. Without arguments
/// there is no term; a single argument becomes the result itself; three arguments are nested.
const Term* TermGraph::make_term(const Node& node)
{
  std::array<const Term*, kMaxArity> args;
  std::size_t num_args = 0;
  bool is_unchanged = node.term != nullptr;
  for (std::size_t i = 0; i < kMaxArity; ++i) {
    const Term* arg = node.args[i] == kNoNode ? nullptr : nodes_[node.args[i]].term;
    if (arg == nullptr) continue;
    is_unchanged =
        is_unchanged && num_args == i && i < node.term->get_num_args() && node.term->get_arg(i) == arg;
    args[num_args++] = arg;
  }
  const std::size_t arity = node.symbol->get_arity();
  if (is_unchanged && num_args == arity) return node.term;
  if (num_args == arity) return mgr_.make_term(node.symbol, args.data(), num_args);
  if (num_args == 0) return nullptr;
  if (num_args == 1) return args[0];
  return mgr_.make_term(node.symbol, {mgr_.make_term(node.symbol, {args[0], args[1]}), args[2]});
}

}  // namespace lumo
