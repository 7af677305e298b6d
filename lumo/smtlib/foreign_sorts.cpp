#include "lumo/smtlib/foreign_sorts.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

/// No sort of a text is spelled like this.
constexpr std::string_view kParameterHead = "\x01";

bool contains_parameter(const DataType* sort)
{
  const ForeignSort* foreign = as_foreign(sort);
  return foreign != nullptr && foreign->has_parameter();
}

bool is_parameter(const ForeignSort& sort) { return sort.get_head().starts_with(kParameterHead); }

std::size_t get_place(const ForeignSort& parameter)
{
  std::size_t place = 0;
  const std::string& head = parameter.get_head();
  std::from_chars(head.data() + kParameterHead.size(), head.data() + head.size(), place);
  return place;
}

}  // namespace

const ForeignSort* as_array(const DataType* sort)
{
  const ForeignSort* foreign = as_foreign(sort);
  const bool is_array =
      foreign != nullptr && foreign->get_head() == "Array" && foreign->get_args().size() == 2;
  return is_array ? foreign : nullptr;
}

bool is_sort(const DataType* sort, std::string_view head)
{
  const ForeignSort* foreign = as_foreign(sort);
  return foreign != nullptr && foreign->get_args().empty() && foreign->get_head() == head;
}

const DataType* ForeignSortTable::make(std::string_view head, Sorts args)
{
  std::string spelling(head);
  for (const DataType* arg : args)
    spelling += ' ' + arg->to_string();
  if (!args.empty()) spelling = '(' + spelling + ')';
  if (spelling.size() > kMaxSpelling) {
    throw Exception("a sort is longer than " + std::to_string(kMaxSpelling) +
                    " characters, but at most that many were expected");
  }
  const auto [place, is_new] = by_spelling_.try_emplace(std::move(spelling), nullptr);
  if (is_new) {
    const bool has_parameter =
        head.starts_with(kParameterHead) || std::any_of(args.begin(), args.end(), contains_parameter);
    place->second = &sorts_.emplace_back(&mgr_, head, args, has_parameter, place->first);
  }
  return place->second;
}

const DataType* ForeignSortTable::make_floating_point(unsigned long exponent, unsigned long significand)
{
  return make("(_ FloatingPoint " + std::to_string(exponent) + ' ' + std::to_string(significand) + ')', {});
}

const DataType* ForeignSortTable::make_parameter(std::size_t place)
{
  return make(std::string(kParameterHead) + std::to_string(place), {});
}

bool ForeignSortTable::is_uninterpreted(const DataType* sort) const
{
  const ForeignSort* foreign = as_foreign(sort);
  return foreign != nullptr && uninterpreted_.contains(foreign->get_head());
}

bool ForeignSortTable::is_understood(const DataType* sort) const
{
  // Arrays of arrays are nested to the right only: indices are no arrays.
  const ForeignSort* array = as_array(sort);
  for (; array != nullptr; array = as_array(sort)) {
    const DataType* index = array->get_args()[0];
    if (index->is_opaque() && !is_uninterpreted(index)) return false;
    sort = array->get_args()[1];
  }
  return !sort->is_opaque() || is_uninterpreted(sort);
}

// The depth is limited by that of spellings.
// NOLINTNEXTLINE(misc-no-recursion)
const DataType* ForeignSortTable::substitute(const DataType* sort, Sorts args)
{
  if (!contains_parameter(sort)) return sort;
  const ForeignSort& foreign = *as_foreign(sort);
  if (is_parameter(foreign)) return args[get_place(foreign)];
  std::vector<const DataType*> substituted;
  for (const DataType* arg : foreign.get_args())
    substituted.push_back(substitute(arg, args));
  return make(foreign.get_head(), substituted);
}

// The depth is limited by that of spellings.
// NOLINTNEXTLINE(misc-no-recursion)
bool match_sort(const DataType* pattern, const DataType* sort, std::vector<const DataType*>& known)
{
  if (!contains_parameter(pattern)) return pattern == sort;
  const ForeignSort& foreign = *as_foreign(pattern);
  if (is_parameter(foreign)) {
    const DataType*& found = known[get_place(foreign)];
    if (found == nullptr) found = sort;
    return found == sort;
  }
  const ForeignSort* other = as_foreign(sort);
  const bool may_match = other != nullptr && other->get_head() == foreign.get_head() &&
                         other->get_args().size() == foreign.get_args().size();
  if (!may_match) return false;
  for (std::size_t i = 0; i < foreign.get_args().size(); ++i) {
    if (!match_sort(foreign.get_args()[i], other->get_args()[i], known)) return false;
  }
  return true;
}

}  // namespace lumo::smtlib
