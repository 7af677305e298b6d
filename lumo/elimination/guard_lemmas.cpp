#include "lumo/elimination/guard_lemmas.h"

#include <array>
#include <cstddef>
#include <unordered_map>

#include "lumo/elimination/order_atom.h"
#include "lumo/terms/term_table.h"

namespace lumo {

namespace {

/// The atom of a step that left a guard.
struct GuardedAtom
{
  const Term* other;  ///< the argument that is not free
  OrderLimit limit;
};

class GuardSeparator
{
 public:
  GuardSeparator(TermManager& mgr, const Trail& trail) : mgr_(mgr)
  {
    for (const Step& step : trail.steps)
      note_step(step);
  }

  [[nodiscard]] bool has_guards() const { return !atoms_.empty(); }
  [[nodiscard]] const Term* rebuild(const Term* root);
  [[nodiscard]] const std::vector<const Term*>& get_lemmas() const { return lemmas_; }

 private:
  void note_step(const Step& step);
  /// Whether t is the guard of the atom.
  [[nodiscard]] bool is_guard(const Term* t, const GuardedAtom& atom) const;
  /// The constant whose guarded atom t is, or null.
  [[nodiscard]] const Term* find_guarded(const Term* t) const;
  /// What a term was rebuilt as, or null.
  [[nodiscard]] const Term* find_result(const Term* t) const
  {
    const Term* const* result = results_.find(t->get_id());
    return result == nullptr ? nullptr : *result;
  }
  /// A term whose arguments are rebuilt.
  [[nodiscard]] const Term* make(const Term* t);

  TermManager& mgr_;
  std::unordered_map<const Term*, GuardedAtom> atoms_;  ///< by the constant of the step
  TermTable<const Term*, 8> results_;                   ///< by id
  std::vector<const Term*> stack_;
  std::vector<const Term*> lemmas_;
};

void GuardSeparator::note_step(const Step& step)
{
  const Kind kind = step.application->get_symbol()->get_kind();
  if (!is_order(kind) || step.free.count() != 1) return;
  const bool is_left_free = step.free[0];
  const Term* other = step.application->get_arg(is_left_free ? 1 : 0);
  if (other->get_symbol()->get_kind() == Kind::kNumeral) return;
  atoms_.emplace(step.constant,
                 GuardedAtom{other, get_order_limit(kind, is_left_free, other->get_sort()->get_width())});
}

bool GuardSeparator::is_guard(const Term* t, const GuardedAtom& atom) const
{
  if (!atom.limit.truth) {
    if (t->get_symbol()->get_kind() != Kind::kNot) return false;
    t = t->get_arg(0);
  }
  if (t->get_symbol()->get_kind() != Kind::kEq || t->get_arg(0) != atom.other) return false;
  QNumber number;
  return mgr_.is_number(t->get_arg(1)->get_symbol(), &number) && number == atom.limit.bound;
}

const Term* GuardSeparator::find_guarded(const Term* t) const
{
  const Kind kind = t->get_symbol()->get_kind();
  if (kind != Kind::kAnd && kind != Kind::kOr) return nullptr;
  const auto found = atoms_.find(t->get_arg(0));
  if (found == atoms_.end()) return nullptr;
  const bool fits =
      (kind == Kind::kOr) == found->second.limit.truth && is_guard(t->get_arg(1), found->second);
  return fits ? found->first : nullptr;
}

const Term* GuardSeparator::rebuild(const Term* root)
{
  stack_.assign(1, root);
  while (!stack_.empty()) {
    const Term* t = stack_.back();
    const std::size_t height = stack_.size();
    if (find_result(t) == nullptr) {
      for (std::size_t i = t->get_num_args(); i-- > 0;) {
        if (find_result(t->get_arg(i)) == nullptr) stack_.push_back(t->get_arg(i));
      }
      if (stack_.size() != height) continue;
      results_[t->get_id()] = make(t);
    }
    stack_.pop_back();
  }
  return find_result(root);
}

const Term* GuardSeparator::make(const Term* t)
{
  std::array<const Term*, kMaxArity> args{};
  bool is_changed = false;
  for (std::size_t i = 0; i < t->get_num_args(); ++i) {
    args[i] = find_result(t->get_arg(i));
    is_changed = is_changed || args[i] != t->get_arg(i);
  }
  const Term* made = is_changed ? mgr_.make_term(t->get_symbol(), args.data(), t->get_num_args()) : t;
  const Term* guarded = find_guarded(t);
  if (guarded == nullptr) return made;
  lemmas_.push_back(mgr_.make_term(mgr_.make_iff_symbol(), {guarded, made}));
  return guarded;
}

}  // namespace

GuardLemmas separate_guards(TermManager& mgr, const Trail& trail, std::span<const Term* const> rest)
{
  GuardLemmas result{trail, {rest.begin(), rest.end()}};
  GuardSeparator separator(mgr, trail);
  if (!separator.has_guards()) return result;
  for (Step& step : result.trail.steps)
    step.application = separator.rebuild(step.application);
  for (const Term*& assertion : result.rest)
    assertion = separator.rebuild(assertion);
  const std::vector<const Term*>& lemmas = separator.get_lemmas();
  result.rest.insert(result.rest.begin(), lemmas.begin(), lemmas.end());
  return result;
}

}  // namespace lumo
