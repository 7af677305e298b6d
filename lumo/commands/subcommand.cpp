#include "lumo/commands/subcommand.h"

#include <algorithm>
#include <cerrno>
#include <istream>
#include <new>
#include <ostream>
#include <system_error>

#include "lumo/commands/text_file.h"

namespace lumo::commands {

int run_subcommand(std::ostream& err, const std::function<int()>& command)
{
  try {
    return command();
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

std::string make_message(std::string_view file_name, smtlib::Place place, const std::string& sentence)
{
  return smtlib::make_located_message(file_name, smtlib::InputError(place, sentence));
}

void with_located_failures(const std::string& name, const std::function<void()>& action)
{
  try {
    action();
  } catch (const SubcommandFailure&) {
    throw;
  } catch (const smtlib::InputError& e) {
    throw SubcommandFailure(smtlib::make_located_message(name, e));
  } catch (const Exception& e) {
    throw SubcommandFailure(name + ": " + make_sentence(e));
  }
}

std::string make_input_name(const std::string& file)
{
  return file == "-" ? "<stdin>" : smtlib::make_excerpt(file);
}

std::string read_input_text(const std::string& file, std::istream& in, Progress* progress)
{
  enter(progress, file == "-" ? Activity::kWaiting : Activity::kReading);
  std::string text;
  with_located_failures(make_input_name(file),
                        [&] { text = file == "-" ? read_stream(in) : read_file(file); });
  enter(progress, Activity::kReading);
  return text;
}

std::unique_ptr<Input> read_input(const std::string& file, std::istream& in, Progress* progress)
{
  auto input = std::make_unique<Input>();
  input->name = make_input_name(file);
  const std::string text = read_input_text(file, in, progress);
  with_located_failures(input->name, [&] { input->script = smtlib::read_script(input->mgr, text); });
  return input;
}

void check_one_standard_input(std::initializer_list<std::string> files)
{
  if (std::count(files.begin(), files.end(), "-") > 1) {
    throw SubcommandFailure("lumo: several files are -, but the standard input can be read only once");
  }
}

void write_output(std::ostream& out, const std::function<void(std::ostream&)>& print)
{
  errno = 0;
  print(out);
  out.flush();
  if (!out) throw make_write_failure("<stdout>", errno);
}

SubcommandFailure make_write_failure(const std::string& name, int reason)
{
  if (reason == EPIPE) return SubcommandFailure("");
  if (reason == ENOMEM) throw std::bad_alloc();
  return SubcommandFailure(
      name + ": this cannot be written: " + std::generic_category().message(reason != 0 ? reason : EIO));
}

}  // namespace lumo::commands
