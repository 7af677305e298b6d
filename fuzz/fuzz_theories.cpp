// The reader of scripts of any theory on arbitrary bytes: it accepts them or throws an Exception. What it accepts can be
// printed, with elimination and without, and read again; printed a second time, the text stays the same.

#include <sstream>
#include <string>
#include <string_view>

#include "fuzz/target.h"
#include "lumo/commands/script_elimination.h"
#include "lumo/smtlib/script_reader.h"
#include "lumo/terms/exception.h"

namespace lumo::fuzz {
namespace {

/// Reads a text and prints what elimination leaves of it.
std::string print_again(std::string_view text, bool eliminates)
{
  TermManager mgr;
  const smtlib::Script script = smtlib::read_script(mgr, text, {}, smtlib::ForeignText::kTaken);
  std::ostringstream out;
  commands::print_rest(out, commands::eliminate_script(mgr, script, eliminates));
  return std::move(out).str();
}

}  // namespace

void run_input(const std::uint8_t* data, std::size_t size)
{
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string rest;
  std::string once;
  try {
    rest = print_again(text, true);
    once = print_again(text, false);
  } catch (const Exception&) {
    return;
  }
  static_cast<void>(print_again(rest, false));
  // The first text chose the order of arguments and names for what is shared.
  const std::string twice = print_again(once, false);
  const std::string thrice = print_again(twice, false);
  check(twice == thrice, [&] { return "printed otherwise:\n" + twice + "and then\n" + thrice; });
}

}  // namespace lumo::fuzz
