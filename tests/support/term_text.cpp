#include "tests/support/term_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace lumo::test {

namespace {

/// Precondition: the name can be spelled, and is not the name of a command.
std::string quote(const std::string& name)
{
  constexpr std::string_view kPlain = "~!@$%^&*_-+=<>.?/";
  constexpr std::array<std::string_view, 8> kWords = {"!",      "_",   "as",    "exists",
                                                      "forall", "let", "match", "par"};
  const bool is_plain =
      std::find(kWords.begin(), kWords.end(), name) == kWords.end() && !name.empty() &&
      std::isdigit(static_cast<unsigned char>(name.front())) == 0 &&
      std::all_of(name.begin(), name.end(), [&](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || kPlain.find(c) != std::string_view::npos;
      });
  return is_plain ? name : "|" + name + "|";
}

}  // namespace

std::string make_term_text(const Term* t)
{
  const Symbol* s = t->get_symbol();
  if (s->get_kind() == Kind::kConstant) return quote(s->get_name());
  if (t->get_num_args() == 0) return s->get_name();
  std::string text = "(" + s->get_name();
  for (std::size_t i = 0; i < t->get_num_args(); ++i)
    text += " " + make_term_text(t->get_arg(i));
  return text + ")";
}

}  // namespace lumo::test
