#include "tests/calculators/calls.h"

#include <algorithm>

#include "tests/calculators/enumeration.h"
#include "tests/support/notation.h"

namespace lumo::test {

std::vector<Definition> take_definitions(ModelStore::DefinitionStack& defs)
{
  std::vector<Definition> taken;
  for (; !defs.empty(); defs.pop()) {
    EXPECT_TRUE(defs.top().flag);
    taken.push_back({defs.top().term, defs.top().value});
  }
  std::reverse(taken.begin(), taken.end());
  return taken;
}

std::vector<Definition> parse_definitions(TermManager& mgr, const EdgeCase& row)
{
  std::vector<Definition> expected;
  for (const std::string& definition : row.definitions) {
    const std::size_t sign = definition.find(" := ");
    expected.push_back(
        {parse_term(mgr, definition.substr(0, sign)), parse_term(mgr, definition.substr(sign + 4))});
  }
  return expected;
}

std::string describe(const std::vector<Definition>& definitions)
{
  std::string text;
  for (const auto& [term, value] : definitions)
    text += describe(term) + " := " + describe(value) + "; ";
  return text;
}

std::string name_operator(const testing::TestParamInfo<OperatorInfo>& info)
{
  if (info.param.kind == Kind::kIff) return "iff";
  if (info.param.kind == Kind::kEq) return "eq";
  return std::string(info.param.smtlib_name);
}

}  // namespace lumo::test
