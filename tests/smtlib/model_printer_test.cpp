#include "lumo/smtlib/model_printer.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {
namespace {

std::string print(const Term* constant, const Term* value)
{
  std::ostringstream out;
  print_definition(out, {constant, value});
  return out.str();
}

TEST(DefinitionPrinter, WritesDefinitions)
{
  TermManager mgr;
  const Term* p = mgr.make_constant("p", mgr.make_bool_type());
  const Term* x = mgr.make_constant("x y", mgr.make_bv_type(8));
  const Term* y = mgr.make_constant("let", mgr.make_bv_type(3));
  EXPECT_EQ(print(p, mgr.make_true()), "(define-fun p () Bool true)\n");
  EXPECT_EQ(print(p, mgr.make_false()), "(define-fun p () Bool false)\n");
  EXPECT_EQ(print(x, mgr.make_bv_number(7, 8)), "(define-fun |x y| () (_ BitVec 8) #x07)\n");
  EXPECT_EQ(print(y, mgr.make_bv_number(5, 3)), "(define-fun |let| () (_ BitVec 3) #b101)\n");
}

TEST(DefinitionPrinter, PrintsNothingIfANameHasNoSpelling)
{
  TermManager mgr;
  std::ostringstream out;
  const Term* x = mgr.make_constant("a|b", mgr.make_bool_type());
  EXPECT_THROW(print_definition(out, {x, mgr.make_true()}), Exception);
  EXPECT_EQ(out.str(), "");
}

TEST(DefinitionPrinter, WritesAMillionBits)
{
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.make_bv_type(1'000'000));
  EXPECT_EQ(print(x, mgr.make_bv_number(-1, 1'000'000)),
            "(define-fun x () (_ BitVec 1000000) #x" + std::string(250'000, 'f') + ")\n");
}

}  // namespace
}  // namespace lumo::smtlib
