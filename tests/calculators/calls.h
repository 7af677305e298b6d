#ifndef LUMO_TESTS_CALCULATORS_CALLS_H
#define LUMO_TESTS_CALCULATORS_CALLS_H

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/model_store.h"
#include "tests/calculators/definition.h"
#include "tests/calculators/edge_cases.h"

namespace lumo {

inline std::ostream& operator<<(std::ostream& out, const OperatorInfo& info)
{
  return out << info.smtlib_name;
}

}  // namespace lumo

namespace lumo::test {

/// Everything on the stack, oldest first; the stack is empty afterwards. Every flag must be set.
std::vector<Definition> take_definitions(ModelStore::DefinitionStack& defs);

/// The definitions that the row requires.
std::vector<Definition> parse_definitions(TermManager& mgr, const EdgeCase& row);

/// The definitions as text, for failure messages.
std::string describe(const std::vector<Definition>& definitions);

/// The operator's name as a test's name
std::string name_operator(const testing::TestParamInfo<OperatorInfo>& info);

}  // namespace lumo::test

#endif
