#include "tests/support/random_theories.h"

#include <array>

namespace lumo::test {

namespace {

constexpr std::array<const char*, 5> kSorts = {"Bool", "(_ BitVec 2)", "(_ BitVec 3)",
                                               "(Array (_ BitVec 2) (_ BitVec 3))", "S"};

constexpr const char* kDeclarations =
    "(declare-sort S 0)\n"
    "(define-sort Memory () (Array (_ BitVec 2) (_ BitVec 3)))\n"
    "(declare-fun f ((_ BitVec 3)) (_ BitVec 2))\n"
    "(declare-fun g ((_ BitVec 2) Bool) (_ BitVec 3))\n"
    "(declare-fun p (S (_ BitVec 2)) Bool)\n"
    "(declare-fun next (S) S)\n"
    "(define-fun twice ((m Memory) (i (_ BitVec 2))) (_ BitVec 3) (bvadd (select m i) (select m (f (select m "
    "i)))))\n"
    "(define-fun change ((m Memory) (c Bool)) Memory (ite c m (store m #b01 (twice m #b10))))\n";

}  // namespace

std::string RandomTheories::make(std::size_t num_assertions, bool quantifies)
{
  quantifies_ = quantifies;
  num_constants_ = 0;
  declarations_ = std::string("(set-logic ALL)\n") + kDeclarations;
  std::string assertions;
  for (std::size_t i = 0; i < num_assertions; ++i)
    assertions += "(assert " + make_term(kBool, 4) + ")\n";
  return declarations_ + assertions + "(check-sat)\n";
}

/// A new one in half of the cases.
std::string RandomTheories::make_constant(Sort sort)
{
  const std::size_t number = below(2) == 0 || num_constants_ == 0 ? num_constants_ : below(num_constants_);
  std::string name = 'c' + std::to_string(number) + "abcdef"[sort];
  if (declarations_.find("-const " + name + ' ') == std::string::npos)
    declarations_ += "(declare-const " + name + ' ' + kSorts[sort] + ")\n";
  if (number == num_constants_) ++num_constants_;
  return name;
}

std::string RandomTheories::apply(const std::string& head, const std::vector<Sort>& args, unsigned depth)
{
  std::string text = '(' + head;
  for (const Sort sort : args)
    text += ' ' + make_term(sort, depth);
  return text + ')';
}

std::string RandomTheories::make_truth(unsigned depth)
{
  switch (below(quantifies_ ? 12 : 11)) {
    case 0:
      return apply("not", {kBool}, depth);
    case 1:
      return apply("and", {kBool, kBool}, depth);
    case 2:
      return apply("or", {kBool, kBool}, depth);
    case 3:
      return apply("ite", {kBool, kBool, kBool}, depth);
    case 4:
      return apply("p", {kElement, kTwo}, depth);
    case 5:
    case 6: {
      const auto sort = static_cast<Sort>(below(kNumSorts));
      return apply("=", {sort, sort}, depth);
    }
    case 7: {
      const auto sort = static_cast<Sort>(below(kNumSorts));
      return apply("distinct", {sort, sort, sort}, depth);
    }
    case 8:
      return apply("bvult", {kTwo, kTwo}, depth);
    case 9:
      return apply("bvsle", {kThree, kThree}, depth);
    case 10:
      return "(let ((m " + make_term(kArray, depth) + ") (x " + make_term(kThree, depth) +
             ")) (= (select m (f x)) (bvadd x (twice m #b11))))";
    default:
      return "(let ((y " + make_term(kThree, depth) + ")) (exists ((x (_ BitVec 2))) (= (g x (p " +
             make_constant(kElement) + " x)) (bvadd y " + make_constant(kThree) + "))))";
  }
}

std::string RandomTheories::make_bits(Sort sort, unsigned depth)
{
  static constexpr std::array<const char*, 9> kOperators = {"bvadd", "bvsub", "bvmul",  "bvand", "bvor",
                                                            "bvxor", "bvshl", "bvudiv", "bvlshr"};
  const std::size_t choice = below(14);
  if (choice < kOperators.size()) return apply(kOperators[choice], {sort, sort}, depth);
  if (choice == 9) return apply("ite", {kBool, sort, sort}, depth);
  if (choice == 10) return sort == kTwo ? "#b10" : "#b101";
  if (sort == kTwo) return apply("f", {kThree}, depth);
  if (choice == 11) return apply("g", {kTwo, kBool}, depth);
  return choice == 12 ? apply("twice", {kArray, kTwo}, depth) : apply("select", {kArray, kTwo}, depth);
}

std::string RandomTheories::make_term(Sort sort, unsigned depth)
{
  if (depth == 0 || below(5) == 0) return make_constant(sort);
  switch (sort) {
    case kBool:
      return make_truth(depth - 1);
    case kTwo:
    case kThree:
      return make_bits(sort, depth - 1);
    case kArray:
      switch (below(4)) {
        case 0:
          return apply("store", {kArray, kTwo, kThree}, depth - 1);
        case 1:
          return apply("ite", {kBool, kArray, kArray}, depth - 1);
        case 2:
          return apply("change", {kArray, kBool}, depth - 1);
        default:
          return "((as const (Array (_ BitVec 2) (_ BitVec 3))) #b110)";  // cvc5 takes values only
      }
    case kElement:
    case kNumSorts:
      break;
  }
  return below(2) == 0 ? apply("next", {kElement}, depth - 1)
                       : apply("ite", {kBool, kElement, kElement}, depth - 1);
}

}  // namespace lumo::test
