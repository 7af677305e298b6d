#include "smtlib/run_invert.h"

#include <cerrno>
#include <istream>
#include <memory>
#include <ostream>
#include <system_error>

#include "smtlib/input_error.h"
#include "smtlib/invert.h"
#include "smtlib/printer.h"
#include "smtlib/reader.h"
#include "smtlib/symbol_text.h"
#include "smtlib/text_file.h"

namespace lumo::smtlib {

namespace {

/// One input: its terms and what it asserts over them.
struct Input
{
  std::string name;  ///< as messages show it
  TermManager mgr;
  Script script;
};

/// A message of the library as the end of a line.
std::string make_sentence(const Exception& e)
{
  std::string sentence = e.what();
  while (!sentence.empty() && sentence.back() == '\n')
    sentence.pop_back();
  return sentence;
}

/// Null if the input cannot be read; then err says why.
std::unique_ptr<Input> read_input(const std::string& file, std::istream& in, std::ostream& err)
{
  auto input = std::make_unique<Input>();
  const bool is_standard_input = file == "-";
  input->name = is_standard_input ? "<stdin>" : make_excerpt(file);
  try {
    input->script = read_script(input->mgr, is_standard_input ? read_stream(in) : read_file(file));
    return input;
  } catch (const InputError& e) {
    err << make_located_message(input->name, e) << '\n';
  } catch (const Exception& e) {
    err << input->name << ": " << make_sentence(e) << '\n';
  }
  return nullptr;
}

void solve_assertion(Input& input, Inverter& inverter, std::size_t number, std::ostream& out)
{
  const Request request = make_request(input.mgr, input.script.assertions[number - 1].term);
  try {
    for (const Inverter::Definition& definition : inverter.solve(request, number))
      print_definition(out, definition.constant, definition.value);
  } catch (const Exception& e) {
    const std::string_view name = get_operator_info(request.term->get_symbol()->get_kind()).smtlib_name;
    throw Exception(std::string(name) + ": " + e.what());
  }
}

/// Returns whether every assertion got its definitions.
bool solve_input(Input& input, std::ostream& out, std::ostream& err)
{
  bool is_solved = true;
  Inverter inverter(input.mgr);
  for (std::size_t number = 1; number <= input.script.assertions.size() && out; ++number) {
    try {
      solve_assertion(input, inverter, number, out);
    } catch (const Exception& e) {
      err << input.name << ": assertion " << number << ": " << make_sentence(e) << '\n';
      is_solved = false;
    }
  }
  return is_solved;
}

/// Whoever closed the other end of a pipe has seen enough and wants no message.
void report_write_failure(std::ostream& err, int reason)
{
  if (reason == EPIPE) return;
  err << "<stdout>: this cannot be written: " << std::generic_category().message(reason != 0 ? reason : EIO)
      << '\n';
}

}  // namespace

int run_invert(const std::vector<std::string>& files, std::istream& in, std::ostream& out, std::ostream& err)
{
  std::vector<std::unique_ptr<Input>> inputs;
  bool is_readable = true;
  for (const std::string& file : files) {
    inputs.push_back(read_input(file, in, err));
    is_readable = is_readable && inputs.back() != nullptr;
  }
  if (!is_readable) return kFailed;

  bool is_solved = true;
  errno = 0;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (i > 0) out << "(reset)\n";
    if (inputs.size() > 1) out << "; " << inputs[i]->name << '\n';
    is_solved = solve_input(*inputs[i], out, err) && is_solved;
    inputs[i].reset();
  }
  out.flush();
  if (!out) {
    report_write_failure(err, errno);
    return kFailed;
  }
  return is_solved ? kAllSolved : kSomeRefused;
}

}  // namespace lumo::smtlib
