#include "lumo/smtlib/foreign_value.h"

#include <vector>

#include "lumo/numbers/hash_mix.h"
#include "lumo/smtlib/foreign_sorts.h"

namespace lumo::smtlib {

namespace {

using Link = ArrayEntry::Link;

std::size_t get_priority(const Term* index) { return mix_hash(0, std::uintptr_t{index->get_id()}); }

bool is_above(const Term* lhs, const Term* rhs)
{
  const std::size_t a = get_priority(lhs);
  const std::size_t b = get_priority(rhs);
  return a != b ? a > b : lhs->get_id() > rhs->get_id();
}

Link make_entry(const ArrayEntry& entry, Link left, Link right)
{
  return std::make_shared<const ArrayEntry>(
      ArrayEntry{entry.index, entry.value, std::move(left), std::move(right)});
}

struct Halves
{
  Link less;
  Link greater;
};

// The functions that follow recurse to the depth of a tree, which is logarithmic.
// NOLINTBEGIN(misc-no-recursion)

/// The entries below and above an index, which has none.
Halves split(const Link& tree, const Term* index)
{
  if (tree == nullptr) return {};
  if (tree->index->get_id() < index->get_id()) {
    Halves halves = split(tree->right, index);
    return {make_entry(*tree, tree->left, std::move(halves.less)), std::move(halves.greater)};
  }
  Halves halves = split(tree->left, index);
  return {std::move(halves.less), make_entry(*tree, std::move(halves.greater), tree->right)};
}

Link insert(const Link& tree, const Term* index, const ForeignValue& value)
{
  if (tree == nullptr || (tree->index != index && is_above(index, tree->index))) {
    Halves halves = split(tree, index);
    return make_entry({index, value, {}, {}}, std::move(halves.less), std::move(halves.greater));
  }
  if (tree->index == index) return make_entry({index, value, {}, {}}, tree->left, tree->right);
  if (index->get_id() < tree->index->get_id())
    return make_entry(*tree, insert(tree->left, index, value), tree->right);
  return make_entry(*tree, tree->left, insert(tree->right, index, value));
}

/// The number of indices of a sort, if it is at most the limit; otherwise a larger number.
std::size_t count_indices(const DataType* sort, std::size_t limit)
{
  if (sort->is_bool()) return 2;
  if (!sort->is_bit_vector() || sort->get_width() >= 40) return limit + 1;
  return std::size_t{1} << sort->get_width();
}

void list_entries(const Link& tree, std::vector<const ArrayEntry*>& entries)
{
  if (tree == nullptr) return;
  list_entries(tree->left, entries);
  entries.push_back(tree.get());
  list_entries(tree->right, entries);
}

std::optional<bool> agree_at(const ArrayValue& lhs, const ArrayValue& rhs,
                             const std::vector<const ArrayEntry*>& entries, const DataType* sort)
{
  bool is_known = true;
  for (const ArrayEntry* entry : entries) {
    const std::optional<bool> agrees = are_equal(lhs.select(entry->index), rhs.select(entry->index), sort);
    if (agrees.has_value() && !*agrees) return false;
    is_known = is_known && agrees.has_value();
  }
  return is_known ? std::optional(true) : std::nullopt;
}

std::optional<bool> are_arrays_equal(const ArrayValue& lhs, const ArrayValue& rhs, const ForeignSort& sort)
{
  if (lhs.get_root() == rhs.get_root() && lhs.get_default().scalar != nullptr &&
      lhs.get_default().scalar == rhs.get_default().scalar)
    return true;
  const DataType* element = sort.get_args()[1];
  std::vector<const ArrayEntry*> entries;
  list_entries(lhs.get_root(), entries);
  list_entries(rhs.get_root(), entries);
  const std::optional<bool> entries_agree = agree_at(lhs, rhs, entries, element);
  if (entries_agree.has_value() && !*entries_agree) return false;
  const bool have_same_rule = lhs.get_rule() != nullptr && lhs.get_rule() == rhs.get_rule();
  const std::optional<bool> defaults_agree =
      have_same_rule ? std::optional(true) : are_equal(lhs.get_default(), rhs.get_default(), element);
  if (defaults_agree.has_value() && *defaults_agree) return entries_agree;

  // The defaults matter if some index has no entry.
  std::size_t num_covered = rhs.get_num_entries();
  std::vector<const ArrayEntry*> own;
  list_entries(lhs.get_root(), own);
  for (const ArrayEntry* entry : own) {
    if (!rhs.has_entry(entry->index)) ++num_covered;
  }
  const DataType* index = sort.get_args()[0];
  if (count_indices(index, num_covered) <= num_covered) return entries_agree;
  const bool has_others = index->is_bool() || index->is_bit_vector();
  return has_others ? defaults_agree : std::nullopt;
}

}  // namespace

const ArrayEntry* ArrayValue::find(const Term* index) const
{
  const ArrayEntry* entry = root_.get();
  while (entry != nullptr && entry->index != index)
    entry = index->get_id() < entry->index->get_id() ? entry->left.get() : entry->right.get();
  return entry;
}

ForeignValue ArrayValue::select(const Term* index) const
{
  if (const ArrayEntry* entry = find(index); entry != nullptr) return entry->value;
  return rule_ != nullptr ? (*rule_)(index) : default_;
}

ArrayValue ArrayValue::store(const Term* index, const ForeignValue& value) const
{
  ArrayValue stored = *this;
  if (!has_entry(index)) ++stored.num_entries_;
  stored.root_ = insert(root_, index, value);
  return stored;
}

std::optional<bool> are_equal(const ForeignValue& lhs, const ForeignValue& rhs, const DataType* sort)
{
  if (lhs.scalar != nullptr && rhs.scalar != nullptr) return lhs.scalar == rhs.scalar;
  const ForeignSort* array = as_array(sort);
  if (array == nullptr || lhs.array == nullptr || rhs.array == nullptr) return std::nullopt;
  return are_arrays_equal(*lhs.array, *rhs.array, *array);
}

// NOLINTEND(misc-no-recursion)

}  // namespace lumo::smtlib
