// The messages of an operator about arguments that it does not take.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/smtlib/operators.h"

namespace lumo::test {
namespace {

struct MisfitRow
{
  std::string_view name;
  std::vector<const Term*> args;
  std::string misfit;
  std::size_t argument = 0;  ///< that does not fit
};

TEST(FindMisfit, NamesTheFirstArgumentThatDoesNotFit)
{
  TermManager mgr;
  const Term* p = mgr.make_constant("p", mgr.make_bool_type());
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(8));
  const Term* y = mgr.make_constant("y", mgr.make_bv_type(4));

  const std::vector<MisfitRow> rows = {
      {"and", {p, p, p}, ""},
      {"and", {p, x}, "argument 2 of and has sort (_ BitVec 8), but sort Bool was expected", 1},
      {"bvadd", {x, x}, ""},
      {"bvadd", {p, x}, "argument 1 of bvadd has sort Bool, but a bit-vector was expected", 0},
      {"bvadd", {x, y}, "argument 2 of bvadd has sort (_ BitVec 4), but sort (_ BitVec 8) was expected", 1},
      {"concat", {x, y}, ""},
      {"concat", {x, p}, "argument 2 of concat has sort Bool, but a bit-vector was expected", 1},
      {"ite", {p, x, x}, ""},
      {"ite", {x, x, x}, "argument 1 of ite has sort (_ BitVec 8), but sort Bool was expected", 0},
      {"ite", {p, x, y}, "argument 3 of ite has sort (_ BitVec 4), but sort (_ BitVec 8) was expected", 2},
      {"and", {}, "and was given 0 arguments, but at least 1 were expected", 0},
      {"ite", {p, x}, "ite was given 2 arguments, but 3 were expected", 2},
      {"bvnot", {x, x}, "bvnot was given 2 arguments, but 1 was expected", 2},
      {"=", {p, x}, "argument 2 of = has sort (_ BitVec 8), but sort Bool was expected", 1},
  };
  for (const MisfitRow& row : rows) {
    const smtlib::Operator* op = smtlib::find_operator(row.name);
    ASSERT_NE(op, nullptr) << row.name;
    const smtlib::Misfit misfit = smtlib::find_misfit(mgr, *op, row.args);
    EXPECT_EQ(misfit.sentence, row.misfit);
    EXPECT_EQ(smtlib::fits(mgr, *op, row.args), row.misfit.empty());
    if (!row.misfit.empty()) {
      EXPECT_EQ(misfit.argument, row.argument) << row.misfit;
    }
  }
}

}  // namespace
}  // namespace lumo::test
