// The common parts of all calculators: the interface, the error type, the constants of the module, the table.

#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/calculators/adhoccalculators.h"
#include "lumo/calculators/calculator_table.h"
#include "lumo/calculators/solver_constants.h"
#include "tests/calculators/all_calculators.h"
#include "tests/support/make_operator.h"
#include "tests/support/notation.h"
#include "tests/support/refusal.h"

namespace lumo::adhoccalculator {
namespace {

using test::CalculatorClasses;
using test::ClassList;

/// One of each class
template <class... Calculators>
std::vector<std::unique_ptr<AdHocCalculator>> make_each(ClassList<Calculators...> /*classes*/)
{
  static_assert((std::is_base_of_v<AdHocCalculator, Calculators> && ...));
  static_assert(((sizeof(Calculators) == sizeof(AdHocCalculator)) && ...), "calculators hold no data");
  std::vector<std::unique_ptr<AdHocCalculator>> all;
  (all.push_back(std::make_unique<Calculators>()), ...);
  return all;
}

std::vector<std::unique_ptr<AdHocCalculator>> make_all() { return make_each(CalculatorClasses()); }

/// Counts its destructions.
template <class Calculator>
class Counted final : public Calculator
{
 public:
  explicit Counted(int& num_destroyed) : num_destroyed_(num_destroyed) {}
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  // NOLINTNEXTLINE(modernize-use-override): must compile also if the base's is not virtual
  ~Counted() { ++num_destroyed_; }

 private:
  int& num_destroyed_;
};

template <class... Calculators>
int count_destructions_through_the_base(ClassList<Calculators...> /*classes*/)
{
  int num_destroyed = 0;
  (std::unique_ptr<AdHocCalculator>(std::make_unique<Counted<Calculators>>(num_destroyed)).reset(), ...);
  return num_destroyed;
}

/// The number of classes that are bases of Class, including Class itself
template <class Class, class... Calculators>
constexpr int count_bases(ClassList<Calculators...> /*classes*/)
{
  return (0 + ... + (std::is_base_of_v<Calculators, Class> ? 1 : 0));
}

template <class... Calculators>
constexpr bool are_unrelated(ClassList<Calculators...> classes)
{
  return ((count_bases<Calculators>(classes) == 1) && ...);
}

TEST(AdHocCalculators, RunTheRightDestructorThroughTheBase)
{
  EXPECT_EQ(count_destructions_through_the_base(CalculatorClasses()), 32);
}

TEST(AdHocCalculators, AreThirtyTwoClassesDerivedFromNothingButTheBase)
{
  static_assert(std::is_abstract_v<AdHocCalculator>);
  static_assert(are_unrelated(CalculatorClasses()));
  std::set<std::string> names;
  for (const std::unique_ptr<AdHocCalculator>& calculator : make_all()) {
    const AdHocCalculator& object = *calculator;
    names.insert(typeid(object).name());
  }
  EXPECT_EQ(names.size(), 32U);
}

TEST(CalculatorTable, ServesEachOperatorWithTheObjectOfItsClass)
{
  TermManager mgr;
  const std::vector<std::unique_ptr<AdHocCalculator>> all = make_all();
  std::set<AdHocCalculator*> found;
  for (std::size_t i = 0; i < kNumOperators; ++i) {
    const Kind kind = static_cast<Kind>(i);
    const bool has_width_second = get_operator_info(kind).rule == SortRule::kRotate;
    const Parameters p =
        kind == Kind::kBvExtract ? Parameters{3, 0, 8} : Parameters{8, has_width_second ? 8UL : 4UL};
    const Symbol* s = test::make_operator(mgr, kind, p);
    AdHocCalculator* calculator = find_calculator(mgr, s);
    ASSERT_NE(calculator, nullptr) << s->get_name();
    const AdHocCalculator& expected = *all[i];
    const AdHocCalculator& given = *calculator;
    EXPECT_EQ(typeid(given), typeid(expected)) << s->get_name();
    EXPECT_EQ(find_calculator(mgr, s), calculator) << "the object is shared";
    found.insert(calculator);
  }
  EXPECT_EQ(found.size(), kNumOperators);
}

TEST(CalculatorTable, ServesNoLeaf)
{
  TermManager mgr;
  DefinitionStack defs;
  for (const std::string leaf : {"x8", "p", "true", "false", "#x05"}) {
    const Term* t = test::parse_term(mgr, leaf);
    EXPECT_EQ(find_calculator(mgr, t->get_symbol()), nullptr) << leaf;
    EXPECT_EQ(test::get_refusal([&] { static_cast<void>(try_calculate(&mgr, t, t, defs)); }),
              "an application of an operator was expected, but " + leaf + " was given");
  }
}

int num_observed = 0;
std::string observed;

void count(const Exception& e)
{
  ++num_observed;
  observed = e.what();
}

TEST(AdHocCalculatorError, KeepsItsTextAndRunsTheHookOnceWithTheTextInPlace)
{
  const Exception::Observer before = Exception::set_observer(count);
  num_observed = 0;
  try {
    throw AdHocCalculator::error("Term is not free!\n");
  } catch (const Exception& e) {
    EXPECT_STREQ(e.what(), "Term is not free!\n");
    EXPECT_EQ(typeid(e), typeid(AdHocCalculator::error));
  }
  Exception::set_observer(before);
  EXPECT_EQ(num_observed, 1);
  EXPECT_EQ(observed, "Term is not free!\n");
}

TEST(AdHocCalculators, OfRemaindersReadNoneOfTheirArguments)
{
  DefinitionStack defs;
  BVUremAdHocCalculator urem;
  BVSremAdHocCalculator srem;
  EXPECT_THROW(urem(nullptr, nullptr, nullptr, defs), AdHocCalculator::error);
  EXPECT_THROW(srem(nullptr, nullptr, nullptr, defs), AdHocCalculator::error);
  EXPECT_TRUE(defs.empty());
}

TEST(AdHocCalculators, EitherThrowOrDefineSomethingForAnApplicationOfAnotherOperator)
{
  TermManager mgr;
  for (const std::unique_ptr<AdHocCalculator>& calculator : make_all()) {
    for (const char* other : {"(bvsle #x05 x8)", "(bvsle x8 #x05)", "(bvadd x8 #x05)", "(and p q)"}) {
      const Term* t = test::parse_term(mgr, other);
      const AdHocCalculator& object = *calculator;
      if (typeid(object) == typeid(IteAdHocCalculator)) continue;  // reads a third argument
      for (const Term* value : {mgr.make_true(), mgr.make_false(), test::parse_term(mgr, "#x01")}) {
        DefinitionStack defs;
        bool is_thrown = false;
        try {
          (*calculator)(&mgr, t, value, defs);
        } catch (const Exception&) {
          is_thrown = true;
        }
        EXPECT_EQ(defs.empty(), is_thrown) << typeid(object).name() << " on " << other;
      }
    }
  }
}

TEST(AdHocCalculators, OneObjectServesSeveralManagersInTurn)
{
  BVAddAdHocCalculator calculator;
  for (int i = 0; i < 2; ++i) {
    TermManager mgr;
    const Term* t = test::parse_term(mgr, i == 0 ? "(bvadd x8 #x05)" : "(bvadd #x0003 y16)");
    DefinitionStack defs;
    calculator(&mgr, t, test::parse_term(mgr, i == 0 ? "#x0c" : "#x0001"), defs);
    ASSERT_EQ(defs.size(), 1U);
    EXPECT_EQ(defs.top().value, test::parse_term(mgr, i == 0 ? "#x07" : "#xfffe"));
  }
}

TEST(SolverConstants, HaveTheirValuesAndSizes)
{
  static_assert(sizeof(l_True) == 1 && sizeof(l_False) == 1 && sizeof(l_Undef) == 1);
  static_assert(l_True == 1 && l_False == -1 && l_Undef == 0);
  static_assert(sizeof(dpll::lit_Undef) == 4 && sizeof(dpll::lit_Error) == 4);
  static_assert(dpll::lit_Undef == -2 && dpll::lit_Error == -1);
  static_assert(sizeof(tlit_Undef) == 8 && tlit_Undef == 0);
  static_assert(sizeof(Heap::NO_IDX) == 8);
  const auto* shared = &Heap::NO_IDX;
  EXPECT_EQ(*shared, -1);
  EXPECT_EQ(static_cast<unsigned char>(l_False), 0xff);
}

}  // namespace
}  // namespace lumo::adhoccalculator
