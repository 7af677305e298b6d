#include "lumo/smtlib/foreign_terms.h"

#include <algorithm>
#include <utility>

#include "lumo/numbers/hash_mix.h"
#include "lumo/terms/exception.h"

namespace lumo::smtlib {

namespace {

/// No symbol of a text contains a control character.
constexpr const char* kPlaceholderPrefix = "\x01 foreign";

/// Two heads are the same if and only if they have the same key.
std::string make_key(const ForeignHead& head)
{
  std::string key = head.text;
  key += '\0';
  key += static_cast<char>('0' + static_cast<int>(head.role));
  if (head.function != nullptr) key += std::to_string(reinterpret_cast<std::uintptr_t>(head.function));
  for (const std::string& name : head.names)
    key += '\0' + name;
  for (const std::size_t declaration : head.declarations)
    key += '\0' + std::to_string(declaration);
  return key;
}

}  // namespace

ForeignTerms::HeadIndex ForeignTerms::make_head(ForeignHead head)
{
  const auto [place, is_new] =
      head_numbers_.try_emplace(make_key(head), static_cast<HeadIndex>(heads_.size()));
  if (is_new) heads_.push_back(std::move(head));
  return place->second;
}

const Term* ForeignTerms::make(HeadIndex head, const DataType* sort, std::span<const Term* const> args)
{
  std::size_t hash = mix_hash(mix_hash(0, std::uintptr_t{head}), sort);
  for (const Term* arg : args)
    hash = mix_hash(hash, arg);
  const Index known = numbers_.find(hash, [&](Index i) {
    const std::span<const Term* const> others = get_args(i);
    return nodes_[i].head == head && nodes_[i].placeholder->get_sort() == sort &&
           std::equal(args.begin(), args.end(), others.begin(), others.end());
  });
  if (known != UniqueTable::kNone) return nodes_[known].placeholder;

  if (nodes_.size() >= kNone - 1) throw Exception("the text contains more than 2^32 - 2 foreign terms");
  const auto index = static_cast<Index>(nodes_.size());
  numbers_.reserve_one();
  const Term* placeholder = mgr_.make_fresh_constant(kPlaceholderPrefix, sort);
  by_id_[placeholder->get_id()] = index + 1;
  nodes_.push_back({placeholder, args_.size(), static_cast<std::uint32_t>(args.size()), head});
  args_.insert(args_.end(), args.begin(), args.end());
  numbers_.insert(hash, index);
  return placeholder;
}

std::vector<ForeignTerms::Index> ForeignTerms::collect(std::span<const Term* const> roots) const
{
  std::vector<Index> found;
  if (nodes_.empty()) return found;
  TermTable<bool, 7> is_met;
  std::vector<const Term*> stack;
  const auto meet = [&](const Term* t) {
    bool& is_known = is_met[t->get_id()];
    if (!is_known) stack.push_back(t);
    is_known = true;
  };
  for (const Term* root : roots)
    meet(root);
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    for (std::size_t i = 0; i < t->get_num_args(); ++i)
      meet(t->get_arg(i));
    const Index foreign = find(t);
    if (foreign == kNone) continue;
    found.push_back(foreign);
    for (const Term* arg : get_args(foreign))
      meet(arg);
  }
  std::sort(found.begin(), found.end());
  return found;
}

ForeignTerms::Needs ForeignTerms::list_declarations(std::span<const Index> terms) const
{
  Needs needs;
  std::vector<bool> is_needed(declarations.size());
  std::vector<std::size_t> open;
  const auto need = [&](std::size_t declaration) {
    if (!is_needed[declaration]) open.push_back(declaration);
    is_needed[declaration] = true;
  };
  for (std::size_t i = 0; i < declarations.size(); ++i) {
    if (declarations[i].is_of_sorts && !terms.empty()) need(i);
  }
  for (const Index term : terms) {
    const ForeignHead& head = get_head_of(term);
    std::for_each(head.declarations.begin(), head.declarations.end(), need);
  }
  while (!open.empty()) {
    const std::size_t number = open.back();
    open.pop_back();
    const ForeignDeclaration& declaration = declarations[number];
    needs.declarations.push_back(number);
    needs.constants.insert(needs.constants.end(), declaration.constants.begin(), declaration.constants.end());
    std::for_each(declaration.needs.begin(), declaration.needs.end(), need);
  }
  std::sort(needs.declarations.begin(), needs.declarations.end(), [this](std::size_t lhs, std::size_t rhs) {
    return declarations[lhs].order < declarations[rhs].order;
  });
  return needs;
}

ForeignTerms::Needs ForeignTerms::find_needs(std::span<const Term* const> roots) const
{
  std::vector<const Term*> all(roots.begin(), roots.end());
  for (;;) {
    std::vector<Index> terms = collect(all);
    Needs needs = list_declarations(terms);
    const std::size_t num_before = all.size() - roots.size();
    all.resize(roots.size());
    all.insert(all.end(), needs.constants.begin(), needs.constants.end());
    needs.terms = std::move(terms);
    if (needs.constants.size() == num_before) return needs;
  }
}

}  // namespace lumo::smtlib
