// The shape of the numeral table: chains stay short, whatever else is allocated in between.

#include "lumo/terms/numeral_table.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "lumo/terms/term_manager.h"
#include "tests/support/numbered.h"

namespace lumo::test {

namespace {

struct Shape
{
  std::size_t num_entries = 0;
  std::size_t longest_chain = 0;
  double comparisons_per_hit = 0;
};

/// The shape of the table by its buckets alone.
Shape measure(const NumeralTable& table)
{
  Shape shape;
  double comparisons = 0;
  for (std::size_t i = 0; i < table.get_num_buckets(); ++i) {
    const std::size_t length = table.get_chain_length(i);
    shape.num_entries += length;
    shape.longest_chain = std::max(shape.longest_chain, length);
    comparisons += static_cast<double>(length * (length + 1)) / 2;
  }
  shape.comparisons_per_hit = comparisons / static_cast<double>(shape.num_entries);
  return shape;
}

bool is_prime(std::size_t n)
{
  for (std::size_t d = 2; d * d <= n; ++d) {
    if (n % d == 0) return false;
  }
  return n > 1;
}

/// Only numerals; or, after every second one, a name, a constant or an application.
enum class Company
{
  kNone,
  kNames,
  kTerms,
};

void make_numerals(TermManager& mgr, std::size_t count, Company company)
{
  for (std::size_t i = 0; i < count; ++i) {
    const Term* t = mgr.make_bv_number(QNumber(static_cast<long>(i)), 64);
    if (company == Company::kNames) {
      EXPECT_EQ(t->get_symbol()->get_name().size(), 18);
    } else if (company == Company::kTerms) {
      const Term* x = mgr.make_constant(numbered("x", i), mgr.make_bv_type(64));
      mgr.make_term(mgr.make_bv_add_symbol(64), {t, x});
    }
  }
}

class NumeralTableShape : public testing::TestWithParam<Company>
{};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Terms, NumeralTableShape,
                         testing::Values(Company::kNone, Company::kNames, Company::kTerms));

TEST_P(NumeralTableShape, ChainsAreShort)
{
  for (const std::size_t count : {std::size_t{10}, std::size_t{1000}, std::size_t{100000}}) {
    TermManager mgr;
    make_numerals(mgr, count, GetParam());
    const NumeralTable& table = mgr.get_numerals();
    const Shape shape = measure(table);
    EXPECT_EQ(table.size(), count);
    EXPECT_EQ(shape.num_entries, count) << "every entry lies in exactly one chain";
    EXPECT_LE(4 * count, 5 * table.get_num_buckets());
    EXPECT_LE(table.get_num_buckets(), 4 * count + 61) << "and the table is not wasteful";
    EXPECT_TRUE(is_prime(table.get_num_buckets())) << table.get_num_buckets();
    EXPECT_LE(shape.comparisons_per_hit, 2.0) << count;
    EXPECT_LE(shape.longest_chain, 12) << count;
    RecordProperty(numbered("comparisons_", count), std::to_string(shape.comparisons_per_hit));
    RecordProperty(numbered("longest_", count), std::to_string(shape.longest_chain));
  }
}

TEST(NumeralTable, FindsEveryNumeralAfterEachGrowth)
{
  TermManager mgr;
  std::size_t num_buckets = 0;
  for (std::size_t count = 1; count <= 3000; ++count) {
    mgr.make_bv_number(QNumber(static_cast<long>(count - 1)), 64);
    if (mgr.get_numerals().get_num_buckets() == num_buckets) continue;
    num_buckets = mgr.get_numerals().get_num_buckets();
    for (std::size_t i = 0; i < count; ++i) {
      QNumber out;
      const Term* t = mgr.make_bv_number(QNumber(static_cast<long>(i)), 64);
      ASSERT_TRUE(mgr.is_number(t->get_symbol(), &out));
      ASSERT_EQ(out, QNumber(static_cast<long>(i)));
    }
  }
}

TEST(NumeralTable, TellsWhatWasMade)
{
  TermManager mgr;
  const NumeralTable& table = mgr.get_numerals();
  const DataType* type = mgr.make_bv_type(8);
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.size(), 0);
  EXPECT_EQ(table.find(QNumber(5), type), nullptr);
  const Term* five = mgr.make_bv_number(5, 8);
  EXPECT_FALSE(table.empty());
  EXPECT_EQ(table.size(), 1);
  const Numeral* numeral = table.find(five->get_symbol());
  ASSERT_NE(numeral, nullptr);
  EXPECT_EQ(table.find(QNumber(5), type), numeral);
  EXPECT_EQ(table.find(QNumber(5), mgr.make_bv_type(9)), nullptr);
  EXPECT_EQ(table.find(QNumber(6), type), nullptr);
  EXPECT_EQ(table.find(mgr.make_constant("y", type)->get_symbol()), nullptr);
  EXPECT_EQ(numeral, five->get_symbol());
  EXPECT_EQ(&Numeral::of(five->get_symbol()), numeral);
  EXPECT_EQ(numeral->get_term(), five);
  EXPECT_TRUE(numeral->get_value() == QNumber(5));
}

}  // namespace lumo::test
