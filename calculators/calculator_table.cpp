#include "calculators/calculator_table.h"

#include <array>

namespace lumo {

namespace {

using adhoccalculator::AdHocCalculator;

/// The one object of each class; calculators hold no state, so sharing them is safe.
template <class Calculator>
AdHocCalculator* get_shared()
{
  static Calculator calculator;
  return &calculator;
}

using Getter = AdHocCalculator* (*)();

struct Row
{
  Kind kind;
  Getter get;
};

// In the order of Kind
constexpr Row kServed[] = {
    {Kind::kNot, get_shared<adhoccalculator::NotAdHocCalculator>},
    {Kind::kAnd, get_shared<adhoccalculator::AndAdHocCalculator>},
    {Kind::kOr, get_shared<adhoccalculator::OrAdHocCalculator>},
    {Kind::kIff, get_shared<adhoccalculator::IffAdHocCalculator>},
    {Kind::kIte, get_shared<adhoccalculator::IteAdHocCalculator>},
    {Kind::kBvAdd, get_shared<adhoccalculator::BVAddAdHocCalculator>},
    {Kind::kBvSub, get_shared<adhoccalculator::BVSubAdHocCalculator>},
};

std::array<AdHocCalculator*, kNumOperators> make_table()
{
  std::array<AdHocCalculator*, kNumOperators> table{};
  for (const Row& row : kServed)
    table[static_cast<std::size_t>(row.kind)] = row.get();
  return table;
}

}  // namespace

AdHocCalculator* find_calculator(const TermManager& /*mgr*/, const Symbol* s)
{
  static const std::array<AdHocCalculator*, kNumOperators> kTable = make_table();
  return is_operator(s->get_kind()) ? kTable[static_cast<std::size_t>(s->get_kind())] : nullptr;
}

}  // namespace lumo
