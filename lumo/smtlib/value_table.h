#ifndef LUMO_SMTLIB_VALUE_TABLE_H
#define LUMO_SMTLIB_VALUE_TABLE_H

#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "lumo/smtlib/foreign_terms.h"
#include "lumo/smtlib/foreign_value.h"

namespace lumo::smtlib {

/// A function as a list of cases, as solvers print it: values for some lists of arguments, and one for all others.
class ValueTable
{
 public:
  using Terms = std::span<const Term* const>;

  /// The first case for some arguments counts.
  void add(std::vector<const Term*> args, const Term* value) { cases_.try_emplace(std::move(args), value); }
  void set_default(const Term* value) { default_ = value; }
  [[nodiscard]] const Term* find(const std::vector<const Term*>& args) const
  {
    const auto place = cases_.find(args);
    return place == cases_.end() ? default_ : place->second;
  }
  /// A function of one argument as an array.
  [[nodiscard]] ForeignValue make_array() const;

 private:
  struct Hash
  {
    std::size_t operator()(const std::vector<const Term*>& args) const;
  };

  std::unordered_map<std::vector<const Term*>, const Term*, Hash> cases_;
  const Term* default_ = nullptr;
};

/// The table of a body over constants that stand for parameters: `ite` cascades whose conditions say of every parameter
/// what it is equal to. Nothing if the body is something else.
[[nodiscard]] std::optional<ValueTable> make_value_table(TermManager& mgr, const ForeignTerms& terms,
                                                         std::span<const Term* const> parameters,
                                                         const Term* body);

}  // namespace lumo::smtlib

#endif
