// The reader of trails on arbitrary bytes: it accepts them or throws an Exception. What it accepts can be printed, and
// reading that again gives the same trail. Extending a model along it succeeds or throws an Exception.

#include <algorithm>
#include <sstream>
#include <string_view>
#include <vector>

#include "fuzz/target.h"
#include "lumo/elimination/extend.h"
#include "lumo/model/model_store.h"
#include "lumo/smtlib/trail_printer.h"
#include "lumo/smtlib/trail_reader.h"
#include "lumo/terms/exception.h"

namespace lumo::fuzz {
namespace {

bool is_same_step(const Step& lhs, const Step& rhs)
{
  return lhs.constant == rhs.constant && lhs.application == rhs.application && lhs.free == rhs.free;
}

bool is_same(const Trail& lhs, const Trail& rhs)
{
  return lhs.facts == rhs.facts &&
         std::equal(lhs.steps.begin(), lhs.steps.end(), rhs.steps.begin(), rhs.steps.end(), is_same_step);
}

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size)
{
  TermManager mgr;
  const std::vector<const Term*> constants = {
      mgr.make_constant("p", mgr.make_bool_type()),   mgr.make_constant("x", mgr.make_bv_type(8)),
      mgr.make_constant("y", mgr.make_bv_type(8)),    mgr.make_constant("b", mgr.make_bv_type(1)),
      mgr.make_constant("a b", mgr.make_bv_type(65)),
  };
  Trail trail;
  try {
    trail = smtlib::read_trail(mgr, constants, {reinterpret_cast<const char*>(data), size});
  } catch (const Exception&) {
    return;
  }
  std::ostringstream out;
  smtlib::print_trail(out, constants, trail);
  check(is_same(smtlib::read_trail(mgr, constants, out.str()), trail),
        [&] { return "not read again:\n" + out.str(); });

  ModelStore model(&mgr);
  try {
    extend(mgr, trail, model);
  } catch (const Exception&) {
    return;
  }
}

}  // namespace lumo::fuzz
