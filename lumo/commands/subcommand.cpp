#include "lumo/commands/subcommand.h"

#include <algorithm>
#include <cerrno>
#include <istream>
#include <new>
#include <ostream>
#include <system_error>

#include "lumo/smtlib/query_reader.h"

namespace lumo::commands {

int run_subcommand(std::ostream& err, const std::function<int()>& subcommand)
{
  try {
    return subcommand();
  } catch (const SubcommandFailure& e) {
    const std::string message = e.what();
    if (!message.empty()) err << message << '\n';
    return e.get_status();
  } catch (const Exception& e) {
    err << "lumo: " << make_sentence(e) << '\n';
    return kFailed;
  }
}

std::string make_sentence(const Exception& e)
{
  std::string sentence = e.what();
  while (!sentence.empty() && sentence.back() == '\n')
    sentence.pop_back();
  return sentence;
}

void rethrow_located(const std::string& name)
{
  try {
    throw;
  } catch (const SubcommandFailure&) {
    throw;
  } catch (const smtlib::InputError& e) {
    throw SubcommandFailure(smtlib::make_located_message(name, e.get_place(), e.what()));
  } catch (const Exception& e) {
    throw SubcommandFailure(name + ": " + make_sentence(e));
  }
}

std::string make_input_name(const std::string& file)
{
  return file == "-" ? "<stdin>" : smtlib::make_excerpt(file);
}

InputText read_input_text(const std::string& file, std::istream& in, PhaseClock& clock)
{
  clock.enter(file == "-" ? Phase::kWait : Phase::kRead);
  InputText text = with_located_failures(make_input_name(file), [&] {
    return file == "-" ? InputText::read_stream(in) : InputText::read_file(file);
  });
  if (file == "-") clock.enter(Phase::kRead);
  return text;
}

namespace {

/// Gives back the memory of what it has read.
smtlib::Script read_script(TermManager& mgr, const InputText& text, smtlib::ForeignText foreign)
{
  return smtlib::read_script(
      mgr, text.get(), [&text](std::size_t size) { text.give_back(size); }, foreign);
}

void note_skipped(const Input& input, std::ostream& err)
{
  std::string names;
  for (const std::string& name : input.script.skipped) {
    if (name != "get-model") names += (names.empty() ? "" : ", ") + name;
  }
  if (!names.empty()) err << input.name << ": commands that were skipped: " << names << '\n';
}

}  // namespace

std::unique_ptr<Input> try_read_script(const std::string& file, const InputText& text, std::ostream& err,
                                       smtlib::ForeignText foreign)
{
  auto input = std::make_unique<Input>();
  input->name = make_input_name(file);
  try {
    input->script = read_script(input->mgr, text, foreign);
  } catch (const smtlib::SeveralQueries&) {
    return nullptr;
  } catch (...) {
    rethrow_located(input->name);
  }
  note_skipped(*input, err);
  return input;
}

std::unique_ptr<Input> read_input(const std::string& file, std::istream& in, std::ostream& err,
                                  PhaseClock& clock, std::optional<std::size_t> query,
                                  smtlib::ForeignText foreign)
{
  const InputText text = read_input_text(file, in, clock);
  if (!query) {
    if (std::unique_ptr<Input> input = try_read_script(file, text, err, foreign)) return input;
  }
  auto input = std::make_unique<Input>();
  input->name = make_input_name(file);
  with_located_failures(input->name,
                        [&] { input->script = smtlib::read_query(input->mgr, text.get(), query); });
  note_skipped(*input, err);
  return input;
}

std::unique_ptr<Input> read_single_query(const std::string& file, std::istream& in, std::ostream& err,
                                         PhaseClock& clock)
{
  auto input = std::make_unique<Input>();
  input->name = make_input_name(file);
  input->script = read_located(file, in, clock, [&](const InputText& text) {
    return read_script(input->mgr, text, smtlib::ForeignText::kRefused);
  });
  note_skipped(*input, err);
  return input;
}

void check_one_standard_input(std::initializer_list<std::string> files)
{
  if (std::count(files.begin(), files.end(), "-") > 1) {
    throw SubcommandFailure("lumo: several files are -, but the standard input can be read only once");
  }
}

void begin_output() { errno = 0; }

void finish_output(std::ostream& out)
{
  out.flush();
  if (!out) throw_write_failure("<stdout>", errno);
}

void throw_write_failure(const std::string& name, int reason)
{
  if (reason == EPIPE) throw SubcommandFailure("");
  if (reason == ENOMEM) throw std::bad_alloc();
  throw SubcommandFailure(
      name + ": this cannot be written: " + std::generic_category().message(reason != 0 ? reason : EIO));
}

}  // namespace lumo::commands
