#include <utility>

#include "lumo/commands/query_source.h"
#include "lumo/elimination/incremental.h"

namespace lumo::commands {

namespace {

/// Leaves all to the library's class.
class EliminatingQueries : public QuerySource
{
 public:
  explicit EliminatingQueries(TermManager& mgr) : eliminator_(mgr, "lumo!u") {}

  void push() override { eliminator_.push(); }
  void pop(std::size_t num_levels) override { eliminator_.pop(num_levels); }
  void reset() override { eliminator_.reset(); }
  void add_assertion(const Term* t) override { eliminator_.add_assertion(t); }
  [[nodiscard]] std::span<const Term* const> get_assertions() const override
  {
    return eliminator_.get_assertions();
  }
  [[nodiscard]] SolverQuery query(std::span<const Term* const> assumptions) override
  {
    static_assert(IncrementalEliminator::kRestoration == Addition::kNoAssertion);
    IncrementalEliminator::Query found = eliminator_.query(assumptions);
    SolverQuery query;
    query.additions.reserve(found.additions.size());
    for (const IncrementalEliminator::Addition& addition : found.additions)
      query.additions.push_back({addition.level, addition.term, addition.assertion});
    query.assumptions = std::move(found.assumptions);
    return query;
  }
  void extend(ModelStore& model) const override { eliminator_.extend(model); }
  [[nodiscard]] Trail get_trail() const override { return eliminator_.get_trail(); }

 private:
  IncrementalEliminator eliminator_;
};

}  // namespace

std::unique_ptr<QuerySource> make_eliminating_queries(TermManager& mgr)
{
  return std::make_unique<EliminatingQueries>(mgr);
}

}  // namespace lumo::commands
