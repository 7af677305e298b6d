#include "tests/commands/random_conversation.h"

#include <algorithm>

namespace lumo::test {

std::string RandomConversation::make(std::size_t num_commands)
{
  levels_.assign(1, {});
  std::string text = "(set-logic QF_BV)\n";
  for (std::size_t i = 0; i < num_commands; ++i)
    text += make_command() + '\n';
  return text + "(check-sat)\n";
}

std::string RandomConversation::make_command()
{
  const std::size_t choice = below(100);
  if (choice < 25) return make_declaration();
  if (choice < 55) return "(assert " + make_formula(static_cast<unsigned>(below(4))) + ")";
  if (choice < 66) {
    levels_.emplace_back();
    return "(push 1)";
  }
  if (choice < 76) return make_pop();
  return choice < 90 ? "(check-sat)" : make_query_assuming();
}

std::string RandomConversation::make_declaration()
{
  const Constant constant{"c" + std::to_string(below(12)), static_cast<unsigned>(below(4))};
  for (const Level& level : levels_) {
    for (const Constant& declared : level) {
      if (declared.name == constant.name) return "";
    }
  }
  levels_.back().push_back(constant);
  return "(declare-const " + constant.name + " " + make_sort(constant.width) + ")";
}

std::string RandomConversation::make_pop()
{
  const std::size_t number = below(std::min<std::size_t>(levels_.size(), 3));
  levels_.resize(levels_.size() - number);
  return "(pop " + std::to_string(number) + ")";
}

std::string RandomConversation::make_query_assuming()
{
  std::string list;
  for (std::size_t i = below(4); i > 0; --i) {
    const std::string leaf = make_leaf(kBool);
    if (leaf != "true" && leaf != "false") list += below(2) == 0 ? leaf + " " : "(not " + leaf + ") ";
  }
  return "(check-sat-assuming (" + list + "))";
}

std::string RandomConversation::make_sort(unsigned width) const
{
  return width == kBool ? "Bool" : "(_ BitVec " + std::to_string(width) + ")";
}

std::string RandomConversation::make_leaf(unsigned width)
{
  std::vector<std::string> names;
  for (const Level& level : levels_) {
    for (const Constant& constant : level) {
      if (constant.width == width) names.push_back(constant.name);
    }
  }
  if (!names.empty() && below(8) > 0) return names[below(names.size())];
  if (width == kBool) return pick({"true", "false"});
  std::string literal = "#b";
  for (unsigned i = 0; i < width; ++i)
    literal += pick({"0", "1"});
  return literal;
}

std::string RandomConversation::make_formula(unsigned depth)
{
  if (depth == 0) return make_leaf(kBool);
  const std::size_t choice = below(9);
  if (choice == 0) return "(not " + make_formula(depth - 1) + ")";
  if (choice < 4) {
    return "(" + std::string(pick({"and", "or", "xor", "=>", "="})) + " " + make_formula(depth - 1) + " " +
           make_formula(depth - 1) + ")";
  }
  const auto width = static_cast<unsigned>(1 + below(3));
  return "(" + std::string(pick({"=", "bvult", "bvule", "bvslt", "bvsle", "distinct"})) + " " +
         make_term(width, depth - 1) + " " + make_term(width, depth - 1) + ")";
}

std::string RandomConversation::make_term(unsigned width, unsigned depth)
{
  if (depth == 0) return make_leaf(width);
  const std::size_t choice = below(8);
  if (choice == 0)
    return "(" + std::string(pick({"bvnot", "bvneg"})) + " " + make_term(width, depth - 1) + ")";
  if (choice == 1 && width == 3)
    return "(concat " + make_term(1, depth - 1) + " " + make_term(2, depth - 1) + ")";
  if (choice == 1 && width == 2) return "((_ extract 2 1) " + make_term(3, depth - 1) + ")";
  if (choice == 2) {
    return "(ite " + make_formula(depth - 1) + " " + make_term(width, depth - 1) + " " +
           make_term(width, depth - 1) + ")";
  }
  return "(" +
         std::string(pick({"bvadd", "bvmul", "bvand", "bvor", "bvxor", "bvsub", "bvudiv", "bvurem", "bvshl",
                           "bvlshr", "bvashr"})) +
         " " + make_term(width, depth - 1) + " " + make_term(width, depth - 1) + ")";
}

}  // namespace lumo::test
