#include "lumo/calculators/calculator_table.h"

#include <array>

namespace lumo {

namespace {

using adhoccalculator::AdHocCalculator;

/// The one object of each class; calculators hold no state, so sharing them is safe.
template <class Calculator>
Calculator shared_calculator;

struct Row
{
  Kind kind;
  AdHocCalculator* calculator;
};

// In the order of Kind
constexpr std::array<Row, kNumOperators> kRows = {{
    {Kind::kNot, &shared_calculator<adhoccalculator::NotAdHocCalculator>},
    {Kind::kAnd, &shared_calculator<adhoccalculator::AndAdHocCalculator>},
    {Kind::kOr, &shared_calculator<adhoccalculator::OrAdHocCalculator>},
    {Kind::kIff, &shared_calculator<adhoccalculator::IffAdHocCalculator>},
    {Kind::kIte, &shared_calculator<adhoccalculator::IteAdHocCalculator>},
    {Kind::kEq, &shared_calculator<adhoccalculator::EqAdHocCalculator>},
    {Kind::kBvNot, &shared_calculator<adhoccalculator::BVNotAdHocCalculator>},
    {Kind::kBvNeg, &shared_calculator<adhoccalculator::BVNegAdHocCalculator>},
    {Kind::kBvRotateLeft, &shared_calculator<adhoccalculator::BVRolAdHocCalculator>},
    {Kind::kBvRotateRight, &shared_calculator<adhoccalculator::BVRorAdHocCalculator>},
    {Kind::kBvAnd, &shared_calculator<adhoccalculator::BVAndAdHocCalculator>},
    {Kind::kBvOr, &shared_calculator<adhoccalculator::BVOrAdHocCalculator>},
    {Kind::kBvXor, &shared_calculator<adhoccalculator::BVXorAdHocCalculator>},
    {Kind::kBvConcat, &shared_calculator<adhoccalculator::BVConcatAdHocCalculator>},
    {Kind::kBvExtract, &shared_calculator<adhoccalculator::BVSelectAdHocCalculator>},
    {Kind::kBvZeroExtend, &shared_calculator<adhoccalculator::BVZextAdHocCalculator>},
    {Kind::kBvSignExtend, &shared_calculator<adhoccalculator::BVSextAdHocCalculator>},
    {Kind::kBvLsl, &shared_calculator<adhoccalculator::BVLslAdHocCalculator>},
    {Kind::kBvLsr, &shared_calculator<adhoccalculator::BVLsrAdHocCalculator>},
    {Kind::kBvAsr, &shared_calculator<adhoccalculator::BVAsrAdHocCalculator>},
    {Kind::kBvAdd, &shared_calculator<adhoccalculator::BVAddAdHocCalculator>},
    {Kind::kBvSub, &shared_calculator<adhoccalculator::BVSubAdHocCalculator>},
    {Kind::kBvMul, &shared_calculator<adhoccalculator::BVMulAdHocCalculator>},
    {Kind::kBvUdiv, &shared_calculator<adhoccalculator::BVUdivAdHocCalculator>},
    {Kind::kBvSdiv, &shared_calculator<adhoccalculator::BVSdivAdHocCalculator>},
    {Kind::kBvUrem, &shared_calculator<adhoccalculator::BVUremAdHocCalculator>},
    {Kind::kBvSrem, &shared_calculator<adhoccalculator::BVSremAdHocCalculator>},
    {Kind::kBvUlt, &shared_calculator<adhoccalculator::BVUltAdHocCalculator>},
    {Kind::kBvUle, &shared_calculator<adhoccalculator::BVUleAdHocCalculator>},
    {Kind::kBvSlt, &shared_calculator<adhoccalculator::BVSltAdHocCalculator>},
    {Kind::kBvSle, &shared_calculator<adhoccalculator::BVSleAdHocCalculator>},
    {Kind::kBvComp, &shared_calculator<adhoccalculator::BVCompAdHocCalculator>},
}};

constexpr bool rows_are_complete()
{
  for (std::size_t i = 0; i < kNumOperators; ++i) {
    if (kRows[i].kind != static_cast<Kind>(i)) return false;
  }
  return true;
}

static_assert(rows_are_complete(), "each operator has its calculator, in the order of Kind");

}  // namespace

AdHocCalculator* find_calculator(const TermManager& /*mgr*/, const Symbol* s)
{
  return is_operator(s->get_kind()) ? kRows[static_cast<std::size_t>(s->get_kind())].calculator : nullptr;
}

}  // namespace lumo
