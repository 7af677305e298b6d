#include "lumo/smtlib/z3_parser.h"

#include <charconv>
#include <new>
#include <string>
#include <string_view>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

/// Takes a piece from the front of the text, if it is there.
bool take(std::string_view& text, std::string_view piece)
{
  if (!text.starts_with(piece)) return false;
  text.remove_prefix(piece.size());
  return true;
}

bool take_number(std::string_view& text, std::size_t& number)
{
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return failure == std::errc();
}

/// A message of Z3 as one sentence: without line ends and the escapes within its quotation marks.
std::string make_sentence(std::string_view message)
{
  constexpr std::string_view kBlanks = " \t\r\n";
  std::string sentence;
  for (const char c : message) {
    if (c == '\\') continue;
    const bool is_blank = kBlanks.find(c) != std::string_view::npos;
    if (!is_blank) {
      sentence += c;
    } else if (!sentence.empty() && sentence.back() != ' ') {
      sentence += ' ';
    }
  }
  while (!sentence.empty() && sentence.back() == ' ')
    sentence.pop_back();
  return make_excerpt(sentence);
}

/// Z3 reports the first mistake in a text as `(error "line 3 column 10: unknown constant y")`, perhaps with
/// others behind it. It counts columns from 0, save in the first line.
[[noreturn]] void refuse_text(const RewrittenText& text, std::string_view report)
{
  std::string_view rest = report;
  Place place;
  const bool is_located = take(rest, "(error \"line ") && take_number(rest, place.line) &&
                          take(rest, " column ") && take_number(rest, place.column) && take(rest, ": ");
  if (!is_located) {
    const std::string sentence = make_sentence(report);
    if (sentence == "out of memory") throw std::bad_alloc();  // which Z3 says in words alone
    throw Exception("the text was not understood: " + sentence);
  }
  ++place.column;
  throw InputError(text.find_original(place), make_sentence(rest.substr(0, rest.find("\")\n"))));
}

}  // namespace

ParsedText::ParsedText(const RewrittenText& text)
    : assertions_(
          Z3_parse_smtlib2_string(z3_, text.get_text().c_str(), 0, nullptr, nullptr, 0, nullptr, nullptr))
{
  const Z3_error_code code = Z3_get_error_code(z3_);
  if (code != Z3_OK) refuse_text(text, Z3_get_error_msg(z3_, code));
  Z3_ast_vector_inc_ref(z3_, assertions_);
}

ParsedText::~ParsedText() { Z3_ast_vector_dec_ref(z3_, assertions_); }

}  // namespace lumo::smtlib
