// The edge cases at widths around a machine word and beyond, where numbers change their form during the computation.

#include "tests/calculators/edge_cases.h"

namespace lumo::test {

namespace {

constexpr const char* kNoValueText = "We cannot find a value for this atom!";

/// The literals and names of one width.
class Wide
{
 public:
  explicit Wide(unsigned long w) : w_(w) {}

  [[nodiscard]] std::string zero() const { return "#b" + std::string(w_, '0'); }
  [[nodiscard]] std::string one() const { return "#b" + std::string(w_ - 1, '0') + "1"; }
  [[nodiscard]] std::string ones() const { return "#b" + std::string(w_, '1'); }
  /// The least and the greatest number in signed order
  [[nodiscard]] std::string least() const { return "#b1" + std::string(w_ - 1, '0'); }
  [[nodiscard]] std::string greatest() const { return "#b0" + std::string(w_ - 1, '1'); }
  [[nodiscard]] std::string above_least() const { return "#b1" + std::string(w_ - 2, '0') + "1"; }
  [[nodiscard]] std::string below_greatest() const { return "#b0" + std::string(w_ - 2, '1') + "0"; }
  [[nodiscard]] std::string below_ones() const { return "#b" + std::string(w_ - 1, '1') + "0"; }
  [[nodiscard]] std::string x() const { return "x" + std::to_string(w_); }
  [[nodiscard]] std::string y() const { return "y" + std::to_string(w_); }
  [[nodiscard]] std::string compound() const { return "(bvnot u" + std::to_string(w_) + ")"; }

 private:
  unsigned long w_;
};

std::string apply(const std::string& op, const std::string& a, const std::string& b)
{
  std::string text = "(";
  text += op + " " + a + " " + b + ")";
  return text;
}

std::string define(const std::string& term, const std::string& value)
{
  std::string text = term;
  text += " := " + value;
  return text;
}

void add_order_cases(std::vector<EdgeCase>& cases, const Wide& v)
{
  const auto solved = [&cases, &v](const std::string& t, const char* value, const std::string& given) {
    cases.push_back({t, value, {define(v.x(), given)}, ""});
  };
  const auto refused = [&cases](const std::string& t, const char* value) {
    cases.push_back({t, value, {}, kNoValueText});
  };

  refused(apply("bvult", v.ones(), v.x()), "true");
  solved(apply("bvult", v.below_ones(), v.x()), "true", v.ones());
  solved(apply("bvult", v.greatest(), v.x()), "true", v.least());
  refused(apply("bvult", v.x(), v.zero()), "true");
  solved(apply("bvult", v.x(), v.least()), "true", v.greatest());
  refused(apply("bvule", v.zero(), v.x()), "false");
  solved(apply("bvule", v.least(), v.x()), "false", v.greatest());
  refused(apply("bvule", v.x(), v.ones()), "false");
  solved(apply("bvule", v.x(), v.below_ones()), "false", v.ones());

  refused(apply("bvslt", v.greatest(), v.x()), "true");
  solved(apply("bvslt", v.below_greatest(), v.x()), "true", v.greatest());
  solved(apply("bvslt", v.ones(), v.x()), "true", v.zero());
  refused(apply("bvslt", v.x(), v.least()), "true");
  solved(apply("bvslt", v.x(), v.above_least()), "true", v.least());
  solved(apply("bvslt", v.x(), v.zero()), "true", v.ones());
  refused(apply("bvsle", v.least(), v.x()), "false");
  solved(apply("bvsle", v.above_least(), v.x()), "false", v.least());
  refused(apply("bvsle", v.x(), v.greatest()), "false");
  solved(apply("bvsle", v.x(), v.ones()), "false", v.zero());
}

void add_free_cases(std::vector<EdgeCase>& cases, const Wide& v)
{
  const auto pair = [&cases, &v](const char* op, const std::string& value, const std::string& first,
                                 const std::string& second) {
    cases.push_back({apply(op, v.x(), v.y()), value, {define(v.x(), first), define(v.y(), second)}, ""});
  };
  const auto exchanged = [&cases, &v](const char* op, const std::string& value, const std::string& first,
                                      const std::string& second) {
    cases.push_back(
        {apply(op, v.compound(), v.y()), value, {define(v.y(), first), define(v.compound(), second)}, ""});
  };
  for (const char* op : {"bvadd", "bvor", "bvxor"}) {
    pair(op, v.ones(), v.ones(), v.zero());
    exchanged(op, v.ones(), v.ones(), v.zero());
  }
  pair("bvsub", v.ones(), v.ones(), v.zero());
  exchanged("bvsub", v.ones(), v.one(), v.zero());
  exchanged("bvsub", v.one(), v.ones(), v.zero());
  exchanged("bvsub", v.zero(), v.zero(), v.zero());
  exchanged("bvsub", v.least(), v.least(), v.zero());
  pair("bvmul", v.least(), v.least(), v.one());
  exchanged("bvmul", v.least(), v.least(), v.one());
  pair("bvand", v.least(), v.least(), v.least());
  for (const char* op : {"bvudiv", "bvsdiv"})
    pair(op, v.ones(), v.ones(), v.one());
  for (const char* op : {"bvshl", "bvlshr", "bvashr"})
    pair(op, v.ones(), v.ones(), v.zero());
}

}  // namespace

std::vector<EdgeCase> make_wide_edge_cases()
{
  std::vector<EdgeCase> cases;
  for (const unsigned long w : {31UL, 62UL, 63UL, 64UL, 65UL, 128UL}) {
    add_order_cases(cases, Wide(w));
    add_free_cases(cases, Wide(w));
  }
  return cases;
}

}  // namespace lumo::test
