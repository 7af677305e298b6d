// The reader of scripts on arbitrary bytes: it accepts them or throws an Exception. What it accepts can be printed, and
// reading that again gives the same script.

#include <sstream>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "fuzz/target.h"
#include "lumo/smtlib/script_printer.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/exception.h"

namespace lumo::fuzz {
namespace {

/// The conjuncts of the assertions: a printed script may assert several of them at once, and in
/// another order.
std::unordered_set<const Term*> collect_conjuncts(const smtlib::Script& script)
{
  std::unordered_set<const Term*> seen;
  std::unordered_set<const Term*> conjuncts;
  std::vector<const Term*> stack = script.get_asserted_terms();
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (!seen.insert(t).second) continue;
    if (t->get_symbol()->get_kind() == Kind::kAnd) {
      stack.push_back(t->get_arg(0));
      stack.push_back(t->get_arg(1));
    } else {
      conjuncts.insert(t);
    }
  }
  return conjuncts;
}

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size)
{
  TermManager mgr;
  smtlib::Script script;
  try {
    script = smtlib::read_script(mgr, {reinterpret_cast<const char*>(data), size});
  } catch (const Exception&) {
    return;
  }
  std::ostringstream out;
  smtlib::print_script(out, script.constants, script.get_asserted_terms(), true);
  const smtlib::Script again = smtlib::read_script(mgr, out.str());
  check(again.constants == script.constants && collect_conjuncts(again) == collect_conjuncts(script),
        [&] { return "not read again:\n" + out.str(); });
}

}  // namespace lumo::fuzz
