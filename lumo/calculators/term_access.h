#ifndef LUMO_CALCULATORS_TERM_ACCESS_H
#define LUMO_CALCULATORS_TERM_ACCESS_H

// How the calculators read numerals. They can be compiled with the terms of another program, so they use only the
// functions that every term layer has. If a layer offers a faster way to the same result, they use it; the choice
// is made at compile time. Private to the module: every source that includes this header has its own copy.

#include <array>
#include <concepts>
#include <optional>
#include <vector>

#include "lumo/numbers/qnumber.h"
#include "lumo/terms/term_manager.h"

namespace lumo::adhoccalculator {

namespace {  // NOLINT(google-build-namespaces): private to each source of the module by design

/// Whether numerals can be read in place, without a search and a copy: `find_number(s)` points to the number of
/// a numeral and is null for every other symbol. It agrees with `is_number(s, out)`.
template <class Manager>
concept HasFindNumber = requires(const Manager* mgr, const Symbol* s)
{
  {
    mgr->find_number(s)
    } -> std::same_as<const QNumber*>;
};

inline constinit const QNumber kZeroNumber;

/// Whether a term is a numeral.
template <class Manager>
[[maybe_unused]] bool is_numeral(const Manager* mgr, const Term* term)
{
  if constexpr (HasFindNumber<Manager>) {
    return mgr->find_number(term->get_symbol()) != nullptr;
  } else {
    return mgr->is_number(term->get_symbol(), nullptr);
  }
}

/// The number of a numeral, or nothing: a pointer that may be null, or an optional.
template <class Manager>
[[maybe_unused]] auto find_numeral(const Manager* mgr, const Term* term)
{
  if constexpr (HasFindNumber<Manager>) {
    return mgr->find_number(term->get_symbol());
  } else {
    std::optional<QNumber> number(std::in_place);
    if (!mgr->is_number(term->get_symbol(), &*number)) number.reset();
    return number;
  }
}

/// The number of a numeral, 0 for any other term: a reference that lives as long as the manager, or a copy.
template <class Manager>
[[maybe_unused]] decltype(auto) read_number(const Manager* mgr, const Term* term)
{
  if constexpr (HasFindNumber<Manager>) {
    const QNumber* number = mgr->find_number(term->get_symbol());
    return number != nullptr ? *number : kZeroNumber;
  } else {
    QNumber number;
    mgr->is_number(term->get_symbol(), &number);
    return number;
  }
}

/// The argument list of a functor, for one or more of its calls: an array if the functor takes one, otherwise a
/// vector.
template <class Functor, std::same_as<const Term*>... Terms>
[[maybe_unused]] auto make_arguments(Terms... terms)
{
  using Array = std::array<const Term*, sizeof...(Terms)>;
  if constexpr (requires(Functor functor, TermManager * mgr, const Symbol* s, const Array& args) {
                  functor(mgr, s, args);
                })
  {
    return Array{terms...};
  } else {
    return std::vector<const Term*>{terms...};
  }
}

}  // namespace

}  // namespace lumo::adhoccalculator

#endif
