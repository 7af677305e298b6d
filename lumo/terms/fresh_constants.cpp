#include "lumo/terms/fresh_constants.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace lumo {

namespace {

struct Parts
{
  std::string_view prefix;
  std::size_t number;
};

/// Whether a fresh constant could have the name; numbers have no leading zeros.
bool split(std::string_view name, Parts& parts)
{
  const std::size_t mark = name.rfind('!');
  if (mark == std::string_view::npos) return false;
  const std::string_view digits = name.substr(mark + 1);
  if (digits.empty() || (digits.front() == '0' && digits.size() > 1)) return false;
  const char* end = digits.data() + digits.size();
  const auto [rest, failure] = std::from_chars(digits.data(), end, parts.number);
  parts.prefix = name.substr(0, mark);
  return failure == std::errc() && rest == end;
}

}  // namespace

FreshConstants::Vacancy FreshConstants::make_vacancy(const std::string& prefix)
{
  if (last_ == nullptr || last_->first != prefix) last_ = &*families_.try_emplace(prefix).first;
  Family& family = last_->second;
  std::vector<const Term*>& members = family.members;
  while (family.taken.contains(members.size()))
    members.push_back(nullptr);
  if (members.size() == members.capacity()) members.reserve(2 * members.size() + 1);
  return {&last_->first, &family, members.size()};
}

const Term* FreshConstants::find(std::string_view name) const
{
  Parts parts{};
  if (families_.empty() || !split(name, parts)) return nullptr;
  const auto family = families_.find(std::string(parts.prefix));
  if (family == families_.end() || parts.number >= family->second.members.size()) return nullptr;
  return family->second.members[parts.number];
}

void FreshConstants::take(std::string_view name)
{
  Parts parts{};
  if (split(name, parts)) families_[std::string(parts.prefix)].taken.insert(parts.number);
}

void FreshConstants::give_back(std::string_view name)
{
  Parts parts{};
  if (!split(name, parts)) return;
  const auto family = families_.find(std::string(parts.prefix));
  family->second.taken.erase(parts.number);
  drop_if_empty(family);
}

void FreshConstants::release(const std::string& prefix, std::size_t number)
{
  const auto family = families_.find(prefix);
  std::vector<const Term*>& members = family->second.members;
  members.resize(std::min(number, members.size()));
  // `make_vacancy` adds the nulls of numbers that are still taken again.
  while (!members.empty() && members.back() == nullptr)
    members.pop_back();
  drop_if_empty(family);
}

void FreshConstants::drop_if_empty(Families::iterator family)
{
  if (!family->second.members.empty() || !family->second.taken.empty()) return;
  if (last_ == &*family) last_ = nullptr;
  families_.erase(family);
}

}  // namespace lumo
