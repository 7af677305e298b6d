#include "tests/elimination/conversation_judge.h"

#include <stdexcept>

#include "lumo/elimination/extend.h"

namespace lumo::test {

void Conversation::push()
{
  eliminator_.push();
  sent_.resize(eliminator_.get_num_levels());  // without the additions for assumptions
  sent_.emplace_back();
}

void Conversation::pop(std::size_t num_levels)
{
  eliminator_.pop(num_levels);
  sent_.resize(eliminator_.get_num_levels() + 1);
}

ConversationQuery Conversation::query(const Terms& assumptions)
{
  sent_.resize(eliminator_.get_num_levels() + 1);
  IncrementalEliminator::Query query = eliminator_.query(assumptions);
  sent_.emplace_back();
  std::size_t level = 0;
  for (const IncrementalEliminator::Addition& addition : query.additions) {
    if (addition.level < level || addition.level >= sent_.size() - (assumptions.empty() ? 1U : 0U))
      throw std::logic_error("an addition is on a wrong level");
    level = addition.level;
    sent_[level].push_back(addition.term);
  }
  additions_ = std::move(query.additions);
  const auto asserted = eliminator_.get_assertions();
  ConversationQuery result{Terms(asserted.begin(), asserted.end()), assumptions, {}, query.assumptions};
  for (const Terms& terms : sent_)
    result.sent.insert(result.sent.end(), terms.begin(), terms.end());
  return result;
}

namespace {

/// Gives the constants of all steps the values of their applications.
void define_steps(const Trail& trail, ModelStore& model)
{
  // Each round defines at least the steps that need only those of the rounds before it.
  for (std::size_t round = 0; round < trail.steps.size(); ++round) {
    for (const Step& step : trail.steps)
      model.set_value(step.constant, model.get_value(step.application));
  }
}

}  // namespace

std::string judge_query(TermManager& mgr, const IncrementalEliminator& eliminator,
                        const ConversationQuery& query)
{
  const Terms originals = join(query.originals, query.assumptions);
  const Terms sent = join(query.sent, query.assumption_forms);
  bool has_model = false;
  const Terms constants = collect_constants(mgr, originals);
  for (unsigned long bits = 0; bits < count_assignments(constants) && !has_model; ++bits) {
    ModelStore model = make_model(mgr, constants, bits);
    has_model = holds(mgr, originals, model);
    if (!has_model) continue;
    define_steps(eliminator.get_trail(), model);
    if (!holds(mgr, originals, model) || !holds(mgr, sent, model)) return "what was sent does not follow";
  }
  bool sent_has_model = false;
  const Terms remaining = collect_constants(mgr, sent);
  for (unsigned long bits = 0; bits < count_assignments(remaining); ++bits) {
    ModelStore model = make_model(mgr, remaining, bits);
    if (!holds(mgr, sent, model)) continue;
    sent_has_model = true;
    const std::string given = describe(model, remaining);
    eliminator.extend(model);
    if (!holds(mgr, originals, model)) return "the model" + given + " becomes" + describe(model, constants);
  }
  if (has_model != sent_has_model) return has_model ? "a model is lost" : "there should be no model";
  return {};
}

}  // namespace lumo::test
