#ifndef LUMO_TESTS_CALCULATORS_OWN_TERMS_TERMSIMPL_H
#define LUMO_TESTS_CALCULATORS_OWN_TERMS_TERMSIMPL_H

#include <vector>

#include "lumo/terms/term_manager.h"

namespace lumo {

class StdTermSimplifier
{
 public:
  class simpl_fun  // NOLINT(readability-identifier-naming): the name by which calculators know it
  {
   public:
    virtual ~simpl_fun() = default;
  };
};

namespace termsimpl {

// The functors of a solver may have state and are not const. Here all of them do the same.

const Term* simplify(const char* functor, TermManager* mgr, const Symbol* s,
                     const std::vector<const Term*>& args);

template <int kOperator>
class Functor : public StdTermSimplifier::simpl_fun
{
 public:
  const Term* operator()(TermManager* mgr, const Symbol* s, const std::vector<const Term*>& args)
  {
    static constexpr const char* names[] = {"BVAddSimpl",    "BVSubSimpl", "BVXorSimpl", "BVNotSimpl",
                                            "BVNegSimpl",    "BVRolSimpl", "BVRorSimpl", "BVSelectSimpl",
                                            "BVConcatSimpl", "BVZextSimpl"};
    return simplify(names[kOperator], mgr, s, args);
  }
};

using BVAddSimpl = Functor<0>;
using BVSubSimpl = Functor<1>;
using BVXorSimpl = Functor<2>;
using BVNotSimpl = Functor<3>;
using BVNegSimpl = Functor<4>;
using BVRolSimpl = Functor<5>;
using BVRorSimpl = Functor<6>;
using BVSelectSimpl = Functor<7>;
using BVConcatSimpl = Functor<8>;
using BVZextSimpl = Functor<9>;

}  // namespace termsimpl

}  // namespace lumo

#endif
