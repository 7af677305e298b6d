#include "lumo/cli/man_page.h"

#include <array>
#include <cctype>
#include <ostream>
#include <sstream>
#include <string>

#include "lumo/cli/options.h"
#include "lumo/version.h"

namespace lumo::cli {

namespace {

/// An example: its purpose, and the commands
struct Example
{
  std::string_view purpose;
  std::string_view lines;
};

constexpr std::array<Example, 4> kExamples = {{
    {"Solve a script and print a checked model of it:", "lumo solve problem.smt2 --model"},
    {"The same with another solver, for at most a minute:",
     "lumo solve problem.smt2 --model --solver 'cvc5 --lang smt2' --timeout 60"},
    {"The same in steps, with any solver in between:",
     "lumo simplify problem.smt2 -o rest.smt2 --trail trail.smt2\n"
     "z3 rest.smt2 > model.txt\n"
     "lumo extend problem.smt2 --trail trail.smt2 --model model.txt > full.txt\n"
     "lumo check problem.smt2 --model full.txt"},
    {"Draw the script's terms, with the applications marked that elimination removes:",
     "lumo dot problem.smt2 | dot -Tsvg -o graph.svg"},
}};

/// A text with roff's escapes. In typed text, dashes and quotes are those of the keyboard.
std::string escape_roff(std::string_view text, bool is_typed)
{
  std::string roff;
  for (const char c : text) {
    if (c == '\\') {
      roff += "\\e";
    } else if (c == '-' && is_typed) {
      roff += "\\-";
    } else if (c == '\'' && is_typed) {
      roff += "\\(aq";
    } else {
      roff += c;
    }
  }
  return roff;
}

std::string escape_typed(std::string_view text) { return escape_roff(text, true); }

/// A text in lines of limited length. No line starts like a roff request.
std::string make_paragraph(const std::string& text)
{
  constexpr std::size_t kLongest = 78;
  std::string lines;
  std::string line;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    word = escape_roff(word, false);
    if (!line.empty() && line.size() + 1 + word.size() > kLongest) {
      lines += line + "\n";
      line.clear();
    }
    if (line.empty() && (word.front() == '.' || word.front() == '\'')) word.insert(0, "\\&");
    line += (line.empty() ? "" : " ") + word;
  }
  return lines + line + "\n";
}

/// A description as sentences.
std::string make_sentences(const std::string& description)
{
  return make_paragraph(description.ends_with('.') ? description : description + ".");
}

std::string make_bold(std::string_view typed) { return "\\fB" + escape_typed(typed) + "\\fR"; }
std::string make_italic(std::string_view typed) { return "\\fI" + escape_typed(typed) + "\\fR"; }

/// All names of an option and that of its value.
std::string make_tag(const CLI::Option& option)
{
  std::string tag;
  for (const std::string& name : list_names(option))
    tag += (tag.empty() ? "" : ", ") + make_bold(name);
  return takes_value(option) ? tag + " " + make_italic(option.get_type_name()) : tag;
}

/// The form of an option in the synopsis: its longest name, in brackets if it is optional.
std::string make_usage(const CLI::Option& option)
{
  std::string usage = make_bold(list_names(option).back());
  if (takes_value(option)) usage += "\\ " + make_italic(option.get_type_name());
  return option.get_required() ? usage : "[" + usage + "]";
}

void print_usage(std::ostream& out, const CLI::App& subcommand)
{
  out << ".SY lumo\n" << make_bold(subcommand.get_name()) << '\n';
  for (const CLI::Option* option : list_options(subcommand)) {
    if (option != subcommand.get_help_ptr()) out << make_usage(*option) << '\n';
  }
  for (const CLI::Option* argument : list_arguments(subcommand))
    out << make_italic(argument->get_name(true)) << (takes_several(*argument) ? "\\ ...\n" : "\n");
  out << ".YS\n";
}

void print_entry(std::ostream& out, const std::string& tag, const std::string& text)
{
  out << ".TP\n" << tag << '\n' << text;
}

void print_subcommand(std::ostream& out, const CLI::App& subcommand)
{
  out << ".SS \"lumo " << subcommand.get_name() << "\"\n" << make_sentences(subcommand.get_description());
  for (const CLI::Option* argument : list_arguments(subcommand))
    print_entry(out, make_italic(argument->get_name(true)), make_sentences(argument->get_description()));
  for (const CLI::Option* option : list_options(subcommand)) {
    if (option != subcommand.get_help_ptr())
      print_entry(out, make_tag(*option), make_sentences(option->get_description()));
  }
}

void print_examples(std::ostream& out)
{
  out << ".SH EXAMPLES\n";
  const char* separator = "";
  for (const Example& example : kExamples) {
    out << separator << make_paragraph(std::string(example.purpose)) << ".PP\n.RS 4\n.EX\n"
        << escape_typed(example.lines) << "\n.EE\n.RE\n";
    separator = ".PP\n";
  }
}

void print_description(std::ostream& out, const CLI::App& app)
{
  std::string what_it_does = app.get_description();
  what_it_does.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(what_it_does.front())));
  out << ".SH DESCRIPTION\n.B lumo\n"
      << make_sentences(what_it_does)
      << make_paragraph(
             "A term is unconstrained if it can take any value, whatever the rest of the script is. A "
             "constant that occurs once is unconstrained, and often an application to it, too.")
      << ".PP\nFiles are SMT-LIB 2 scripts over Booleans and bit-vectors, and models as\nsolvers print "
         "them.\n"
         "The file name\n.B \\-\nstands for the standard input.\n";
}

}  // namespace

void print_man_page(std::ostream& out, const CLI::App& app, std::string_view date)
{
  out << ".\\\" Made from lumo's table of options.\n.TH LUMO 1 \"" << date << "\" \"lumo " << kVersion
      << "\"\n"
      << ".SH NAME\nlumo \\- eliminate unconstrained terms from SMT-LIB 2 scripts\n.SH SYNOPSIS\n";
  for (const CLI::App* subcommand : list_subcommands(app))
    print_usage(out, *subcommand);
  print_description(out, app);
  out << ".SH OPTIONS\n";
  for (const CLI::Option* option : list_options(app))
    print_entry(out, make_tag(*option), make_sentences(option->get_description()));
  out << ".PP\n.B lumo\n.I SUBCOMMAND\n.B \\-\\-help\nlists the options of one subcommand.\n.SH "
         "SUBCOMMANDS\n";
  for (const CLI::App* subcommand : list_subcommands(app))
    print_subcommand(out, *subcommand);
  out << ".SH EXIT STATUS\n";
  for (const ExitStatus& status : kExitStatuses)
    print_entry(out, std::to_string(status.status), make_paragraph(std::string(status.meaning)));
  print_examples(out);
  out << ".SH SEE ALSO\n.BR z3 (1),\n.BR cvc5 (1)\n";
}

}  // namespace lumo::cli
