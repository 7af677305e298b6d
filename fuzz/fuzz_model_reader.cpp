// The reader of models on arbitrary bytes: it accepts them or throws an Exception. What it accepts can be printed and
// read again.

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

#include "fuzz/target.h"
#include "lumo/smtlib/model_printer.h"
#include "lumo/smtlib/model_reader.h"
#include "lumo/terms/exception.h"

namespace lumo::fuzz {
namespace {

bool is_same(const ModelValue& lhs, const ModelValue& rhs)
{
  return lhs.constant == rhs.constant && lhs.value == rhs.value;
}

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size)
{
  TermManager mgr;
  const std::vector<const Term*> constants = {
      mgr.make_constant("p", mgr.make_bool_type()),   mgr.make_constant("q", mgr.make_bool_type()),
      mgr.make_constant("x", mgr.make_bv_type(8)),    mgr.make_constant("y", mgr.make_bv_type(8)),
      mgr.make_constant("z", mgr.make_bv_type(1)),    mgr.make_constant("", mgr.make_bv_type(3)),
      mgr.make_constant("a b", mgr.make_bv_type(65)), mgr.make_constant("let", mgr.make_bool_type()),
  };
  std::vector<ModelValue> model;
  try {
    model = smtlib::read_model(mgr, constants, {reinterpret_cast<const char*>(data), size});
  } catch (const Exception&) {
    return;
  }
  std::ostringstream out;
  smtlib::print_model(out, model);
  const std::vector<ModelValue> again = smtlib::read_model(mgr, constants, out.str());
  check(std::equal(model.begin(), model.end(), again.begin(), again.end(), is_same),
        [&] { return "not read again:\n" + out.str(); });
}

}  // namespace lumo::fuzz
