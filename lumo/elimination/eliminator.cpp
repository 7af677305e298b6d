#include "lumo/elimination/eliminator.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <utility>

#include "lumo/elimination/rules.h"

namespace lumo {

Eliminator::Eliminator(TermManager& mgr, std::span<const Term* const> assertions,
                       const EliminationOptions& options, const Background* background)
    : mgr_(mgr),
      prefix_(options.prefix),
      graph_(mgr, assertions, options.kept, background),
      chains_(graph_.get_num_nodes()),
      keeps_owners_(background != nullptr)
{}

void Eliminator::apply_rules()
{
  prepare_nodes();
  while (!work_.empty()) {
    const NodeIndex n = work_.back();
    work_.pop_back();
    if (graph_.is_free(n)) visit(n);
  }
}

Elimination Eliminator::run()
{
  apply_rules();
  Elimination result;
  result.assertions = build_assertions();
  result.kept = build_kept();
  result.trail.steps = build_steps();
  result.trail.facts = std::move(facts_);
  return result;
}

namespace {

/// The first assertion that contains the node.
std::size_t find_assertion(const GraphRecord& record, NodeIndex n)
{
  const auto& ends = record.num_nodes;
  return static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), n) - ends.begin());
}

}  // namespace

Batch Eliminator::run_batch(const GraphRecord& record)
{
  apply_rules();
  Batch batch;
  build_forms(record, batch);
  batch.kept = build_kept();
  batch.steps = build_steps();
  for (const NodeIndex owner : step_owners_)
    batch.step_assertions.push_back(find_assertion(record, owner));
  for (std::size_t i = 0; i < facts_.size(); ++i) {
    if (fact_owners_[i] == kAssertions) continue;
    batch.facts.push_back(facts_[i]);
    batch.fact_assertions.push_back(find_assertion(record, fact_owners_[i]));
  }
  return batch;
}

void Eliminator::build_forms(const GraphRecord& record, Batch& batch)
{
  std::vector<bool> is_done(graph_.get_num_nodes());
  for (std::size_t i = 0; i < record.asserted.size(); ++i) {
    const NodeIndex n = record.asserted[i];
    const Term* form = nullptr;
    if (is_done[n]) {
      // An assertion before it says the same.
    } else if (graph_.is_free(n)) {
      batch.facts.push_back(graph_[n].term);
      batch.fact_assertions.push_back(i);
    } else {
      form = graph_.build(n);
    }
    is_done[n] = true;
    batch.forms.push_back(form != mgr_.make_true() ? form : nullptr);
  }
}

const Term* Eliminator::find_form(NodeIndex n)
{
  // Regrouping has changed the meaning of the others in a chain.
  const bool has_meaning = !chains_.contains(n) || chains_.find(n).root == n;
  return has_meaning && graph_[n].is_built ? graph_[n].term : nullptr;
}

void Eliminator::visit(NodeIndex n)
{
  const NodeIndex parent = graph_[n].parents;
  if (parent == kAssertions) {
    add_fact(graph_[n].term, kAssertions);
    return;
  }
  if (chains_.contains(parent)) {
    visit_chain_leaf(n, parent);
    return;
  }
  const EliminationRule& rule = get_elimination_rule(graph_.get_kind(parent));
  switch (rule.need) {
    case FreeNeed::kNever:
      return;
    case FreeNeed::kOne:
      eliminate_application(parent, get_free(parent));
      return;
    case FreeNeed::kAll:
    case FreeNeed::kAllChain:
      break;
    case FreeNeed::kTwo:
      visit_ite(parent);
      return;
    case FreeNeed::kGuarded:
      visit_order_atom(parent);
      return;
  }
  if (const FreeArguments free = get_free(parent); free.count() == graph_[parent].symbol->get_arity()) {
    eliminate_application(parent, free);
  } else if (rule.rewrite == NumeralRewrite::kShift) {
    rewrite_shift(parent);
  } else if (rule.rewrite == NumeralRewrite::kFactor) {
    rewrite_product(parent);
  }
}

FreeArguments Eliminator::get_free(NodeIndex n)
{
  FreeArguments free;
  for (std::size_t i = 0; i < kMaxArity; ++i)
    free[i] = graph_.is_free(graph_[n].args[i]);
  return free;
}

// --------------------------------------------------------------------------------------------------------
// Steps

void Eliminator::eliminate_application(NodeIndex n, FreeArguments free)
{
  const Node& node = graph_[n];
  add_step(n, node.symbol, node.args, free, node.term);
  replace_by_leaf(n, steps_.back().constant);
}

void Eliminator::add_fact(const Term* constant, NodeIndex owner)
{
  facts_.push_back(constant);
  if (keeps_owners_) fact_owners_.push_back(get_owner(owner));
}

void Eliminator::add_step(NodeIndex owner, const Symbol* s, const Node::Arguments& args, FreeArguments free,
                          const Term* original)
{
  const Term* constant = mgr_.make_fresh_constant(prefix_, s->get_output_type());
  // Leaves never change, so an application to leaves alone can be built now.
  const bool is_final = std::all_of(args.begin(), args.end(),
                                    [this](NodeIndex n) { return n == kNoNode || graph_.is_leaf(n); });
  const Term* application = is_final ? build_application(s, args, original) : nullptr;
  if (!is_final) pending_.push_back({steps_.size(), s, args});
  steps_.emplace_back(constant, application, free, original);
  if (keeps_owners_) step_owners_.push_back(get_owner(owner));
}

NodeIndex Eliminator::get_owner(NodeIndex n) const
{
  const auto found = owners_.find(n);
  return found == owners_.end() ? n : found->second;
}

NodeIndex Eliminator::add_step_leaf(NodeIndex owner, const Symbol* s, const Node::Arguments& args,
                                    FreeArguments free, const Term* original)
{
  add_step(owner, s, args, free, original);
  return graph_.add_leaf(steps_.back().constant);
}

void Eliminator::replace_by_leaf(NodeIndex n, const Term* t)
{
  const Node::Arguments args = graph_[n].args;
  graph_.become_leaf(n, t);
  for (const NodeIndex arg : args) {
    if (arg != kNoNode) graph_.drop_use(arg, n, work_);
  }
  if (graph_.is_free(n)) work_.push_back(n);
}

void Eliminator::replace_by_application(NodeIndex n, const Symbol* s, const Node::Arguments& args)
{
  const Node::Arguments old_args = graph_[n].args;
  graph_.become_application(n, s, args);
  for (const NodeIndex arg : args) {
    if (arg != kNoNode) graph_.add_use(arg, n);
  }
  for (const NodeIndex arg : old_args) {
    if (arg != kNoNode) graph_.drop_use(arg, n, work_);
  }
}

// --------------------------------------------------------------------------------------------------------
// Chains

bool Eliminator::is_chain_operator(NodeIndex n)
{
  const Node& node = graph_[n];
  const Kind kind = node.kind;
  if (!is_operator(kind) || get_elimination_rule(kind).need != FreeNeed::kAllChain) return false;
  // There is a separate rule for a factor that is a numeral.
  return kind != Kind::kBvMul || (!graph_.is_numeral(node.args[0]) && !graph_.is_numeral(node.args[1]));
}

/// Processes parents before their arguments, so that an application knows the chain around it. Constants are taken
/// from the end of the work list, so the deepest ones come first.
void Eliminator::prepare_nodes()
{
  for (NodeIndex n = graph_.get_num_nodes() - 1; n > kAssertions; --n) {
    Node& node = graph_[n];
    node.is_exclusive = node.num_uses <= 1;
    if (graph_.is_free(n)) work_.push_back(n);
    if (!is_chain_operator(n)) continue;
    chains_.start(n);
    join_chain(n);
  }
}

void Eliminator::join_chain(NodeIndex n)
{
  const Node& node = graph_[n];
  if (!node.is_exclusive) return;
  const NodeIndex parent = node.parents;
  const bool is_part = parent == kAssertions
                           ? node.symbol->get_kind() == Kind::kAnd
                           : chains_.contains(parent) && graph_[parent].symbol == node.symbol;
  if (is_part) chains_.unite(n, parent);
}

void Eliminator::visit_chain_leaf(NodeIndex n, NodeIndex parent)
{
  Chain& chain = chains_.find(parent);
  assert(chain.pending != n && "a constant waits in the work list once for each time that it becomes free");
  if (chain.root == kAssertions) {
    add_fact(graph_[n].term, parent);
    remove_leaf(n);
  } else if (chain.pending == kNoNode) {
    chain.pending = n;
  } else {
    merge_leaves(chain, chain.pending, n);
  }
}

void Eliminator::remove_leaf(NodeIndex n)
{
  Node& leaf = graph_[n];
  Node::Arguments& args = graph_[leaf.parents].args;
  *std::find(args.begin(), args.end(), n) = kNoNode;
  leaf.num_uses = 0;
  leaf.parents = 0;
}

/// f(.. a .. b ..) is f(f(.. ..), f(a, b)): f(a, b) becomes a step. Its constant joins the chain as an argument of
/// the root, which temporarily has three arguments, or it replaces the whole chain.
void Eliminator::merge_leaves(Chain& chain, NodeIndex a, NodeIndex b)
{
  const NodeIndex root = chain.root;
  remove_leaf(a);
  remove_leaf(b);
  --chain.num_leaves;
  const Symbol* s = graph_[root].symbol;
  const Node::Arguments args{a, b, kNoNode};
  if (chain.num_leaves == 1) {
    add_step(root, s, args, FreeArguments(0b11), graph_[root].term);
    replace_by_leaf(root, steps_.back().constant);
    return;
  }
  const NodeIndex merged = add_step_leaf(root, s, args, FreeArguments(0b11), nullptr);
  graph_.add_use(merged, root);
  assert(graph_[root].args[2] == kNoNode && "a pending leaf is the only one that was added");
  graph_[root].args[2] = merged;
  chain.pending = merged;
}

// --------------------------------------------------------------------------------------------------------
// Results

const Term* Eliminator::build_application(const Symbol* s, const Node::Arguments& args, const Term* original)
{
  const std::size_t num_args = s->get_arity();
  std::array<const Term*, kMaxArity> terms{};
  bool is_original = original != nullptr && original->get_symbol() == s;
  for (std::size_t i = 0; i < num_args; ++i) {
    terms[i] = graph_.build(args[i]);
    is_original = is_original && original->get_arg(i) == terms[i];
  }
  return is_original ? original : mgr_.make_term(s, terms.data(), num_args);
}

std::vector<Step> Eliminator::build_steps()
{
  for (const PendingApplication& pending : pending_) {
    Step& step = steps_[pending.step];
    step.application = build_application(pending.symbol, pending.args, step.original);
  }
  std::vector<Step> steps;
  steps.reserve(steps_.size());
  for (std::size_t i = 0; i < steps_.size(); ++i)
    steps.push_back(steps_[i]);
  return steps;
}

std::vector<const Term*> Eliminator::build_assertions()
{
  std::vector<const Term*> assertions;
  for (const NodeIndex n : graph_.get_assertions()) {
    if (graph_.is_free(n)) continue;  // a fact
    const Term* t = graph_.build(n);
    if (t != nullptr && t->get_symbol() != mgr_.get_true_symbol()) assertions.push_back(t);
  }
  return assertions;
}

std::vector<const Term*> Eliminator::build_kept()
{
  std::vector<const Term*> kept;
  kept.reserve(graph_.get_kept().size());
  for (const NodeIndex n : graph_.get_kept())
    kept.push_back(graph_.build(n));
  return kept;
}

}  // namespace lumo
