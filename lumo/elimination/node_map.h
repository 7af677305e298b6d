#ifndef LUMO_ELIMINATION_NODE_MAP_H
#define LUMO_ELIMINATION_NODE_MAP_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lumo/terms/term_table.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// Maps terms to numbers by their ids; 0 means no number. It is a table until one term in kDensity has a number,
/// and an array over all ids from then on. So it is as fast as an array for many terms, and time and memory are
/// linear in the number of terms with a number.
class NodeMap
{
 public:
  /// For ids below num_ids.
  explicit NodeMap(std::size_t num_ids) : num_ids_(num_ids) {}

  [[nodiscard]] std::uint32_t get(std::size_t id) const
  {
    if (!array_.empty()) [[likely]]
      return array_[id];
    const std::uint32_t* entry = table_.find(id);
    return entry != nullptr ? *entry : 0;
  }
  /// Gives a term a number. Precondition: it has none.
  void set(std::size_t id, std::uint32_t number)
  {
    if (!array_.empty()) [[likely]] {
      array_[id] = number;
      return;
    }
    table_[id] = number;
    ids_.push_back(static_cast<std::uint32_t>(id));
    if (ids_.size() * kDensity >= num_ids_) become_array();
  }

 private:
  static constexpr std::size_t kDensity = 16;

  void become_array()
  {
    array_.resize(num_ids_);
    for (const std::uint32_t id : ids_)
      array_[id] = *table_.find(id);
    table_ = {};
    ids_ = {};
  }

  std::size_t num_ids_;
  std::vector<std::uint32_t> array_;  ///< empty while the table is in use
  TermTable<std::uint32_t, 8> table_;
  std::vector<std::uint32_t> ids_;  ///< the ids of the terms in the table
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
