#include "lumo/commands/run_shell.h"

#include <algorithm>
#include <fstream>
#include <istream>
#include <ostream>
#include <string_view>
#include <vector>

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
  if (shell.has_wrong_model()) return kCheckFailed;
  return shell.has_failed() ? kRefused : kAnswered;
}

}  // namespace

int run_shell(const ShellOptions& options, std::istream& in, std::ostream& out, std::ostream& err)
{
  return run_subcommand(err, [&] {
    check_method(options.method);
    Shell shell(make_input_name(options.file), options.method, out);
    shell.print_models(options.wants_models);
    if (options.file == "-") {
      hold_conversation(shell, in);
    } else {
      std::ifstream file;
      open_file(options.file, file);
      hold_conversation(shell, file);
    }
    return get_status(shell);
  });
}

int answer_commands(const ShellOptions& options, std::string_view text, std::ostream& out)
{
  Shell shell(make_input_name(options.file), options.method, out);
  shell.print_models(options.wants_models);
  smtlib::CommandSplitter commands;
  commands.add(text);
  commands.finish();
  for (auto command = commands.take(); command; command = commands.take()) {
    if (!shell.take(*command)) break;
  }
  return get_status(shell);
}

}  // namespace lumo::commands
