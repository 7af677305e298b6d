#ifndef LUMO_SMTLIB_FOREIGN_VALUE_H
#define LUMO_SMTLIB_FOREIGN_VALUE_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "lumo/terms/term_manager.h"

namespace lumo::smtlib {

class ArrayValue;

/// The value of a term of any sort, as far as lumo can compute it: a numeral, true, false, the placeholder of an element
/// of an uninterpreted sort, or an array of values. Neither if it is not known.
struct ForeignValue
{
  const Term* scalar = nullptr;
  std::shared_ptr<const ArrayValue> array{};

  [[nodiscard]] bool is_known() const { return scalar != nullptr || array != nullptr; }
};

/// A node of the tree of an array's entries. Trees share nodes.
struct ArrayEntry
{
  using Link = std::shared_ptr<const ArrayEntry>;

  const Term* index;
  ForeignValue value;
  Link left;
  Link right;
};

/// An array value: a default, or a rule that says what its default is for each index, and entries.
///
/// Entries form a treap (R. Seidel, C. R. Aragon, Randomized search trees): ordered by index, a heap by a hash of it. So
/// the depth is logarithmic, and storing copies only the path to the entry.
class ArrayValue
{
 public:
  /// The value at an index without an entry, where it is not the same for all
  using Rule = std::function<ForeignValue(const Term* index)>;

  explicit ArrayValue(ForeignValue value) : default_(std::move(value)) {}
  explicit ArrayValue(Rule rule) : rule_(std::make_shared<const Rule>(std::move(rule))) {}

  /// Not known if a rule says it.
  [[nodiscard]] const ForeignValue& get_default() const { return default_; }
  [[nodiscard]] const std::shared_ptr<const Rule>& get_rule() const { return rule_; }
  [[nodiscard]] ForeignValue select(const Term* index) const;
  [[nodiscard]] bool has_entry(const Term* index) const { return find(index) != nullptr; }
  /// This array with another value at an index.
  [[nodiscard]] ArrayValue store(const Term* index, const ForeignValue& value) const;
  [[nodiscard]] std::size_t get_num_entries() const { return num_entries_; }
  [[nodiscard]] const ArrayEntry::Link& get_root() const { return root_; }

 private:
  [[nodiscard]] const ArrayEntry* find(const Term* index) const;

  ForeignValue default_;
  std::shared_ptr<const Rule> rule_;
  ArrayEntry::Link root_;
  std::size_t num_entries_ = 0;
};

/// Whether two values of one sort are equal; nothing if that is not known. Values of arrays with other defaults are equal
/// if entries cover all indices.
[[nodiscard]] std::optional<bool> are_equal(const ForeignValue& lhs, const ForeignValue& rhs,
                                            const DataType* sort);

}  // namespace lumo::smtlib

#endif
