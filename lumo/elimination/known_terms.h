#ifndef LUMO_ELIMINATION_KNOWN_TERMS_H
#define LUMO_ELIMINATION_KNOWN_TERMS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lumo/terms/term_manager.h"
#include "lumo/terms/term_table.h"

namespace lumo {

/// The results of earlier queries of a conversation: which terms were sent to the solver, in which form, and
/// which constants were eliminated.
///
/// `cut` removes entries in the reverse order.
class KnownTerms
{
 public:
  /// What eliminated a constant: nothing, a fact, or the step with the index `taker - kFirstStep`.
  using Taker = std::uint32_t;
  static constexpr Taker kNobody = 0;
  static constexpr Taker kFact = 1;
  static constexpr Taker kFirstStep = 2;

  /// The term that new assertions use in place of t, and that elimination must not change: the form of t that the
  /// solver knows, or t if it is an eliminated constant. Null for other terms.
  [[nodiscard]] const Term* find_fixed(const Term* t) const
  {
    const Entry* entry = entries_.find(t->get_id());
    if (entry == nullptr) return nullptr;
    if (entry->form != nullptr) return entry->form;
    return entry->taker != kNobody ? t : nullptr;
  }

  /// Whether t itself was sent to the solver.
  [[nodiscard]] bool is_told(const Term* t) const
  {
    const Entry* entry = entries_.find(t->get_id());
    return entry != nullptr && (entry->walk_and_told & kTold) != 0;
  }
  /// Records that t is sent to the solver. Returns whether that is new.
  bool tell(const Term* t)
  {
    Entry& entry = entries_[t->get_id()];
    if ((entry.walk_and_told & kTold) != 0) return false;
    entry.walk_and_told |= kTold;
    log_.push_back({t, false});
    if (entry.form == nullptr) set_form(entry, t, t);
    return true;
  }
  /// Records the form of t that was sent to the solver, unless there is one.
  void add_form(const Term* t, const Term* form)
  {
    Entry& entry = entries_[t->get_id()];
    if (entry.form == nullptr) set_form(entry, t, form);
  }

  /// The number of recorded entries.
  [[nodiscard]] std::size_t get_log_size() const { return log_.size(); }
  /// Removes the entries after the log had that size.
  void cut(std::size_t log_size)
  {
    for (; log_.size() > log_size; log_.pop_back()) {
      Entry& entry = entries_[log_.back().term->get_id()];
      if (log_.back().is_form) {
        entry.form = nullptr;
      } else {
        entry.walk_and_told &= ~kTold;
      }
    }
  }

  [[nodiscard]] Taker get_taker(const Term* constant) const
  {
    const Entry* entry = entries_.find(constant->get_id());
    return entry != nullptr ? entry->taker : kNobody;
  }
  void set_taker(const Term* constant, Taker taker) { entries_[constant->get_id()].taker = taker; }

  static constexpr std::uint32_t kMaxWalk = 0x7fff'ffff;

  /// Marks t as visited by the walk of that number, 1 to kMaxWalk. Returns whether it was not visited before.
  bool visit(const Term* t, std::uint32_t walk)
  {
    Entry& entry = entries_[t->get_id()];
    if (entry.walk_and_told >> 1U == walk) return false;
    entry.walk_and_told = walk << 1U | (entry.walk_and_told & kTold);
    return true;
  }

 private:
  static constexpr std::uint32_t kTold = 1;

  struct Entry
  {
    const Term* form = nullptr;
    Taker taker = kNobody;
    std::uint32_t walk_and_told =
        0;  ///< the last walk that visited the term, and in the lowest bit whether it was sent
  };
  struct Note
  {
    const Term* term;
    bool is_form;
  };

  void set_form(Entry& entry, const Term* t, const Term* form)
  {
    entry.form = form;
    log_.push_back({t, true});
  }

  TermTable<Entry> entries_;
  std::vector<Note> log_;
};

}  // namespace lumo

#endif
