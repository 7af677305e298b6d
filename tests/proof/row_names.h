#ifndef LUMO_TESTS_PROOF_ROW_NAMES_H
#define LUMO_TESTS_PROOF_ROW_NAMES_H

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/proof/proof_rows.h"
#include "tests/support/numbered.h"

namespace lumo::test {

/// The operator's name as a part of a test's name
inline std::string name_kind(Kind kind)
{
  if (kind == Kind::kIff) return "iff";
  if (kind == Kind::kEq) return "eq";
  return std::string(get_operator_info(kind).smtlib_name);
}

/// The row as a test's name; the number distinguishes the rows of one operator.
inline std::string name_row(const testing::TestParamInfo<ProofRow>& info)
{
  std::string name = numbered(name_kind(info.param.kind) + "_", info.index);
  for (const char c : "_" + std::string(info.param.shapes))
    name += c == ' ' ? '_' : c;
  if (info.param.standing == Standing::kUnsound) name += "_unsound";
  return name;
}

inline std::ostream& operator<<(std::ostream& out, const ProofRow& row)
{
  return out << name_kind(row.kind) << ", " << row.shapes << ", " << row.value;
}

}  // namespace lumo::test

#endif
