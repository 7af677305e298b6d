#include "lumo/calculators/calculator_table.h"

#include <array>

namespace lumo {

namespace adhoccalculator {
namespace {

/// The one object of each class; calculators hold no state, so sharing them is safe.
template <class Calculator>
Calculator shared_calculator;

struct Row
{
  Kind kind;
  AdHocCalculator* calculator;
  Refusal (*try_calculate)(TermManager*, const Term*, const Term*, DefinitionStack&);
};

template <class Calculator>
constexpr Row make_row(Kind kind)
{
  return {kind, &shared_calculator<Calculator>, &Calculator::try_calculate};
}

// In the order of Kind
constexpr std::array<Row, kNumOperators> kRows = {{
    make_row<NotAdHocCalculator>(Kind::kNot),
    make_row<AndAdHocCalculator>(Kind::kAnd),
    make_row<OrAdHocCalculator>(Kind::kOr),
    make_row<IffAdHocCalculator>(Kind::kIff),
    make_row<IteAdHocCalculator>(Kind::kIte),
    make_row<EqAdHocCalculator>(Kind::kEq),
    make_row<BVNotAdHocCalculator>(Kind::kBvNot),
    make_row<BVNegAdHocCalculator>(Kind::kBvNeg),
    make_row<BVRolAdHocCalculator>(Kind::kBvRotateLeft),
    make_row<BVRorAdHocCalculator>(Kind::kBvRotateRight),
    make_row<BVAndAdHocCalculator>(Kind::kBvAnd),
    make_row<BVOrAdHocCalculator>(Kind::kBvOr),
    make_row<BVXorAdHocCalculator>(Kind::kBvXor),
    make_row<BVConcatAdHocCalculator>(Kind::kBvConcat),
    make_row<BVSelectAdHocCalculator>(Kind::kBvExtract),
    make_row<BVZextAdHocCalculator>(Kind::kBvZeroExtend),
    make_row<BVSextAdHocCalculator>(Kind::kBvSignExtend),
    make_row<BVLslAdHocCalculator>(Kind::kBvLsl),
    make_row<BVLsrAdHocCalculator>(Kind::kBvLsr),
    make_row<BVAsrAdHocCalculator>(Kind::kBvAsr),
    make_row<BVAddAdHocCalculator>(Kind::kBvAdd),
    make_row<BVSubAdHocCalculator>(Kind::kBvSub),
    make_row<BVMulAdHocCalculator>(Kind::kBvMul),
    make_row<BVUdivAdHocCalculator>(Kind::kBvUdiv),
    make_row<BVSdivAdHocCalculator>(Kind::kBvSdiv),
    make_row<BVUremAdHocCalculator>(Kind::kBvUrem),
    make_row<BVSremAdHocCalculator>(Kind::kBvSrem),
    make_row<BVUltAdHocCalculator>(Kind::kBvUlt),
    make_row<BVUleAdHocCalculator>(Kind::kBvUle),
    make_row<BVSltAdHocCalculator>(Kind::kBvSlt),
    make_row<BVSleAdHocCalculator>(Kind::kBvSle),
    make_row<BVCompAdHocCalculator>(Kind::kBvComp),
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
}  // namespace adhoccalculator

using adhoccalculator::kRows;

adhoccalculator::AdHocCalculator* find_calculator(const TermManager& /*mgr*/, const Symbol* s)
{
  return is_operator(s->get_kind()) ? kRows[static_cast<std::size_t>(s->get_kind())].calculator : nullptr;
}

adhoccalculator::Refusal try_calculate(TermManager* mgr, const Term* t, const Term* value,
                                       adhoccalculator::DefinitionStack& defs)
{
  const Symbol* s = t->get_symbol();
  if (!is_operator(s->get_kind()))
    throw Exception("an application of an operator was expected, but " + s->get_name() + " was given");
  return kRows[static_cast<std::size_t>(s->get_kind())].try_calculate(mgr, t, value, defs);
}

}  // namespace lumo
