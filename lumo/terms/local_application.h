#ifndef LUMO_TERMS_LOCAL_APPLICATION_H
#define LUMO_TERMS_LOCAL_APPLICATION_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "lumo/terms/term.h"

// Internal: a shared library does not export it.
#pragma GCC visibility push(hidden)

namespace lumo {

/// An application that no manager owns, for the duration of a call that reads a symbol and its arguments and stores
/// neither. So an application that is used only once needs no memory in the manager.
///
/// It is not the object that the manager has for the same application, and its id has no meaning: it must not be
/// evaluated, compared, or used as an argument.
class LocalApplication : public Term
{
 public:
  using Arguments = std::array<const Term*, kMaxArity>;

  /// Precondition: the first arguments, as many as s takes, have the sorts that s takes.
  LocalApplication(const Symbol* s, const Arguments& args)
      : Term(s, std::numeric_limits<std::uint32_t>::max()), args_(args)
  {
    static_assert(sizeof(LocalApplication) == sizeof(Term) + sizeof(Arguments),
                  "the arguments follow the base without a gap, where get_arg reads them");
  }

 private:
  [[maybe_unused]] Arguments args_;  ///< read through get_arg of the base
};

}  // namespace lumo

#pragma GCC visibility pop

#endif
