// The evaluator's walk: each shared term once, at any depth, and against the fold of every operator.

#include "lumo/model/evaluator.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "lumo/terms/fold.h"
#include "tests/support/number.h"
#include "tests/support/random.h"
#include "tests/support/small_stack.h"

namespace lumo::test {

namespace {

constexpr int kDepth = 1000000;

void define(ModelStore& model, const Term* term, const Term* value)
{
  ModelStore::DefinitionStack defs;
  defs.emplace(term, value, true);
  model.replay(defs);
}

}  // namespace

TEST(Evaluator, WalksAMillionLevelsWithoutRecursion)
{
  run_on_small_stack([] {
    TermManager mgr;
    const Term* x = mgr.make_constant("x", mgr.make_bv_type(32));
    const Term* t = x;
    for (int i = 0; i < kDepth; ++i)
      t = mgr.make_term(mgr.make_bv_add_symbol(32), {t, x});
    ModelStore model(&mgr);
    EXPECT_EQ(model.get_value(t), mgr.make_bv_number(0, 32));
    define(model, x, mgr.make_bv_number(3, 32));
    EXPECT_EQ(model.get_value(t), mgr.make_bv_number(3 * (kDepth + 1), 32));
  });
}

TEST(Evaluator, WalksAMillionLevelsOnTheRightWithoutRecursion)
{
  run_on_small_stack([] {
    TermManager mgr;
    const Term* x = mgr.make_constant("x", mgr.make_bv_type(1));
    const Term* p = mgr.make_constant("p", mgr.make_bool_type());
    const Term* t = mgr.make_bv_number(1, 1);
    for (int i = 0; i < kDepth; ++i)
      t = mgr.make_term(mgr.make_ite_symbol(mgr.make_bv_type(1)), {p, x, t});
    ModelStore model(&mgr);
    EXPECT_EQ(model.get_value(t), mgr.make_bv_number(1, 1));
    define(model, p, mgr.make_true());
    EXPECT_EQ(model.get_value(t), mgr.make_bv_number(0, 1));
  });
}

TEST(Evaluator, ComputesASharedTermOnce)
{
  // The tree of this graph has 2^10000 leaves: only a walk that visits shared terms once terminates.
  constexpr int num_levels = 10000;
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(16));
  const Term* t = x;
  for (int i = 0; i < num_levels; ++i)
    t = mgr.make_term(i % 2 == 0 ? mgr.make_bv_xor_symbol(16) : mgr.make_bv_sub_symbol(16), {t, t});
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(16), {x, x});
  for (int i = 0; i < num_levels; ++i)
    sum = mgr.make_term(mgr.make_bv_or_symbol(16),
                        {sum, mgr.make_term(mgr.make_bv_and_symbol(16), {sum, sum})});
  ModelStore model(&mgr);
  define(model, x, mgr.make_bv_number(5, 16));
  EXPECT_EQ(model.get_value(t), mgr.make_bv_number(0, 16));
  EXPECT_EQ(model.get_value(sum), mgr.make_bv_number(10, 16));
}

TEST(Evaluator, KeepsGivenValuesInTheFormThatTheyCome)
{
  TermManager mgr;
  Evaluator evaluator(&mgr);
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Term* sum = mgr.make_term(mgr.make_bv_add_symbol(8), {x, x});
  evaluator.set_value(x, in_big_form(QNumber(200)));
  EXPECT_EQ(evaluator.evaluate(x), QNumber(200));
  EXPECT_EQ(evaluator.evaluate(sum), QNumber(144));
  evaluator.set_value(x, QNumber(200));
  EXPECT_EQ(evaluator.evaluate(sum), QNumber(144));
  evaluator.set_value(x, QNumber(1));
  EXPECT_EQ(evaluator.evaluate(sum), QNumber(2));
}

TEST(Evaluator, AgreesWithAWalkInTheOrderOfMaking)
{
  Random random;
  SCOPED_TRACE(random);
  constexpr unsigned long width = 16;
  const QNumber limit = BVNumber::pow2(width);
  TermManager mgr;
  std::vector<const Term*> terms;
  for (const std::string name : {"x", "y", "z"})
    terms.push_back(mgr.make_constant(name, mgr.make_bv_type(width)));
  const std::vector<const Symbol*> symbols = {
      mgr.make_bv_add_symbol(width), mgr.make_bv_mul_symbol(width), mgr.make_bv_udiv_symbol(width),
      mgr.make_bv_xor_symbol(width), mgr.make_bv_lsl_symbol(width),
  };
  for (int i = 0; i < 5000; ++i) {
    const auto pick = [&] { return terms[random.index(terms.size())]; };
    terms.push_back(mgr.make_term(random.pick(symbols), {pick(), pick()}));
  }

  Evaluator evaluator(&mgr);
  std::vector<QNumber> expected(mgr.get_num_terms());
  for (int round = 0; round < 5; ++round) {
    for (std::size_t i = 0; i < 3; ++i) {
      if (round != 0 && random.flip()) continue;
      expected[terms[i]->get_id()] = QNumber(static_cast<long>(random.pattern(width)));
      evaluator.set_value(terms[i], expected[terms[i]->get_id()]);
    }
    for (std::size_t i = 3; i < terms.size(); ++i) {
      const Term* t = terms[i];
      const QNumber* args[] = {&expected[t->get_arg(0)->get_id()], &expected[t->get_arg(1)->get_id()]};
      expected[t->get_id()] = fold(as_operator(t->get_symbol()), args);
    }
    for (int i = 0; i < 500; ++i) {
      const Term* t = terms[random.index(terms.size())];
      ASSERT_EQ(evaluator.evaluate(t), expected[t->get_id()])
          << "round " << round << ", term " << t->get_id();
      ASSERT_TRUE(evaluator.evaluate(t) < limit);
    }
  }
}

}  // namespace lumo::test
