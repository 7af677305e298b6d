// Releasing terms: marks, and clearing a manager.

#include <algorithm>
#include <cassert>
#include <optional>
#include <string_view>

#include "lumo/terms/exception.h"
#include "lumo/terms/term_manager.h"

namespace lumo {

TermManager::Snapshot TermManager::make_snapshot() const
{
  return {last_serial_,          num_terms_,       declared_symbols_.size(),
          fresh_symbols_.size(), numerals_.size(), term_memory_.get_position()};
}

TermManager::Mark TermManager::mark()
{
  // Without new terms, the point is that of the previous mark.
  if (snapshots_.empty() || snapshots_.back().num_terms != num_terms_) {
    Snapshot snapshot = make_snapshot();
    snapshot.serial = last_serial_ + 1;
    snapshots_.push_back(snapshot);
    ++last_serial_;
  }
  return {this, snapshots_.back().serial};
}

void TermManager::release(const Mark& mark)
{
  if (mark.manager_ != this) {
    throw Exception("a mark of another term manager was released, but a mark of this one was expected");
  }
  const auto found =
      std::lower_bound(snapshots_.begin(), snapshots_.end(), mark.serial_,
                       [](const Snapshot& snapshot, std::size_t serial) { return snapshot.serial < serial; });
  if (found == snapshots_.end() || found->serial != mark.serial_) {
    throw Exception(
        "a mark was released that is not valid any more: an older mark was released, or the manager was "
        "cleared");
  }
  snapshots_.erase(found + 1, snapshots_.end());
  const Snapshot& snapshot = snapshots_.back();
  release_applications(snapshot);
  release_constants(snapshot);
  numerals_.release(snapshot.num_numerals);
  term_memory_.release(snapshot.term_memory);
  num_terms_ = snapshot.num_terms;
}

void TermManager::release_applications(const Snapshot& snapshot) noexcept
{
  term_memory_.for_each_after(snapshot.term_memory, [this](void* memory, TermArena::Index index) {
    const Term* t = static_cast<const Term*>(memory);
    const std::size_t num_args = t->get_num_args();
    if (num_args != 0) {
      const Term* const* args = reinterpret_cast<const Term* const*>(t + 1);
      applications_.erase(hash_term(t->get_symbol(), args, num_args), index);
    }
    return sizeof(Term) + num_args * sizeof(void*) + get_room(t->get_symbol()->get_text_size());
  });
}

void TermManager::release_constants(const Snapshot& snapshot)
{
  for (; declared_symbols_.size() > snapshot.num_declared_symbols; declared_symbols_.pop_back()) {
    // A symbol whose term could not be made is not in any table, and may not have a name.
    const std::optional<std::string_view> name = declared_symbols_.back().find_name();
    if (!name) continue;
    const std::size_t hash = hash_name(*name);
    if (const UniqueTable::Index i = find_declared(*name, hash); i != UniqueTable::kNone) {
      constants_.erase(hash, i);
      fresh_constants_.give_back(*name);
    }
  }
  for (; fresh_symbols_.size() > snapshot.num_fresh_symbols; fresh_symbols_.pop_back())
    fresh_constants_.release(fresh_symbols_.back().get_prefix(), fresh_symbols_.back().get_number());
}

void TermManager::clear()
{
  snapshots_.clear();
  recent_operators_.fill(nullptr);
  applications_ = UniqueTable();
  constants_ = UniqueTable();
  operators_ = UniqueTable();
  fresh_symbols_.clear();
  fresh_constants_ = FreshConstants();
  operator_symbols_.clear();
  declared_symbols_.clear();
  numerals_.clear();
  term_memory_.release(empty_.term_memory);
  num_terms_ = empty_.num_terms;
}

}  // namespace lumo
