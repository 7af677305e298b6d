#include "lumo/commands/run_shell.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

#include "lumo/commands/result_file.h"
#include "lumo/commands/shell.h"
#include "lumo/commands/subcommand.h"
#include "lumo/commands/text_file.h"
#include "lumo/smtlib/command_splitter.h"

namespace lumo::commands {

namespace {

/// Waits for text and takes as much as is there; empty at the end.
std::string_view read_piece(std::istream& in, std::vector<char>& buffer)
{
  std::streambuf& source = *in.rdbuf();
  if (source.sgetc() == std::char_traits<char>::eof()) return {};
  const std::streamsize available = std::clamp<std::streamsize>(source.in_avail(), 1, std::ssize(buffer));
  return {buffer.data(), static_cast<std::size_t>(source.sgetn(buffer.data(), available))};
}

void hold_conversation(Shell& shell, std::istream& in)
{
  constexpr std::size_t kPiece = std::size_t{1} << 16U;
  std::vector<char> buffer(kPiece);
  smtlib::CommandSplitter commands;
  for (bool has_ended = false; !has_ended;) {
    const std::string_view piece = read_piece(in, buffer);
    has_ended = piece.empty();
    if (has_ended) commands.finish();
    commands.add(piece);
    for (auto command = commands.take(); command; command = commands.take()) {
      if (!shell.take(*command)) return;
    }
  }
}

/// Opens a file, or says why it cannot be read.
void open_file(const std::string& name, std::ifstream& file)
{
  file.open(name);
  if (!file) with_located_failures(make_input_name(name), [&] { (void)InputText::read_file(name); });
}

int get_status(const Shell& shell)
{
  if (shell.has_failed_check()) return kCheckFailed;
  return shell.has_failed() ? kRefused : kAnswered;
}

/// Where the certificates go, if they are wanted; that must not be where the answers go.
std::unique_ptr<ResultFile> open_certificates(const ShellOptions& options)
{
  if (!options.certificate) return {};
  auto certificates = std::make_unique<ResultFile>("certificates", *options.certificate);
  const ResultFile answers("answers", "-");
  check_results(options.file, {&answers, certificates.get()});
  certificates->open();
  return certificates;
}

/// Lets a shell take commands and returns the exit status.
int run_commands(const ShellOptions& options, std::ostream& out,
                 const std::function<void(Shell& shell)>& take_commands)
{
  check_method(options.method);
  const std::unique_ptr<ResultFile> certificates = open_certificates(options);
  Shell shell(make_input_name(options.file), options.method, out);
  shell.print_models(options.wants_models);
  if (!certificates) {
    take_commands(shell);
  } else {
    certificates->write(out, [&](std::ostream& stream) {
      shell.write_certificates(stream);
      take_commands(shell);
    });
    certificates->commit();
  }
  return get_status(shell);
}

}  // namespace

int run_shell(const ShellOptions& options, std::istream& in, std::ostream& out, std::ostream& err)
{
  return run_subcommand(err, [&] {
    std::ifstream file;
    return run_commands(options, out, [&](Shell& shell) {
      if (options.file != "-") open_file(options.file, file);
      hold_conversation(shell, options.file == "-" ? in : file);
    });
  });
}

int answer_commands(const ShellOptions& options, std::string_view text, std::ostream& out)
{
  return run_commands(options, out, [text](Shell& shell) {
    smtlib::CommandSplitter commands;
    commands.add(text);
    commands.finish();
    for (auto command = commands.take(); command; command = commands.take()) {
      if (!shell.take(*command)) break;
    }
  });
}

}  // namespace lumo::commands
