#include "lumo/smtlib/name_printer.h"

#include <algorithm>
#include <array>
#include <optional>

#include "lumo/smtlib/input_error.h"
#include "lumo/smtlib/symbol_text.h"

namespace lumo::smtlib {

namespace {

/// Writes the literal of a number below 2^64, with all digits of its width.
void write_digits(TextBuffer& out, unsigned long number, unsigned long width)
{
  const unsigned num_bits = width % 4 == 0 ? 4 : 1;  // for each digit
  const unsigned long num_digits = width / num_bits;
  std::array<char, 64> digits;
  for (unsigned long i = num_digits; i-- > 0; number >>= num_bits)
    digits[i] = "0123456789abcdef"[number & ((1U << num_bits) - 1)];
  out << (num_bits == 4 ? "#x" : "#b") << std::string_view(digits.data(), num_digits);
}

void write_numeral(TextBuffer& out, const Symbol* symbol)
{
  const DataType* sort = symbol->get_output_type();
  long number = 0;
  constexpr unsigned long kWordWidth = 64;
  if (sort->get_width() <= kWordWidth && sort->get_manager()->find_number(symbol)->get_word(number)) {
    write_digits(out, static_cast<unsigned long>(number), sort->get_width());
  } else {
    out << symbol->copy_name();
  }
}

/// Whether a name consists of letters, digits and a few signs, has a digit and does not begin with one: most names are
/// like this, and no such name needs bars or is a reserved word.
bool is_plain(std::string_view name)
{
  bool has_digit = false;
  for (const char c : name) {
    const bool is_digit = c >= '0' && c <= '9';
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!is_digit && !is_letter && c != '_' && c != '!' && c != '.') return false;
    has_digit = has_digit || is_digit;
  }
  return has_digit && (name.front() < '0' || name.front() > '9');
}

}  // namespace

void write_name(TextBuffer& out, const Symbol* symbol)
{
  if (const std::optional<std::string_view> name = symbol->find_name(); name) {
    out << *name;
  } else if (symbol->get_kind() == Kind::kNumeral) {
    write_numeral(out, symbol);
  } else {
    // The only constants without a stored name are fresh constants.
    const FreshSymbol& fresh = *static_cast<const FreshSymbol*>(symbol);
    out << fresh.get_prefix() << '!' << fresh.get_number();
  }
}

std::string make_name_excerpt(const Term* constant)
{
  return make_excerpt(constant->get_symbol()->copy_name());
}

bool ConstantNames::note(const Symbol* constant)
{
  if (const std::optional<std::string_view> name = constant->find_name(); name) return note(*name);
  const std::string& prefix = static_cast<const FreshSymbol*>(constant)->get_prefix();
  if (&prefix != prefix_) {
    // The digits at the end of a name make no difference.
    prefix_needs_bars_ = note(prefix + "!0");
    prefix_ = &prefix;
  }
  return prefix_needs_bars_;
}

bool ConstantNames::note(std::string_view name)
{
  if (name.starts_with('s')) {
    const std::size_t last = std::min(name.find_first_not_of('!', 1), name.size());
    most_marks_ = std::max(most_marks_, last - 1);
  }
  return !is_plain(name) && needs_bars(name);
}

}  // namespace lumo::smtlib
