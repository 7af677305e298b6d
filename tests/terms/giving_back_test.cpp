// Marks, release and clear. The judge is a manager that never made the terms that the other one has released.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/term_manager.h"
#include "tests/support/numbered.h"
#include "tests/support/random.h"
#include "tests/support/refusal.h"

namespace lumo::test {
namespace {

constexpr unsigned long kWidth = 100;

/// Makes random terms of all sorts, the same for the same stream.
class Maker
{
 public:
  Maker(TermManager& mgr, std::uint64_t stream) : mgr_(mgr), random_(stream) {}

  void make(std::size_t num_steps)
  {
    for (std::size_t i = 0; i < num_steps; ++i)
      made_.push_back(make_one());
  }
  [[nodiscard]] const std::vector<const Term*>& get_made() const { return made_; }

 private:
  const Term* any() { return made_.empty() ? make_leaf() : made_[random_.index(made_.size())]; }
  const Term* make_leaf()
  {
    const DataType* type = mgr_.make_bv_type(kWidth);
    switch (random_.index(4)) {
      case 0:
        return mgr_.make_bv_number(BVNumber::pow2(random_.index(100)) + QNumber(random_.index(50)), kWidth);
      case 1:
        return mgr_.make_fresh_constant(random_.flip() ? "u" : "a prefix that is long enough to need memory",
                                        type);
      case 2:
        return mgr_.make_constant(numbered("u!", random_.index(300)), type);
      default:
        return mgr_.make_constant(numbered("x", random_.index(300)), type);
    }
  }
  const Term* make_one()
  {
    if (random_.index(3) == 0) return make_leaf();
    const std::vector<const Symbol*> symbols = {mgr_.make_bv_add_symbol(kWidth),
                                                mgr_.make_bv_mul_symbol(kWidth),
                                                mgr_.make_bv_rotate_left_symbol(random_.index(60), kWidth)};
    const Symbol* s = symbols[random_.index(symbols.size())];
    const Term* a = any();
    return s->get_arity() == 1 ? mgr_.make_term(s, {a}) : mgr_.make_term(s, {a, any()});
  }

  TermManager& mgr_;
  Random random_;
  std::vector<const Term*> made_;
};

/// Expects that two managers made the same terms with the same ids.
void expect_same(const std::vector<const Term*>& found, const std::vector<const Term*>& expected)
{
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    ASSERT_EQ(found[i]->get_id(), expected[i]->get_id()) << i;
    ASSERT_EQ(found[i]->get_symbol()->get_name(), expected[i]->get_symbol()->get_name()) << i;
  }
}

}  // namespace

TEST(GivingBack, LeavesAManagerAsIfTheTermsHadNotBeenMade)
{
  for (std::uint64_t stream = 0; stream < 20; ++stream) {
    TermManager mgr;
    Maker before(mgr, 100 + stream);
    before.make(stream * 40);
    const TermManager::Mark mark = mgr.mark();
    const std::size_t num_terms = mgr.get_num_terms();
    for (std::uint64_t round = 0; round < 4; ++round) {
      Maker(mgr, 1000 * stream + round).make(round * 500);
      mgr.release(mark);
      ASSERT_EQ(mgr.get_num_terms(), num_terms);
    }
    Maker after(mgr, 200 + stream);
    after.make(500);

    TermManager reference;
    Maker reference_before(reference, 100 + stream);
    reference_before.make(stream * 40);
    Maker reference_after(reference, 200 + stream);
    reference_after.make(500);
    expect_same(before.get_made(), reference_before.get_made());
    expect_same(after.get_made(), reference_after.get_made());
    EXPECT_EQ(mgr.get_num_terms(), reference.get_num_terms());
  }
}

TEST(GivingBack, KeepsOlderTermsFindable)
{
  TermManager mgr;
  Maker before(mgr, 1);
  before.make(2000);
  const TermManager::Mark mark = mgr.mark();
  Maker(mgr, 2).make(3000);
  mgr.release(mark);
  for (const Term* t : before.get_made()) {
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      args.push_back(t->get_arg(i));
    ASSERT_EQ(mgr.make_term(t->get_symbol(), args), t);
    QNumber value;
    if (!mgr.is_number(t->get_symbol(), &value)) continue;
    ASSERT_EQ(mgr.make_bv_number(value, kWidth), t);
  }
}

TEST(GivingBack, MarksNest)
{
  TermManager mgr;
  const TermManager::Mark outer = mgr.mark();
  mgr.make_constant("x", mgr.make_bool_type());
  const TermManager::Mark middle = mgr.mark();
  mgr.make_constant("y", mgr.make_bool_type());
  const TermManager::Mark inner = mgr.mark();
  mgr.make_constant("z", mgr.make_bool_type());
  mgr.release(inner);
  EXPECT_EQ(mgr.get_num_terms(), 4U);
  mgr.release(middle);
  EXPECT_EQ(mgr.get_num_terms(), 3U);
  mgr.release(middle);
  EXPECT_EQ(mgr.get_num_terms(), 3U);
  mgr.release(outer);
  EXPECT_EQ(mgr.get_num_terms(), 2U);
  // The names are free again, for any sort.
  EXPECT_EQ(mgr.make_constant("x", mgr.make_bv_type(8))->get_id(), 2U);
}

TEST(GivingBack, RefusesMarksThatAreNotValid)
{
  TermManager mgr;
  TermManager other;
  const TermManager::Mark outer = mgr.mark();
  mgr.make_constant("x", mgr.make_bool_type());
  const TermManager::Mark inner = mgr.mark();
  EXPECT_EQ(get_refusal([&] { other.release(outer); }),
            "a mark of another term manager was released, but a mark of this one was expected");
  const std::string text =
      "a mark was released that is not valid any more: an older mark was released, or the manager was "
      "cleared";
  mgr.release(outer);
  EXPECT_EQ(get_refusal([&] { mgr.release(inner); }), text);
  mgr.clear();
  EXPECT_EQ(get_refusal([&] { mgr.release(outer); }), text);
  const TermManager::Mark newer = mgr.mark();
  EXPECT_EQ(get_refusal([&] { mgr.release(outer); }), text);
  mgr.release(newer);
}

TEST(GivingBack, KeepsOperatorSymbolsAndSorts)
{
  TermManager mgr;
  const TermManager::Mark mark = mgr.mark();
  const DataType* type = mgr.make_bv_type(77);
  const Symbol* s = mgr.make_bv_add_symbol(77);
  mgr.make_constant("x", type);
  mgr.release(mark);
  EXPECT_EQ(mgr.make_bv_type(77), type);
  EXPECT_EQ(mgr.make_bv_add_symbol(77), s);
}

TEST(GivingBack, ForgetsNamesOfAnySize)
{
  TermManager mgr;
  const DataType* byte = mgr.make_bv_type(8);
  const auto make_name = [](std::size_t size) { return std::string(size, 'n'); };
  constexpr std::size_t kMostCharacters = 600;
  const Term* kept = mgr.make_constant(make_name(kMostCharacters + 1), byte);
  const TermManager::Mark mark = mgr.mark();
  for (unsigned long round = 0; round < 2; ++round) {
    for (std::size_t size = 0; size <= kMostCharacters; ++size) {
      // Of another sort in each round, which would be refused if the name were still known
      const Term* constant = mgr.make_constant(make_name(size), mgr.make_bv_type(9 + round));
      EXPECT_EQ(constant->get_symbol()->find_name(), make_name(size));
      mgr.make_term(mgr.make_bv_not_symbol(9 + round), {constant});
    }
    for (std::size_t size = 0; size <= kMostCharacters; ++size) {
      const Term* constant = mgr.make_constant(make_name(size), mgr.make_bv_type(9 + round));
      EXPECT_EQ(constant->get_symbol()->get_name(), make_name(size));
      EXPECT_EQ(constant->get_symbol()->copy_name(), make_name(size));
    }
    EXPECT_EQ(mgr.get_num_terms(), 2 * kMostCharacters + 5);
    mgr.release(mark);
    EXPECT_EQ(mgr.get_num_terms(), 3U);
  }
  EXPECT_EQ(mgr.make_constant(make_name(kMostCharacters + 1), byte), kept);
}

TEST(Clearing, LeavesANewManagerWithItsSorts)
{
  TermManager mgr;
  const DataType* type = mgr.make_bv_type(kWidth);
  const Term* yes = mgr.make_true();
  for (std::uint64_t stream = 0; stream < 5; ++stream) {
    Maker(mgr, stream).make(stream * 300);
    mgr.clear();
    EXPECT_EQ(mgr.get_num_terms(), 2U);
    EXPECT_EQ(mgr.get_num_symbols(), 2U);
    EXPECT_TRUE(mgr.get_numerals().empty());
    EXPECT_EQ(mgr.make_bv_type(kWidth), type);
    EXPECT_EQ(mgr.make_true(), yes);
  }
  TermManager reference;
  Maker found(mgr, 9);
  found.make(1000);
  Maker expected(reference, 9);
  expected.make(1000);
  expect_same(found.get_made(), expected.get_made());
}

TEST(IsNumber, ReadsNothingOfTheSymbolWhileThereIsNoNumeral)
{
  TermManager mgr;
  QNumber value(5);
  EXPECT_FALSE(mgr.is_number(nullptr, &value));
  EXPECT_FALSE(mgr.is_number(nullptr, nullptr));
  EXPECT_EQ(value, QNumber(5));
  const TermManager::Mark mark = mgr.mark();
  mgr.make_bv_number(1, 8);
  mgr.release(mark);
  EXPECT_FALSE(mgr.is_number(nullptr, &value));
}

}  // namespace lumo::test
