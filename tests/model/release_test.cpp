// A model when memory runs out: it keeps the definitions that it has taken, and the others are still on the stack.
// The program replaces the allocator by one that fails on demand.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "lumo/numbers/bvnumber.h"
#include "tests/support/failing_allocator.h"

namespace lumo::test {
namespace {

constexpr unsigned long kWidth = 128;
constexpr std::size_t kNumConstants = 5;

/// A model and a stack that defines x0 by a numeral and each further constant by a sum of the one before it
/// and a numeral: all values are wider than a word.
class ModelScene
{
 public:
  ModelScene()
  {
    for (std::size_t i = 0; i < kNumConstants; ++i)
      constants_.push_back(mgr_.make_constant("x" + std::to_string(i), mgr_.make_bv_type(kWidth)));
    const Term* step = mgr_.make_bv_number(BVNumber::pow2(70), kWidth);
    for (std::size_t i = kNumConstants; i-- > 1;) {
      defs_.emplace(constants_[i], mgr_.make_term(mgr_.make_bv_add_symbol(kWidth), {constants_[i - 1], step}),
                    true);
    }
    defs_.emplace(constants_[0], step, true);
    product_ = mgr_.make_term(mgr_.make_bv_mul_symbol(kWidth), {constants_[1], constants_.back()});
  }

  void run()
  {
    model_.replay(defs_);
    (void)model_.get_value(product_);
  }
  void expect_model()
  {
    EXPECT_TRUE(defs_.empty());
    for (std::size_t i = 0; i < kNumConstants; ++i)
      EXPECT_EQ(model_.get_value(constants_[i]), make_multiple(BVNumber::pow2(70), i + 1)) << i;
    EXPECT_EQ(model_.get_value(product_), mgr_.make_bv_number(0, kWidth)) << "10 * 2^140 is 0 modulo 2^128";
  }
  /// Expects that the definitions that are no longer on the stack are in the model, and the others are not.
  void expect_consistent()
  {
    const std::size_t num_taken = kNumConstants - defs_.size();
    for (std::size_t i = 0; i < kNumConstants; ++i) {
      const Term* expected =
          i < num_taken ? make_multiple(BVNumber::pow2(70), i + 1) : mgr_.make_bv_number(0, kWidth);
      EXPECT_EQ(model_.get_value(constants_[i]), expected) << i << " of " << num_taken;
    }
  }

 private:
  const Term* make_multiple(const QNumber& n, std::size_t times)
  {
    return mgr_.make_bv_number(n * QNumber(times), kWidth);
  }

  TermManager mgr_;
  std::vector<const Term*> constants_;
  const Term* product_ = nullptr;
  ModelStore model_{&mgr_};
  ModelStore::DefinitionStack defs_;
};

TEST(FailingAllocation, LeavesAModelWithWhatItHasTakenAndTheRestOnTheStack)
{
  const auto make = [] { return std::make_unique<ModelScene>(); };
  const auto run = [](ModelScene& scene) { scene.run(); };
  const long num_failures = fail_everywhere(make, run, [](ModelScene& scene) { scene.expect_consistent(); });
  EXPECT_GT(num_failures, 20);
}

TEST(FailingAllocation, DoesNotKeepAModelFromBeingCompletedLater)
{
  const auto make = [] { return std::make_unique<ModelScene>(); };
  const auto run = [](ModelScene& scene) { scene.run(); };
  const long num_failures = fail_everywhere(make, run, [&](ModelScene& scene) {
    scene.run();
    scene.expect_model();
  });
  EXPECT_GT(num_failures, 20);
}

// -----------------------------------------------------------------------------------------------------------
// The memory of models

/// The bytes that a model allocates if it defines the newest term of a manager and evaluates an application to it.
std::size_t measure_new_model(std::size_t num_other_terms)
{
  TermManager mgr;
  for (std::size_t i = 0; i < num_other_terms; ++i)
    mgr.make_fresh_constant("c", mgr.make_bool_type());
  const Term* x = mgr.make_fresh_constant("c", mgr.make_bv_type(8));
  const Term* negated = mgr.make_term(mgr.make_bv_neg_symbol(8), {x});
  const Term* value = mgr.make_bv_number(5, 8);
  (void)mgr.make_bv_number(251, 8);
  const std::size_t before = num_bytes;
  ModelStore model(&mgr);
  model.set_value(x, value);
  EXPECT_EQ(model.get_value(negated), mgr.make_bv_number(251, 8));
  return num_bytes - before;
}

TEST(ModelMemory, DoesNotGrowWithTheTermsThatTheModelDoesNotMeet)
{
  const std::size_t alone = measure_new_model(64);
  EXPECT_EQ(measure_new_model(100000), alone);
  EXPECT_LT(alone, 10000U);
}

TEST(ModelMemory, OfTheThousandthModelIsThatOfTheFirst)
{
  TermManager mgr;
  const DataType* type = mgr.make_bv_type(128);
  std::vector<const Term*> constants;
  constants.reserve(100);
  for (int i = 0; i < 100; ++i)
    constants.push_back(mgr.make_fresh_constant("c", type));
  const Term* sum = constants[0];
  for (const Term* constant : constants)
    sum = mgr.make_term(mgr.make_bv_mul_symbol(128), {sum, constant});
  const TermManager::Mark mark = mgr.mark();
  long num_blocks = 0;
  for (unsigned long round = 0; round < 1000; ++round) {
    {
      ModelStore model(&mgr);
      for (std::size_t i = 0; i < constants.size(); ++i)
        model.set_value(constants[i], mgr.make_bv_number(BVNumber::pow2(70) + QNumber(2 * i + round), 128));
      (void)model.get_value(sum);
    }
    mgr.release(mark);
    if (round == 0) num_blocks = num_live_blocks;
    ASSERT_EQ(num_live_blocks, num_blocks) << round;
  }
}

}  // namespace
}  // namespace lumo::test
