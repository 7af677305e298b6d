#include "lumo/elimination/eliminate.h"

#include "lumo/elimination/eliminator.h"

namespace lumo {

Elimination eliminate(TermManager& mgr, std::span<const Term* const> assertions,
                      const EliminationOptions& options)
{
  return Eliminator(mgr, assertions, options).run();
}

}  // namespace lumo
