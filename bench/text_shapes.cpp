#include "bench/text_shapes.h"

namespace lumo::bench {

namespace {

constexpr const char* kHead = "(set-logic QF_BV)\n";
constexpr const char* kSort = "(_ BitVec 32)";

void declare(std::string& text, const std::string& name)
{
  text += "(declare-const ";
  text += name;
  text += ' ';
  text += kSort;
  text += ")\n";
}

std::string numbered(const char* prefix, std::size_t i) { return prefix + std::to_string(i); }

}  // namespace

std::string make_wide_text(std::size_t n)
{
  std::string text = kHead;
  declare(text, "c");
  for (std::size_t i = 0; i < n / 2; ++i) {
    const std::string x = numbered("x", i);
    declare(text, x);
    text += "(assert (= (bvadd " + x + " c) (_ bv" + std::to_string(i) + " 32)))\n";
  }
  return text += "(check-sat)\n";
}

std::string make_deep_text(std::size_t n)
{
  constexpr std::array<const char*, 4> kOperators = {"bvadd", "bvxor", "bvsub", "bvor"};
  std::string text = kHead;
  for (std::size_t i = 0; i < n; ++i)
    declare(text, numbered("x", i));
  text += "(assert (= #x0000002a ";
  for (std::size_t i = 0; i < n; ++i)
    text += std::string("(") + kOperators[i % kOperators.size()] + " " + numbered("x", i) + " ";
  text += "x0";
  text.append(n, ')');
  return text += "))\n(check-sat)\n";
}

std::string make_link_text(std::size_t n)
{
  std::string text = kHead;
  declare(text, "f0");
  for (std::size_t i = 0; i < n / 2; ++i) {
    const std::string next = numbered("f", i + 1);
    const std::string x = numbered("x", i);
    declare(text, next);
    declare(text, x);
    text += "(assert (= " + numbered("f", i) + " (bvadd " + next + " " + x + ")))\n";
  }
  return text += "(check-sat)\n";
}

std::string make_spine_text(std::size_t n)
{
  std::string text = kHead;
  declare(text, "x");
  text += "(assert (= #x0000002a ";
  for (std::size_t i = 0; i < n / 2; ++i)
    text += "(bvnot (bvmul ";
  text += "x";
  for (std::size_t i = 0; i < n / 2; ++i)
    text += " #x00000005))";
  return text += "))\n(check-sat)\n";
}

std::string make_lets_text(std::size_t n)
{
  std::string text = kHead;
  declare(text, "x");
  declare(text, "y");
  text += "(assert (let ((v0 x)) ";
  for (std::size_t i = 1; i <= n / 2; ++i) {
    const std::string before = numbered("v", i - 1);
    text += "(let ((" + numbered("v", i) + " (bvadd (bvmul " + before + " " + before + ") y)))\n";
  }
  text += "(= " + numbered("v", n / 2) + " #x0000002a)";
  text.append(n / 2 + 1, ')');
  return text += ")\n(check-sat)\n";
}

std::string make_defs_text(std::size_t n)
{
  std::string text = kHead;
  declare(text, "v0");
  declare(text, "y");
  for (std::size_t i = 1; i <= n / 2; ++i) {
    const std::string before = numbered("v", i - 1);
    text += "(define-fun " + numbered("v", i) + " () " + kSort + " (bvadd (bvmul " + before + " " + before +
            ") y))\n";
  }
  return text += "(assert (= " + numbered("v", n / 2) + " #x0000002a))\n(check-sat)\n";
}

std::string make_hex_text(std::size_t n)
{
  constexpr std::size_t kDigits = 256;
  constexpr const char* kHexadecimal = "0123456789abcdef";
  std::string text =
      std::string(kHead) + "(declare-const x (_ BitVec 1024))\n(declare-const y (_ BitVec 1024))\n";
  std::size_t state = 1;
  for (std::size_t i = 0; i < n / 2; ++i) {
    text += "(assert (bvult (bvxor x y) #x";
    for (std::size_t j = 0; j < kDigits; ++j) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      text += kHexadecimal[state >> 60U];
    }
    text += "))\n";
  }
  return text += "(check-sat)\n";
}

}  // namespace lumo::bench
