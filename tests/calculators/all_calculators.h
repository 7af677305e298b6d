#ifndef LUMO_TESTS_CALCULATORS_ALL_CALCULATORS_H
#define LUMO_TESTS_CALCULATORS_ALL_CALCULATORS_H

#include "lumo/calculators/adhoccalculators.h"

namespace lumo::test {

/// A list of classes
template <class... Classes>
struct ClassList
{};

/// The classes of the calculators, in the order of `Kind`.
using CalculatorClasses =
    ClassList<adhoccalculator::NotAdHocCalculator, adhoccalculator::AndAdHocCalculator,
              adhoccalculator::OrAdHocCalculator, adhoccalculator::IffAdHocCalculator,
              adhoccalculator::IteAdHocCalculator, adhoccalculator::EqAdHocCalculator,
              adhoccalculator::BVNotAdHocCalculator, adhoccalculator::BVNegAdHocCalculator,
              adhoccalculator::BVRolAdHocCalculator, adhoccalculator::BVRorAdHocCalculator,
              adhoccalculator::BVAndAdHocCalculator, adhoccalculator::BVOrAdHocCalculator,
              adhoccalculator::BVXorAdHocCalculator, adhoccalculator::BVConcatAdHocCalculator,
              adhoccalculator::BVSelectAdHocCalculator, adhoccalculator::BVZextAdHocCalculator,
              adhoccalculator::BVSextAdHocCalculator, adhoccalculator::BVLslAdHocCalculator,
              adhoccalculator::BVLsrAdHocCalculator, adhoccalculator::BVAsrAdHocCalculator,
              adhoccalculator::BVAddAdHocCalculator, adhoccalculator::BVSubAdHocCalculator,
              adhoccalculator::BVMulAdHocCalculator, adhoccalculator::BVUdivAdHocCalculator,
              adhoccalculator::BVSdivAdHocCalculator, adhoccalculator::BVUremAdHocCalculator,
              adhoccalculator::BVSremAdHocCalculator, adhoccalculator::BVUltAdHocCalculator,
              adhoccalculator::BVUleAdHocCalculator, adhoccalculator::BVSltAdHocCalculator,
              adhoccalculator::BVSleAdHocCalculator, adhoccalculator::BVCompAdHocCalculator>;

}  // namespace lumo::test

#endif
