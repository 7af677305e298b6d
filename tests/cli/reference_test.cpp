// The manual page and the completion for bash, which are made from the table of options while lumo is built.

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_lumo.h"
#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

namespace lumo::test {
namespace {

/// The first words of the lines of a section of the help, such as the names of subcommands or options.
std::vector<std::string> read_help(const std::vector<std::string>& args, const std::string& section)
{
  const TemporaryFolder folder;
  std::vector<std::string> words;
  std::istringstream help(run_lumo(args, folder.get_path()).out);
  bool is_inside = false;
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with("  ") && line[2] != ' ') {
      if (is_inside) words.push_back(line.substr(2, line.find(' ', 2) - 2));
    } else if (!line.starts_with(" ")) {
      is_inside = line == section + ":";
    }
  }
  return words;
}

std::vector<std::string> list_subcommands() { return read_help({"--help"}, "Subcommands"); }

std::set<std::string> list_options(const std::vector<std::string>& subcommand)
{
  std::vector<std::string> args = subcommand;
  args.emplace_back("--help");
  std::set<std::string> options;
  for (const std::string& names : read_help(args, "Options")) {
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, ',');)
      options.insert(name);
  }
  return options;
}

TEST(Reference, IsComparedWithAllThatHelpLists)
{
  EXPECT_EQ(list_subcommands(),
            (std::vector<std::string>{"solve", "simplify", "extend", "check", "dot", "invert", "shell"}));
  EXPECT_EQ(list_options({}), (std::set<std::string>{"-h", "--help", "--version"}));
  EXPECT_EQ(list_options({"simplify"}),
            (std::set<std::string>{"-h", "--help", "-o", "--output", "--query", "--trail", "--certificate"}));
}

// -----------------------------------------------------------------------------------------------------------
// The manual page

/// A part of the page, from the line that starts it to the next part, without roff's escapes.
std::string read_part(const std::string& start)
{
  std::ifstream file(LUMO_MAN_PAGE);
  std::string part;
  bool is_inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(".SH") || line.starts_with(".SS")) is_inside = line == start;
    if (is_inside) part += line + "\n";
  }
  for (const std::string escape : {"\\fB", "\\fI", "\\fR", "\\"}) {
    for (std::size_t place = part.find(escape); place != std::string::npos; place = part.find(escape))
      part.erase(place, escape.size());
  }
  return part;
}

bool has_word(const std::string& text, const std::string& word)
{
  constexpr std::string_view kWordCharacters = "abcdefghijklmnopqrstuvwxyz-";
  for (std::size_t place = text.find(word); place != std::string::npos; place = text.find(word, place + 1)) {
    const char before = place == 0 ? ' ' : text[place - 1];
    const std::size_t end = place + word.size();
    const char after = end == text.size() ? ' ' : text[end];
    if (kWordCharacters.find(before) == std::string_view::npos &&
        kWordCharacters.find(after) == std::string_view::npos)
      return true;
  }
  return false;
}

TEST(ManPage, HasEverySubcommandAndOption)
{
  const std::string synopsis = read_part(".SH SYNOPSIS");
  const std::string general = read_part(".SH OPTIONS");
  for (const std::string& option : list_options({}))
    EXPECT_TRUE(has_word(general, option)) << option;
  for (const std::string& subcommand : list_subcommands()) {
    SCOPED_TRACE(subcommand);
    EXPECT_NE(synopsis.find("\n" + subcommand + "\n"), std::string::npos);
    const std::string part = read_part(".SS \"lumo " + subcommand + "\"");
    EXPECT_NE(part.find("\nFILE\n"), std::string::npos) << part;
    for (const std::string& option : list_options({subcommand}))
      EXPECT_TRUE(has_word(part, option) || has_word(general, option)) << option;
  }
}

TEST(ManPage, HasTheUsualParts)
{
  const std::vector<std::string> parts = {"NAME",        "SYNOPSIS",    "DESCRIPTION", "OPTIONS",
                                          "SUBCOMMANDS", "EXIT STATUS", "EXAMPLES",    "SEE ALSO"};
  std::vector<std::string> found;
  std::ifstream file(LUMO_MAN_PAGE);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(".SH ")) found.push_back(line.substr(4));
  }
  EXPECT_EQ(found, parts);
  for (const std::string status : {"0", "1", "2", "3"})
    EXPECT_NE(read_part(".SH EXIT STATUS").find(".TP\n" + status + "\n"), std::string::npos) << status;
}

#ifdef GROFF_PROGRAM
TEST(ManPage, IsSetWithoutWarnings)
{
  const TemporaryFolder folder;
  const Outcome outcome =
      run_program(GROFF_PROGRAM, {"-man", "-ww", "-Tutf8", LUMO_MAN_PAGE}, folder.get_path());
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("lumo - eliminate"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.err, "");
}
#endif

// -----------------------------------------------------------------------------------------------------------
// The completion

#ifdef BASH_PROGRAM
using Offers = std::set<std::string>;

/// The completions that bash offers for the last of the words.
Offers complete(const std::vector<std::string>& words, const std::filesystem::path& folder)
{
  constexpr const char* kCompletingScript =
      "source \"$1\" && shift && COMP_WORDS=(\"$@\") && COMP_CWORD=$(($# - 1)) && _lumo && "
      "if [ ${#COMPREPLY[@]} -ne 0 ]; then printf '%s\\n' \"${COMPREPLY[@]}\"; fi";
  std::vector<std::string> args = {"--norc", "-u", "-c", kCompletingScript, "bash", LUMO_COMPLETION, "lumo"};
  args.insert(args.end(), words.begin(), words.end());
  const Outcome outcome = run_program(BASH_PROGRAM, args, folder);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  Offers offers;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);)
    offers.insert(line);
  return offers;
}

TEST(Completion, OffersEverySubcommandAndOption)
{
  const TemporaryFolder folder;
  const std::vector<std::string> subcommands = list_subcommands();
  EXPECT_EQ(complete({""}, folder.get_path()), Offers(subcommands.begin(), subcommands.end()));
  EXPECT_EQ(complete({"-"}, folder.get_path()), list_options({}));
  for (const std::string& subcommand : subcommands)
    EXPECT_EQ(complete({subcommand, "-"}, folder.get_path()), list_options({subcommand})) << subcommand;
}

struct CompletionRow
{
  std::vector<std::string> words;
  Offers offers;
};

TEST(Completion, OffersWhatFits)
{
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.get_path() / "folder");
  for (const std::string name : {"a.smt2", "a b.smt2", "answer.txt", "folder/only.txt", "-dash.smt2"})
    folder.write(name, "");
  const Offers all = {"a.smt2", "a b.smt2", "answer.txt", "folder", "-dash.smt2"};
  const Offers scripts = {"a.smt2", "a b.smt2", "folder", "-dash.smt2"};

  const std::vector<CompletionRow> rows = {
      {{"s"}, {"solve", "simplify", "shell"}},
      {{"so"}, {"solve"}},
      {{"x"}, {}},
      {{"--v"}, {"--version"}},
      {{"--version", ""}, {"solve", "simplify", "extend", "check", "dot", "invert", "shell"}},
      {{"solve", "--s"}, {"--solver", "--stats"}},
      {{"solve", "a.smt2", "--m"}, {"--model"}},
      {{"dot", "--m"}, {}},
      {{"solve", ""}, scripts},
      {{"solve", "--model", ""}, scripts},
      {{"solve", "a"}, {"a.smt2", "a b.smt2"}},
      {{"solve", "an"}, {"answer.txt"}},
      {{"solve", "f"}, {"folder"}},
      {{"solve", "folder/"}, {"folder/only.txt"}},
      {{"invert", "a.smt2", "a"}, {"a.smt2", "a b.smt2"}},
      {{"invert", "--", "-"}, {"-dash.smt2"}},
      {{"simplify", "-o", ""}, all},
      {{"simplify", "--output", "an"}, {"answer.txt"}},
      {{"simplify", "--trail", "="}, all},
      {{"simplify", "--trail", "=", "an"}, {"answer.txt"}},
      {{"extend", "a.smt2", "--trail", "t", "--model", "an"}, {"answer.txt"}},
      {{"check", "--model", "an"}, {"answer.txt"}},
      {{"solve", "--timeout", ""}, {}},
      {{"solve", "--solver", "no program has this name"}, {}},
      {{"sovle", ""}, {}},
      {{"sovle", "-"}, {}},
  };
  for (const CompletionRow& row : rows)
    EXPECT_EQ(complete(row.words, folder.get_path()), row.offers) << testing::PrintToString(row.words);
  EXPECT_TRUE(complete({"solve", "--solver", "bas"}, folder.get_path()).contains("bash"));
}
#endif

}  // namespace
}  // namespace lumo::test
