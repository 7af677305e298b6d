#include "lumo/elimination/order_atom.h"

#include <algorithm>
#include <array>
#include <set>

#include <gtest/gtest.h>

#include "lumo/terms/fold.h"
#include "lumo/terms/term_manager.h"

namespace lumo {
namespace {

const Symbol* make_order_symbol(TermManager& mgr, Kind kind, unsigned long w)
{
  switch (kind) {
    case Kind::kBvUlt:
      return mgr.make_bv_ult_symbol(w);
    case Kind::kBvUle:
      return mgr.make_bv_ule_symbol(w);
    case Kind::kBvSlt:
      return mgr.make_bv_slt_symbol(w);
    default:
      return mgr.make_bv_sle_symbol(w);
  }
}

constexpr std::array kOrders = {Kind::kBvUlt, Kind::kBvUle, Kind::kBvSlt, Kind::kBvSle};

TEST(OrderAtom, OnlyTheFourOrdersAreOrders)
{
  for (const OperatorInfo& info : kOperators) {
    const bool expected = std::find(kOrders.begin(), kOrders.end(), info.kind) != kOrders.end();
    EXPECT_EQ(is_order(info.kind), expected) << info.smtlib_name;
  }
}

// The other argument runs over all values; the free one is tried with all.
TEST(OrderAtom, LimitIsTheOnlyValueThatLeavesNoChoiceAtWidthsOneToFive)
{
  TermManager mgr;
  for (unsigned long w = 1; w <= 5; ++w) {
    for (const Kind kind : kOrders) {
      const Symbol* s = make_order_symbol(mgr, kind, w);
      for (const bool is_left_free : {true, false}) {
        const OrderLimit limit = get_order_limit(kind, is_left_free, w);
        for (long other = 0; other < 1L << w; ++other) {
          std::set<bool> truths;
          for (long free = 0; free < 1L << w; ++free) {
            const QNumber x(free);
            const QNumber e(other);
            const std::array<const QNumber*, 2> args = {is_left_free ? &x : &e, is_left_free ? &e : &x};
            truths.insert(fold(as_operator(s), args.data()).sign() != 0);
          }
          if (limit.bound == QNumber(other)) {
            EXPECT_EQ(truths, std::set<bool>{limit.truth}) << s->get_name() << " " << w << " " << other;
          } else {
            EXPECT_EQ(truths.size(), 2U) << s->get_name() << " " << w << " " << other;
          }
        }
      }
    }
  }
}

TEST(OrderAtom, BoundsOfWideOperandsAreTheEndsOfTheirOrders)
{
  EXPECT_EQ(get_order_limit(Kind::kBvUlt, true, 65).bound, QNumber(0));
  EXPECT_EQ(get_order_limit(Kind::kBvUle, true, 65).bound.to_string(), "36893488147419103231");
  EXPECT_EQ(get_order_limit(Kind::kBvSlt, true, 65).bound.to_string(), "18446744073709551616");
  EXPECT_EQ(get_order_limit(Kind::kBvSle, true, 65).bound.to_string(), "18446744073709551615");
}

}  // namespace
}  // namespace lumo
