// Long random conversations. Z3 judges each query, and every model that it finds is extended and evaluated.

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <z3++.h>

#include "lumo/elimination/extend.h"
#include "tests/elimination/conversation_judge.h"
#include "tests/support/random.h"
#include "tests/support/random_formula.h"
#include "tests/support/z3_terms.h"

namespace lumo::test {
namespace {

/// Compares the asserted terms with the sent terms, by Z3.
class ConversationJudge
{
 public:
  explicit ConversationJudge(TermManager& mgr) : mgr_(mgr), terms_(mgr, z3_) {}

  /// Empty if the query is correct, otherwise the mistake.
  std::string judge(const IncrementalEliminator& eliminator, const ConversationQuery& query)
  {
    const Terms originals = join(query.originals, query.assumptions);
    const Terms sent = join(query.sent, query.assumption_forms);
    const z3::check_result expected = check(originals);
    const z3::check_result found = check(sent);
    if (expected == z3::unknown || found == z3::unknown) {
      ++num_unknown;
      return {};
    }
    if (expected != found) return expected == z3::sat ? "a model is lost" : "there should be no model";
    if (found != z3::sat) {
      ++num_unsat;
      return {};
    }
    ++num_sat;
    ModelStore model(&mgr_);
    for (const Term* constant : collect_constants(mgr_, sent))
      model.set_value(constant, read_value(mgr_, model_->eval(terms_.make(constant), true)));
    eliminator.extend(model);
    const std::size_t violated = find_violated(mgr_, originals, model);
    return violated == originals.size() ? "" : "the extended model violates " + std::to_string(violated);
  }

  std::size_t num_sat = 0;
  std::size_t num_unsat = 0;
  std::size_t num_unknown = 0;

 private:
  z3::check_result check(const Terms& terms)
  {
    z3::solver solver = z3::tactic(z3_, "qfbv").mk_solver();
    z3::params params(z3_);
    params.set("timeout", 5000U);
    solver.set(params);
    solver.add(terms_.make_conjunction(terms));
    const z3::check_result result = solver.check();
    if (result == z3::sat) model_.emplace(solver.get_model());
    return result;
  }

  TermManager& mgr_;
  z3::context z3_;
  Z3Terms terms_;
  std::optional<z3::model> model_;
};

/// Assertions that share terms and constants: those of several formulas, and comparisons between their constants.
Terms make_pool(TermManager& mgr, Random& random)
{
  const FormulaLimits limits{.widths = {1, 2, 3, 4}, .max_applications = 8};
  const RandomFormula formula = make_random_formula(mgr, random, limits);
  Terms pool = formula.assertions;
  for (const Term* constant : formula.constants) {
    const DataType* sort = constant->get_sort();
    const Term* other = random.pick(formula.constants);
    if (sort->is_bool()) {
      pool.push_back(random.flip() ? constant : mgr.make_term(mgr.make_not_symbol(), {constant}));
    } else if (other->get_sort() == sort) {
      const unsigned long w = sort->get_width();
      pool.push_back(mgr.make_term(mgr.make_bv_ule_symbol(w), {constant, other}));
    }
  }
  return pool;
}

const Term* make_literal(TermManager& mgr, Random& random, const Terms& pool)
{
  const Term* t = random.pick(pool);
  return random.flip() ? t : mgr.make_term(mgr.make_not_symbol(), {t});
}

constexpr std::size_t kNumConversationShares = 10;

class RandomConversations : public testing::TestWithParam<std::size_t>
{};

TEST_P(RandomConversations, HaveRightAnswersAndModels)
{
  Random random(GetParam());
  SCOPED_TRACE(random);
  std::size_t num_sat = 0;
  std::size_t num_unsat = 0;
  std::size_t num_unknown = 0;
  std::size_t num_restored = 0;
  for (std::size_t round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    TermManager mgr;
    const Terms pool = make_pool(mgr, random);
    ConversationJudge judge(mgr);
    Conversation conversation(mgr);
    for (std::size_t command = 0; command < 40; ++command) {
      switch (random.index(8)) {
        case 0:
        case 1:
          conversation.push();
          break;
        case 2:
          if (conversation.get_num_levels() != 0)
            conversation.pop(1 + random.index(conversation.get_num_levels()));
          break;
        case 3:
        case 4: {
          Terms assumptions;
          while (random.one_in(3))
            assumptions.push_back(make_literal(mgr, random, pool));
          const ConversationQuery query = conversation.query(assumptions);
          ASSERT_EQ(judge.judge(conversation.get_eliminator(), query), "") << "at command " << command;
          num_restored += conversation.get_eliminator().get_counts().restored;
          break;
        }
        default:
          conversation.add_assertion(random.pick(pool));
      }
    }
    num_sat += judge.num_sat;
    num_unsat += judge.num_unsat;
    num_unknown += judge.num_unknown;
  }
  EXPECT_GT(num_sat, 100U);
  EXPECT_GT(num_unsat, 20U);
  EXPECT_LT(num_unknown, 10U);
  EXPECT_GT(num_restored, 20U);
}

INSTANTIATE_TEST_SUITE_P(Share, RandomConversations, testing::Range(std::size_t{0}, kNumConversationShares));

}  // namespace
}  // namespace lumo::test
