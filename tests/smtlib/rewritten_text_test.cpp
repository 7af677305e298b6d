#include "lumo/smtlib/rewritten_text.h"

#include <vector>

#include <gtest/gtest.h>

namespace lumo::smtlib {
namespace {

TEST(RewrittenText, FindsWhereItsPiecesComeFrom)
{
  //                          0123 456789
  const RewrittenText text = [] {
    RewrittenText rewritten("abc\ndef ghi\n");
    rewritten.insert("\n", 0);
    rewritten.keep(4, 7);
    rewritten.insert("12\n34", 8);
    rewritten.keep(1, 6);
    return rewritten;
  }();
  ASSERT_EQ(text.get_text(), "\ndef12\n34bc\nde");
  struct Row
  {
    Place place;
    Place original;
  };
  const std::vector<Row> rows = {
      {{1, 1}, {1, 1}}, {{2, 1}, {2, 1}}, {{2, 3}, {2, 3}}, {{2, 4}, {2, 5}}, {{3, 2}, {2, 5}},
      {{3, 3}, {1, 2}}, {{3, 4}, {1, 3}}, {{4, 1}, {2, 1}}, {{4, 2}, {2, 2}}, {{9, 9}, {2, 3}},
  };
  for (const Row& row : rows) {
    const Place found = text.find_original(row.place);
    EXPECT_EQ(found.line, row.original.line) << row.place.line << ':' << row.place.column;
    EXPECT_EQ(found.column, row.original.column) << row.place.line << ':' << row.place.column;
  }
}

TEST(RewrittenText, HasAPlaceEvenIfEmpty)
{
  EXPECT_EQ(RewrittenText("abc").find_original({3, 4}), (Place{1, 1}));
}

}  // namespace
}  // namespace lumo::smtlib
