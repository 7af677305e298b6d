#include "lumo/commands/query_source.h"

#include <algorithm>

namespace lumo::commands {

namespace {

class PlainQueries : public QuerySource
{
 public:
  void push() override { first_.push_back(assertions_.size()); }
  void pop(std::size_t num_levels) override
  {
    if (num_levels == 0) return;
    const std::size_t level = first_.size() - num_levels;
    truncate(first_[level]);
    first_.resize(level);
  }
  void reset() override
  {
    truncate(0);
    first_.clear();
  }
  void add_assertion(const Term* t) override
  {
    assertions_.push_back(t);
    levels_.push_back(first_.size());
  }
  [[nodiscard]] std::span<const Term* const> get_assertions() const override { return assertions_; }
  [[nodiscard]] SolverQuery query(std::span<const Term* const> assumptions) override
  {
    SolverQuery query;
    for (; num_told_ < assertions_.size(); ++num_told_)
      query.additions.push_back({levels_[num_told_], assertions_[num_told_], num_told_});
    query.assumptions.assign(assumptions.begin(), assumptions.end());
    return query;
  }
  void extend(ModelStore& /*model*/) const override {}
  [[nodiscard]] Trail get_trail() const override { return {}; }

 private:
  void truncate(std::size_t size)
  {
    assertions_.resize(size);
    levels_.resize(size);
    num_told_ = std::min(num_told_, size);
  }

  std::vector<const Term*> assertions_;
  std::vector<std::size_t> levels_;  ///< of the assertions
  std::vector<std::size_t> first_;   ///< assertion of each level but the lowest
  std::size_t num_told_ = 0;
};

}  // namespace

std::unique_ptr<QuerySource> make_plain_queries() { return std::make_unique<PlainQueries>(); }

}  // namespace lumo::commands
