#include "lumo/elimination/chains.h"

namespace lumo {

void Chains::start(NodeIndex n)
{
  if (n >= link_.size()) link_.resize(n + 1, kNone);
  link_[n] = static_cast<std::uint32_t>(chains_.size());
  up_.push_back(link_[n]);
  chains_.push_back({n, kNoNode, 2});
}

Chain& Chains::unite(NodeIndex n, NodeIndex parent)
{
  const std::uint32_t part = find_index(n);
  const std::uint32_t whole = find_index(parent);
  up_[part] = whole;
  chains_[whole].num_leaves += chains_[part].num_leaves - 1;
  return chains_[whole];
}

std::uint32_t Chains::find_index(NodeIndex n)
{
  std::uint32_t i = link_[n];
  while (up_[i] != i) {
    up_[i] = up_[up_[i]];
    i = up_[i];
  }
  return i;
}

}  // namespace lumo
