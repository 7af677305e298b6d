// The table describes the calculators: for each operator, each shape of operands and each value, the calculator
// pushes the definitions of the one row that applies, and refuses the case if none does.

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumo/model/evaluator.h"
#include "lumo/numbers/bvnumber.h"
#include "lumo/terms/fold.h"
#include "tests/proof/proof_rows.h"
#include "tests/proof/proof_scene.h"
#include "tests/proof/row_names.h"
#include "tests/support/gmp_number.h"
#include "tests/support/make_operator.h"
#include "tests/support/number.h"
#include "tests/support/random.h"

namespace lumo::test {
namespace {

/// Numbers for a call of a calculator; those of operands that are not n are ignored.
struct Assignment
{
  std::vector<QNumber> operands;
  QNumber value;
};

struct NumberDefinition
{
  std::size_t position;  ///< of the operand
  QNumber value;

  friend bool operator==(const NumberDefinition&, const NumberDefinition&) = default;
};

std::ostream& operator<<(std::ostream& out, const NumberDefinition& definition)
{
  return out << definition.position << " := " << definition.value;
}

/// The result of a call of a calculator
struct CallResult
{
  std::vector<NumberDefinition> definitions;
  Standing standing;  ///< the result of the evaluation
};

QNumber get_number(const TermManager& mgr, const Term* value)
{
  QNumber number;
  EXPECT_TRUE(get_value_number(mgr, value, number)) << "a pushed term is not a value";
  return number;
}

/// Calls the calculator of an operator; returns nothing if it refuses. If operands are equal, a definition belongs
/// to the first.
std::optional<CallResult> call(TermManager& mgr, const OperatorSymbol& s, std::string_view shape,
                               const Assignment& assignment)
{
  std::vector<const Term*> args = make_operands(mgr, s, shape);
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (shape[i] == 'n') args[i] = make_value(mgr, assignment.operands[i], s.get_argument_type(i));
  }
  const Term* t = mgr.make_term(&s, args);
  const Term* value = make_value(mgr, assignment.value, s.get_output_type());
  const auto pushed = call_calculator(mgr, t, value);
  if (!pushed) return std::nullopt;

  CallResult result{{}, Standing::kSound};
  ModelStore::DefinitionStack stack;
  for (const auto& definition : *pushed) {
    const auto place = std::find(args.begin(), args.end(), definition.term) - args.begin();
    result.definitions.push_back({static_cast<std::size_t>(place), get_number(mgr, definition.value)});
    stack.push(definition);
  }
  ModelStore model(&mgr);
  model.replay(stack);
  if (model.get_value(t) != value) result.standing = Standing::kUnsound;
  return result;
}

/// A row for one shape, to be evaluated
class RowOfShape
{
 public:
  RowOfShape(const ProofRow& row, const Parameters& parameters, std::string_view shape)
      : row_(row), scene_(row, parameters), shape_(shape), definitions_(scene_.make_definitions(shape))
  {}

  [[nodiscard]] const ProofRow& get_row() const { return row_; }
  /// Whether the row applies to the case. If so, the members below have its definitions.
  bool assign(const Assignment& assignment);
  [[nodiscard]] std::vector<NumberDefinition> get_definitions();
  /// The pushed definitions that the row covers: without those of operands that are n, if it uses the terms of the
  /// calculator.
  [[nodiscard]] std::vector<NumberDefinition> select(std::vector<NumberDefinition> pushed) const
  {
    if (row_.definitions.empty())
      std::erase_if(pushed, [this](const auto& definition) { return shape_[definition.position] == 'n'; });
    return pushed;
  }

 private:
  void set(const std::string& name, const DataType* type, const QNumber& number)
  {
    evaluator_->set_value(scene_.get_manager().make_constant(name, type), number);
  }

  const ProofRow& row_;
  ProofScene scene_;
  std::string shape_;
  std::vector<ModelStore::ModelDefinition> definitions_;
  std::optional<Evaluator> evaluator_;
};

/// The inverse of n modulo 2^w; 0 for an even n.
QNumber find_inverse(const QNumber& n, unsigned long w)
{
  Integer inverse;
  Integer integer;
  n.get_numerator(integer);
  if (mpz_invert(inverse, integer, Integer::power(w)) == 0) return QNumber(0L);
  return BVNumber::from_integer(inverse);
}

bool RowOfShape::assign(const Assignment& assignment)
{
  const OperatorSymbol& s = scene_.get_operator();
  evaluator_.emplace(&scene_.get_manager());
  set("v", s.get_output_type(), assignment.value);
  for (std::size_t i = 0; i < shape_.size(); ++i) {
    if (shape_[i] != 'n') continue;
    const DataType* type = s.get_argument_type(i);
    set(get_operand_name(shape_.size(), i), type, assignment.operands[i]);
    if (row_.kind == Kind::kBvMul)
      set("inverse", type, find_inverse(assignment.operands[i], type->get_width()));
  }
  const RowTerms& terms = scene_.get_terms();
  return evaluator_->evaluate(terms.condition) == QNumber(1L) &&
         evaluator_->evaluate(terms.value) == assignment.value;
}

std::vector<NumberDefinition> RowOfShape::get_definitions()
{
  const std::vector<const Term*> operands =
      make_operands(scene_.get_manager(), scene_.get_operator(), shape_);
  std::vector<NumberDefinition> numbers;
  for (const auto& [term, value, flag] : definitions_) {
    const auto place = std::find(operands.begin(), operands.end(), term) - operands.begin();
    numbers.push_back({static_cast<std::size_t>(place), evaluator_->evaluate(value)});
  }
  return numbers;
}

// -----------------------------------------------------------------------------------------------------------

class ProofTable : public testing::TestWithParam<OperatorInfo>
{
 protected:
  /// Calls visit for each shape of the operator's operands with its rows of the table.
  template <class Visit>
  void for_each_shape(const Parameters& parameters, Visit visit);
  void check(TermManager& mgr, const OperatorSymbol& s, const std::string& shape,
             const Assignment& assignment, const std::vector<std::unique_ptr<RowOfShape>>& rows);

  std::map<const ProofRow*, int> num_cases_;
};

template <class Visit>
void ProofTable::for_each_shape(const Parameters& parameters, Visit visit)
{
  const std::size_t arity = GetParam().arity;
  std::vector<std::string> shapes = {""};
  while (shapes.front().size() < arity) {
    std::vector<std::string> longer;
    for (const std::string& shape : shapes) {
      for (const char letter : {'x', 'e', 'n'})
        longer.push_back(shape + letter);
    }
    shapes.swap(longer);
  }
  for (const std::string& shape : shapes) {
    std::vector<std::unique_ptr<RowOfShape>> rows;
    for (const ProofRow& row : get_proof_rows()) {
      if (row.kind != GetParam().kind || !is_in_scope(row, parameters)) continue;
      for (const std::string_view listed : split_words(row.shapes)) {
        if (listed == shape) rows.push_back(std::make_unique<RowOfShape>(row, parameters, shape));
      }
    }
    visit(shape, rows);
  }
}

void ProofTable::check(TermManager& mgr, const OperatorSymbol& s, const std::string& shape,
                       const Assignment& assignment, const std::vector<std::unique_ptr<RowOfShape>>& rows)
{
  const auto describe_case = [&] {
    std::ostringstream text;
    text << s.get_name() << ' ' << shape << " is " << assignment.value << ", operands:";
    for (const QNumber& number : assignment.operands)
      text << ' ' << number;
    return text.str();
  };
  const std::optional<CallResult> result = call(mgr, s, shape, assignment);
  RowOfShape* match = nullptr;
  for (const auto& row : rows) {
    if (!row->assign(assignment)) continue;
    ASSERT_EQ(match, nullptr) << "two rows: " << describe_case();
    match = row.get();
  }
  ASSERT_EQ(match != nullptr, result.has_value()) << describe_case();
  if (match == nullptr) return;
  ++num_cases_[&match->get_row()];
  ASSERT_EQ(match->get_definitions(), match->select(result->definitions)) << describe_case();
  ASSERT_EQ(match->get_row().standing, result->standing) << describe_case();
}

/// The number of values of a sort
std::size_t count_values(const DataType* type)
{
  return type->is_bool() ? 2 : std::size_t{1} << type->get_width();
}

/// Calls visit for each assignment to operands that are n and to the value.
template <class Visit>
void for_each_assignment(const OperatorSymbol& s, std::string_view shape, Visit visit)
{
  std::vector<std::size_t> counts;
  for (std::size_t i = 0; i < shape.size(); ++i)
    counts.push_back(shape[i] == 'n' ? count_values(s.get_argument_type(i)) : 1);
  counts.push_back(count_values(s.get_output_type()));
  std::vector<std::size_t> choice(counts.size());
  for (std::size_t i = 0; i < counts.size();) {
    Assignment assignment;
    for (std::size_t k = 0; k + 1 < choice.size(); ++k)
      assignment.operands.emplace_back(choice[k]);
    assignment.value = QNumber(choice.back());
    visit(assignment);
    for (i = 0; i < counts.size() && ++choice[i] == counts[i]; ++i)
      choice[i] = 0;
  }
}

/// The widths at which a text of an operator on Booleans, or of one with sorts that have widths, is read
std::vector<unsigned long> choose_small_widths(const OperatorInfo& info)
{
  if (info.rule == SortRule::kBool) return {0};
  return info.rule == SortRule::kIte ? std::vector<unsigned long>{0, 1, 2}
                                     : std::vector<unsigned long>{1, 2, 3};
}

TEST_P(ProofTable, SaysWhatTheCalculatorDoesAtSmallWidths)
{
  for (const unsigned long w : choose_small_widths(GetParam())) {
    for (const Parameters& parameters : choose_parameters(GetParam().kind, w)) {
      TermManager mgr;
      const OperatorSymbol& s = as_operator(make_operator(mgr, GetParam().kind, parameters));
      for_each_shape(parameters, [&](const std::string& shape, const auto& rows) {
        for_each_assignment(s, shape, [&](const Assignment& assignment) {
          if (!HasFatalFailure()) check(mgr, s, shape, assignment, rows);
        });
      });
    }
  }
  for (const ProofRow& row : get_proof_rows()) {
    EXPECT_EQ(num_cases_[&row] != 0, row.kind == GetParam().kind) << row;
  }
}

/// A number of a sort; every second one is a limit of an order, or next to it.
QNumber draw_number(Random& random, const DataType* type)
{
  if (type->is_bool()) return QNumber(random.index(2));
  const unsigned long w = type->get_width();
  Integer pattern;
  if (random.flip()) {
    random.natural(pattern, w);
  } else {
    pattern = Integer::power(random.flip() ? w : w - 1, random.between(-1, 1));
    mpz_fdiv_r_2exp(pattern, pattern, w);
  }
  return BVNumber::from_integer(pattern);
}

TEST_P(ProofTable, SaysWhatTheCalculatorDoesOnRandomNumbersAtTheProvenWidths)
{
  constexpr int kCases = 8;  // for each shape, of which there are up to 27, at each width
  constexpr std::size_t kChoices = 3;
  Random random;
  SCOPED_TRACE(random);
  std::set<unsigned long> widths;  // none for a remainder, which has no rows in the table
  for (const ProofRow& row : get_proof_rows()) {
    if (row.kind == GetParam().kind)
      for (const unsigned long w : get_proof_widths(row))
        widths.insert(w);
  }
  for (const unsigned long w : widths) {
    const std::vector<Parameters> all = choose_parameters(GetParam().kind, w);
    for (std::size_t i = 0; i < std::min(kChoices, all.size()); ++i) {
      const Parameters& parameters = random.pick(all);
      TermManager mgr;
      const OperatorSymbol& s = as_operator(make_operator(mgr, GetParam().kind, parameters));
      for_each_shape(parameters, [&](const std::string& shape, const auto& rows) {
        for (int k = 0; k < kCases && !HasFatalFailure(); ++k) {
          Assignment assignment;
          for (std::size_t position = 0; position < shape.size(); ++position)
            assignment.operands.push_back(draw_number(random, s.get_argument_type(position)));
          assignment.value = draw_number(random, s.get_output_type());
          check(mgr, s, shape, assignment, rows);
        }
      });
    }
  }
  EXPECT_EQ(num_cases_.empty(), widths.empty());
}

std::string name_operator(const testing::TestParamInfo<OperatorInfo>& info)
{
  return name_kind(info.param.kind);
}

INSTANTIATE_TEST_SUITE_P(AllOperators, ProofTable, testing::ValuesIn(kOperators), name_operator);

/// The operators without rows, and the unsound rows
TEST(ProofTableTest, LeavesOutTheRemaindersAloneAndKnowsThreeOperatorsWithUnsoundCases)
{
  std::map<Kind, int> num_sound;
  std::map<Kind, int> num_unsound;
  for (const ProofRow& row : get_proof_rows())
    ++(row.standing == Standing::kSound ? num_sound : num_unsound)[row.kind];
  for (const OperatorInfo& info : kOperators) {
    const bool is_remainder = info.kind == Kind::kBvUrem || info.kind == Kind::kBvSrem;
    EXPECT_EQ(num_sound.contains(info.kind), !is_remainder) << name_kind(info.kind);
    const bool is_unsound_somewhere = info.rule == SortRule::kIte || info.rule == SortRule::kExtend;
    EXPECT_EQ(num_unsound.contains(info.kind), is_unsound_somewhere) << name_kind(info.kind);
  }
}

TEST(ProofTableTest, IsInTheOrderOfTheOperators)
{
  const auto rows = get_proof_rows();
  EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(),
                             [](const ProofRow& a, const ProofRow& b) { return a.kind < b.kind; }));
}

}  // namespace
}  // namespace lumo::test
