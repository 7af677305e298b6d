#include "lumo/elimination/term_graph.h"

#include <algorithm>
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

}  // namespace

TermGraph::TermGraph(TermManager& mgr, std::span<const Term* const> assertions) : mgr_(mgr)
{
  std::size_t num_ids = 0;
  for (const Term* t : assertions) {
    check_assertion(mgr, t);
    num_ids = std::max(num_ids, t->get_id() + 1);
  }
  add_node(mgr.get_true_symbol(), mgr.make_true());  // the place of kAssertions
  std::vector<NodeIndex> node_of(num_ids, kAssertions);
  for (const Term* t : assertions)
    add_assertion(t, node_of);
  for (Node& node : nodes_)
    node.is_exclusive = node.num_uses <= 1;
}

void TermGraph::add_assertion(const Term* t, std::vector<NodeIndex>& node_of)
{
  add_terms(t, node_of);
  const NodeIndex n = node_of[t->get_id()];
  if (nodes_[n].is_asserted) return;
  nodes_[n].is_asserted = true;
  add_use(n, kAssertions);
  assertions_.push_back(n);
}

void TermGraph::add_terms(const Term* root, std::vector<NodeIndex>& node_of)
{
  std::vector<const Term*> stack{root};
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (node_of[t->get_id()] != kAssertions) {
      stack.pop_back();
      continue;
    }
    const std::size_t height = stack.size();
    const std::size_t num_args = t->get_num_args();
    for (std::size_t i = num_args; i-- > 0;) {
      if (node_of[t->get_arg(i)->get_id()] == kAssertions) stack.push_back(t->get_arg(i));
    }
    if (stack.size() != height) continue;
    const NodeIndex n = add_node(t->get_symbol(), t);
    node_of[t->get_id()] = n;
    for (std::size_t i = 0; i < num_args; ++i) {
      nodes_[n].args[i] = node_of[t->get_arg(i)->get_id()];
      add_use(nodes_[n].args[i], n);
    }
  }
}

NodeIndex TermGraph::add_node(const Symbol* s, const Term* t)
{
  if (nodes_.size() == kNoNode) throw Exception("the assertions contain more than 2^32 - 2 terms");
  nodes_.push_back({s, t});
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
  // Pairs of a node that loses a use and the parent that it loses
  assert(stack_.empty() && "the stack is in use by one walk at a time");
  stack_ = {n, parent};
  while (!stack_.empty()) {
    const NodeIndex lost = stack_.back();
    stack_.pop_back();
    const NodeIndex child = stack_.back();
    stack_.pop_back();
    Node& node = nodes_[child];
    --node.num_uses;
    node.parents ^= lost;
    if (is_free(child)) freed.push_back(child);
    if (node.num_uses != 0) continue;
    for (const NodeIndex arg : node.args) {
      if (arg != kNoNode) stack_.insert(stack_.end(), {arg, child});
    }
  }
}

void TermGraph::become_leaf(NodeIndex n, const Term* t)
{
  nodes_[n].symbol = t->get_symbol();
  nodes_[n].term = t;
  nodes_[n].args = {kNoNode, kNoNode, kNoNode};
}

void TermGraph::become_application(NodeIndex n, const Symbol* s, const Node::Arguments& args)
{
  nodes_[n].symbol = s;
  nodes_[n].term = nullptr;
  nodes_[n].args = args;
}

const Term* TermGraph::build(NodeIndex n)
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
  if (is_operator(node.symbol->get_kind())) node.term = make_term(node);
  node.is_built = true;
}

/// An application of a chain may have lost arguments, and have got another one in place of them: none are no
/// term, one stands for itself, three are nested.
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
