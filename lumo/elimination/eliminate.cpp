#include "lumo/elimination/eliminate.h"

#include "lumo/elimination/eliminator.h"

namespace lumo {

Elimination eliminate(TermManager& mgr, std::span<const Term* const> assertions)
{
  return Eliminator(mgr, assertions).run();
}

}  // namespace lumo
