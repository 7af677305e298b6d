#ifndef LUMO_TESTS_SUPPORT_MAKE_OPERATOR_H
#define LUMO_TESTS_SUPPORT_MAKE_OPERATOR_H

#include "lumo/terms/term_manager.h"

namespace lumo::test {

/// The operator symbol of a kind through its public factory; with the parameters of the factory. For ite
/// and eq the only parameter is the width of the sort, 0 for Bool.
const Symbol* make_operator(TermManager& mgr, Kind kind, const Parameters& p);

}  // namespace lumo::test

#endif
