// The throwing calls: each calls `try_calculate` of its class, and throws the refusal.

#include "lumo/calculators/adhoccalculators.h"

#include "lumo/calculators/helpers.h"

namespace lumo::adhoccalculator {

void NotAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void AndAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void OrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void IffAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void IteAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void EqAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value, DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVNotAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVNegAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVRolAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVRorAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVAndAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVOrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                     DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVXorAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVConcatAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                         DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSelectAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                         DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVZextAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSextAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVLslAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVLsrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVAsrAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVAddAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSubAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVMulAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVUdivAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSdivAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVUremAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSremAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVUltAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVUleAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSltAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVSleAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                      DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

void BVCompAdHocCalculator::operator()(TermManager* mgr, const Term* t, const Term* value,
                                       DefinitionStack& defs)
{
  raise_if_refused(try_calculate(mgr, t, value, defs));
}

}  // namespace lumo::adhoccalculator
