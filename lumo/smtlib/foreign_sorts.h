#ifndef LUMO_SMTLIB_FOREIGN_SORTS_H
#define LUMO_SMTLIB_FOREIGN_SORTS_H

#include <cstddef>
#include <deque>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

using Sorts = std::span<const DataType* const>;

/// A sort that the term layer does not have: a name, or an application of a name to sorts. It can also be a parameter
/// of a definition, or a sort that contains one.
class ForeignSort : public DataType
{
 public:
  /// `head` is spelled as SMT-LIB 2 text, with its indices: `Array`, `(_ FloatingPoint 8 24)`.
  ForeignSort(const TermManager* mgr, std::string_view head, Sorts args, bool has_parameter,
              std::string spelling)
      : DataType(mgr, std::move(spelling)),
        head_(head),
        args_(args.begin(), args.end()),
        has_parameter_(has_parameter)
  {}

  [[nodiscard]] const std::string& get_head() const { return head_; }
  [[nodiscard]] const std::vector<const DataType*>& get_args() const { return args_; }
  [[nodiscard]] bool has_parameter() const { return has_parameter_; }

 private:
  std::string head_;
  std::vector<const DataType*> args_;
  bool has_parameter_;
};

/// The sort as a foreign one; null if the term layer has it.
[[nodiscard]] inline const ForeignSort* as_foreign(const DataType* sort)
{
  return sort->is_opaque() ? static_cast<const ForeignSort*>(sort) : nullptr;
}
/// The sort if it is one of arrays, with an index sort and an element sort; otherwise null.
[[nodiscard]] const ForeignSort* as_array(const DataType* sort);
/// Whether the sort is a foreign one of that head, without arguments.
[[nodiscard]] bool is_sort(const DataType* sort, std::string_view head);

/// The foreign sorts of a script, one object for each. Sorts that are substituted into each other can become
/// exponentially long, so spellings have a limit.
class ForeignSortTable
{
 public:
  static constexpr std::size_t kMaxSpelling = 4096;

  explicit ForeignSortTable(TermManager& mgr) : mgr_(mgr) {}
  ForeignSortTable(const ForeignSortTable&) = delete;
  ForeignSortTable& operator=(const ForeignSortTable&) = delete;

  /// An `Exception` if the spelling is longer than the limit.
  [[nodiscard]] const DataType* make(std::string_view head, Sorts args);
  [[nodiscard]] const DataType* make_floating_point(unsigned long exponent, unsigned long significand);
  /// The parameter of definitions at that place.
  [[nodiscard]] const DataType* make_parameter(std::size_t place);
  /// Notes that a script declares sorts with that head, of which only equality is known.
  void note_uninterpreted(std::string_view head) { uninterpreted_.emplace(head); }
  [[nodiscard]] bool is_uninterpreted(const DataType* sort) const;
  /// Whether lumo knows what the values of a sort are.
  [[nodiscard]] bool is_understood(const DataType* sort) const;
  /// The sort with these sorts in the place of the parameters.
  [[nodiscard]] const DataType* substitute(const DataType* sort, Sorts args);

 private:
  TermManager& mgr_;
  std::deque<ForeignSort> sorts_;
  std::unordered_map<std::string, const ForeignSort*> by_spelling_;
  std::set<std::string, std::less<>> uninterpreted_;
};

/// Finds sorts for the parameters in `pattern` such that it becomes `sort`; false if there are none. Parameters that
/// are known already keep their sorts; the others are null in `known`.
[[nodiscard]] bool match_sort(const DataType* pattern, const DataType* sort,
                              std::vector<const DataType*>& known);

}  // namespace lumo::smtlib

#endif
