#include "tests/proof/proof_rows.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

namespace lumo::test {

namespace {

constexpr std::string_view kItself = {};  // the terms that the calculator builds
constexpr std::string_view kAlways = {};
constexpr Scope kEvery = Scope::kEvery;
constexpr Standing kSound = Standing::kSound;
constexpr Standing kUnsound = Standing::kUnsound;

// In the order of Kind
constexpr ProofRow kProofRows[] = {
    {Kind::kNot, kEvery, "x e", "v", kAlways, "x := (not v)"},
    {Kind::kAnd, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := v"},
    {Kind::kOr, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := v"},
    {Kind::kIff, kEvery, "xx xe ex ee", "v", kAlways, "a := true; b := v"},
    {Kind::kIff, kEvery, "xn en", "v", kAlways, "a := (= b v)"},
    {Kind::kIff, kEvery, "nx ne", "v", kAlways, "b := (= a v)"},

    {Kind::kIte, Scope::kVectors, "xxx xxe xex xee exx exe eex eee", "v", kAlways, kItself},
    {Kind::kIte, Scope::kVectors, "xnx xne enx ene", "v", kAlways, kItself},
    {Kind::kIte, Scope::kVectors, "xxn xen exn een", "v", kAlways, kItself},
    {Kind::kIte, Scope::kVectors, "nxx nxe nex nee", "v", kAlways, kItself},
    {Kind::kIte, Scope::kBools, "xxx xxe xex xee exx exe eex eee", "v", kAlways, kItself},
    {Kind::kIte, Scope::kBools, "xxn xen exn een", "v", kAlways, kItself},
    {Kind::kIte, Scope::kBools, "nxx nxe nex nee", "v", kAlways, kItself},
    {Kind::kIte, Scope::kBools, "xnx xne xnn enx ene enn", "v", "(= a v)", kItself},
    {Kind::kIte, Scope::kBools, "xnx xne xnn enx ene enn", "v", "(distinct a v)", kItself, kUnsound},
    {Kind::kIte, Scope::kBools, "nnx nne", "v", "(=> c (= a v))", kItself},
    {Kind::kIte, Scope::kBools, "nnx nne", "v", "(and c (distinct a v))", kItself, kUnsound},
    {Kind::kIte, Scope::kBools, "nxn nen", "v", "(or c (= b v))", kItself},
    {Kind::kIte, Scope::kBools, "nxn nen", "v", "(not (or c (= b v)))", kItself, kUnsound},
    {Kind::kIte, Scope::kBools, "nnn", "v", "(= (ite c a b) v)", kItself},
    {Kind::kIte, Scope::kBools, "nnn", "v", "(distinct (ite c a b) v)", kItself, kUnsound},

    {Kind::kEq, kEvery, "xx xe", "true", kAlways, "a := zero; b := zero"},
    {Kind::kEq, kEvery, "ex", "true", kAlways, "b := zero; a := zero"},
    {Kind::kEq, kEvery, "xn en", "true", kAlways, "a := b"},
    {Kind::kEq, kEvery, "nx ne", "true", kAlways, "b := a"},
    {Kind::kEq, kEvery, "xx xe", "false", kAlways, "a := one; b := zero"},
    {Kind::kEq, kEvery, "ex", "false", kAlways, "b := one; a := zero"},
    {Kind::kEq, kEvery, "xn en", "false", kAlways, "a := (bvadd b one)"},
    {Kind::kEq, kEvery, "nx ne", "false", kAlways, "b := (bvadd a one)"},

    {Kind::kBvNot, kEvery, "x e", "v", kAlways, kItself},
    {Kind::kBvNeg, kEvery, "x e", "v", kAlways, kItself},
    {Kind::kBvRotateLeft, kEvery, "x e", "v", kAlways, kItself},
    {Kind::kBvRotateRight, kEvery, "x e", "v", kAlways, kItself},
    {Kind::kBvAnd, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := v"},
    {Kind::kBvOr, kEvery, "xx xe", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvOr, kEvery, "ex", "v", kAlways, "b := v; a := zero"},
    {Kind::kBvXor, kEvery, "xx xe", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvXor, kEvery, "ex", "v", kAlways, "b := v; a := zero"},
    {Kind::kBvXor, kEvery, "xn en", "v", kAlways, kItself},
    {Kind::kBvXor, kEvery, "nx ne", "v", kAlways, kItself},

    {Kind::kBvConcat, kEvery, "xx xe", "v", kAlways, kItself},
    {Kind::kBvExtract, kEvery, "x e", "v", kAlways, "x := (bvshl wide lsb)"},
    {Kind::kBvZeroExtend, kEvery, "x e", "v", "(or is_zero is_one)", "x := low"},
    {Kind::kBvZeroExtend, kEvery, "n", "v", "(and (or is_zero is_one) (= x low))", "x := low"},
    {Kind::kBvZeroExtend, kEvery, "n", "v", "(and (or is_zero is_one) (distinct x low))", "x := low",
     kUnsound},
    {Kind::kBvSignExtend, Scope::kWider, "x e", "v", "(or is_zero is_one)", "x := low"},
    {Kind::kBvSignExtend, Scope::kOneBit, "x e", "v", "is_zero", "x := low"},
    {Kind::kBvSignExtend, Scope::kOneBit, "x e", "v", "is_one", "x := low", kUnsound},
    {Kind::kBvSignExtend, Scope::kWider, "n", "v", "(and (or is_zero is_one) (= x low))", "x := low"},
    {Kind::kBvSignExtend, Scope::kWider, "n", "v", "(and (or is_zero is_one) (distinct x low))", "x := low",
     kUnsound},
    {Kind::kBvSignExtend, Scope::kOneBit, "n", "v", "(and is_zero (= x low))", "x := low"},
    {Kind::kBvSignExtend, Scope::kOneBit, "n", "v", "(or is_one (and is_zero (distinct x low)))", "x := low",
     kUnsound},

    {Kind::kBvLsl, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvLsr, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvAsr, kEvery, "xx xe", "v", kAlways, "a := v; b := zero"},

    {Kind::kBvAdd, kEvery, "xx xe", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvAdd, kEvery, "ex", "v", kAlways, "b := v; a := zero"},
    {Kind::kBvAdd, kEvery, "xn en", "v", kAlways, kItself},
    {Kind::kBvAdd, kEvery, "nx ne", "v", kAlways, kItself},
    {Kind::kBvSub, kEvery, "xx xe", "v", kAlways, "a := v; b := zero"},
    {Kind::kBvSub, kEvery, "ex", "v", kAlways, "b := (bvneg v); a := zero"},
    {Kind::kBvSub, kEvery, "xn en", "v", kAlways, kItself},
    {Kind::kBvSub, kEvery, "nx ne", "v", kAlways, kItself},
    {Kind::kBvMul, kEvery, "xx xe", "v", kAlways, "a := v; b := one"},
    {Kind::kBvMul, kEvery, "ex", "v", kAlways, "b := v; a := one"},
    {Kind::kBvMul, kEvery, "xn en", "v", "(= product one)", "a := (bvmul inverse v)", kSound,
     "(bvmul product v)"},
    {Kind::kBvMul, kEvery, "nx ne", "v", "(= product one)", "b := (bvmul inverse v)", kSound,
     "(bvmul product v)"},
    {Kind::kBvUdiv, kEvery, "xx xe", "v", kAlways, "a := v; b := one"},
    {Kind::kBvSdiv, kEvery, "xx xe ex ee", "v", kAlways, "a := v; b := one"},

    {Kind::kBvUlt, kEvery, "xx xe ex ee", "true", kAlways, "a := zero; b := one"},
    {Kind::kBvUlt, kEvery, "xx xe ex ee", "false", kAlways, "a := zero; b := zero"},
    {Kind::kBvUlt, kEvery, "xn en", "true", "(distinct b zero)", "a := (bvsub b one)"},
    {Kind::kBvUlt, kEvery, "xn en", "false", kAlways, "a := b"},
    {Kind::kBvUlt, kEvery, "nx ne", "true", "(distinct a ones)", "b := (bvadd a one)"},
    {Kind::kBvUlt, kEvery, "nx ne", "false", kAlways, "b := a"},

    {Kind::kBvUle, kEvery, "xx xe ex ee", "true", kAlways, "a := zero; b := zero"},
    {Kind::kBvUle, kEvery, "xx xe ex ee", "false", kAlways, "a := one; b := zero"},
    {Kind::kBvUle, kEvery, "xn en", "true", kAlways, "a := b"},
    {Kind::kBvUle, kEvery, "xn en", "false", "(distinct b ones)", "a := (bvadd b one)"},
    {Kind::kBvUle, kEvery, "nx ne", "true", kAlways, "b := a"},
    {Kind::kBvUle, kEvery, "nx ne", "false", "(distinct a zero)", "b := (bvsub a one)"},

    {Kind::kBvSlt, Scope::kOneBit, "xx xe ex ee", "true", kAlways, "a := one; b := zero"},
    {Kind::kBvSlt, Scope::kWider, "xx xe ex ee", "true", kAlways, "a := zero; b := one"},
    {Kind::kBvSlt, kEvery, "xx xe ex ee", "false", kAlways, "a := zero; b := zero"},
    {Kind::kBvSlt, kEvery, "xn en", "true", "(distinct b least)", "a := (bvsub b one)"},
    {Kind::kBvSlt, kEvery, "xn en", "false", kAlways, "a := b"},
    {Kind::kBvSlt, kEvery, "nx ne", "true", "(distinct a greatest)", "b := (bvadd a one)"},
    {Kind::kBvSlt, kEvery, "nx ne", "false", kAlways, "b := a"},

    {Kind::kBvSle, kEvery, "xx xe ex ee", "true", kAlways, "a := zero; b := zero"},
    {Kind::kBvSle, Scope::kOneBit, "xx xe ex ee", "false", kAlways, "a := zero; b := one"},
    {Kind::kBvSle, Scope::kWider, "xx xe ex ee", "false", kAlways, "a := one; b := zero"},
    {Kind::kBvSle, kEvery, "xn en", "true", kAlways, "a := b"},
    {Kind::kBvSle, kEvery, "xn en", "false", "(distinct b greatest)", "a := (bvadd b one)"},
    {Kind::kBvSle, kEvery, "nx ne", "true", kAlways, "b := a"},
    {Kind::kBvSle, kEvery, "nx ne", "false", "(distinct a least)", "b := (bvsub a one)"},

    {Kind::kBvComp, kEvery, "xx xe", "#b1", kAlways, "a := zero; b := zero"},
    {Kind::kBvComp, kEvery, "ex", "#b1", kAlways, "b := zero; a := zero"},
    {Kind::kBvComp, kEvery, "xn en", "#b1", kAlways, "a := b"},
    {Kind::kBvComp, kEvery, "nx ne", "#b1", kAlways, "b := a"},
    {Kind::kBvComp, kEvery, "xx xe", "#b0", kAlways, "a := one; b := zero"},
    {Kind::kBvComp, kEvery, "ex", "#b0", kAlways, "b := one; a := zero"},
    {Kind::kBvComp, kEvery, "xn en", "#b0", kAlways, "a := (bvadd b one)"},
    {Kind::kBvComp, kEvery, "nx ne", "#b0", kAlways, "b := (bvadd a one)"},
};

/// The widths of every run, or those of a manual run
std::vector<unsigned long> choose_widths(bool wants_all)
{
  std::vector<unsigned long> widths;
  for (unsigned long w = 1; w <= (wants_all ? 66 : 16); ++w)
    widths.push_back(w);
  const std::vector<unsigned long> others = wants_all ? std::vector<unsigned long>{127, 128, 129, 256}
                                                      : std::vector<unsigned long>{31, 32, 33, 63, 64};
  widths.insert(widths.end(), others.begin(), others.end());
  return widths;
}

std::vector<unsigned long> choose_widths(const ProofRow& row, bool wants_all)
{
  if (row.scope == Scope::kBools || get_operator_info(row.kind).rule == SortRule::kBool) return {0};
  std::vector<unsigned long> widths = choose_widths(wants_all);
  std::erase_if(widths, [&row](unsigned long w) {
    const std::vector<Parameters> chosen = choose_parameters(row.kind, w);
    return std::none_of(chosen.begin(), chosen.end(),
                        [&row](const Parameters& parameters) { return is_in_scope(row, parameters); });
  });
  return widths;
}

/// All extractions or, above 8 bits, those between the ends, their neighbours and the middle.
std::vector<Parameters> choose_extractions(unsigned long w)
{
  std::set<unsigned long> places;
  for (unsigned long i = 0; i < w; ++i) {
    if (w <= 8 || i <= 1 || i == w / 2 || i + 2 >= w) places.insert(i);
  }
  std::vector<Parameters> chosen;
  for (const unsigned long msb : places) {
    for (const unsigned long lsb : places) {
      if (lsb <= msb) chosen.push_back({msb, lsb, w});
    }
  }
  return chosen;
}

std::vector<Parameters> choose_rotations(unsigned long w)
{
  std::vector<Parameters> chosen;
  for (unsigned long k = 0; k <= 2 * w; ++k) {
    if (w <= 8 || k <= 1 || k == w / 2 || (k + 1 >= w && k <= w + 1) || k == 2 * w) chosen.push_back({k, w});
  }
  return chosen;
}

}  // namespace

std::span<const ProofRow> get_proof_rows() { return kProofRows; }

std::vector<unsigned long> get_proof_widths(const ProofRow& row)
{
  const char* wish = std::getenv("LUMO_PROOF_WIDTHS");  // NOLINT(concurrency-mt-unsafe)
  return choose_widths(row, wish != nullptr && std::string_view(wish) == "all");
}

std::string describe_proof_widths(const ProofRow& row)
{
  const std::vector<unsigned long> widths = choose_widths(row, false);
  if (widths.front() == 0) return "Bool";
  std::ostringstream text;
  for (std::size_t i = 0; i < widths.size();) {
    std::size_t last = i;
    while (last + 1 < widths.size() && widths[last + 1] == widths[last] + 1)
      ++last;
    if (last < i + 3) last = i;
    text << (i == 0 ? "" : ", ") << widths[i];
    if (last != i) text << " to " << widths[last];
    i = last + 1;
  }
  return text.str();
}

std::vector<Parameters> choose_parameters(Kind kind, unsigned long w)
{
  std::vector<Parameters> chosen;
  switch (get_operator_info(kind).rule) {
    case SortRule::kBool:
      return {{}};
    case SortRule::kIte:
    case SortRule::kEq:
    case SortRule::kUniform:
    case SortRule::kPredicate:
    case SortRule::kComparison:
      return {{w}};
    case SortRule::kConcat:
      for (const unsigned long other : std::set<unsigned long>{1, 3, w})
        chosen.push_back({w, other});
      return chosen;
    case SortRule::kExtract:
      return choose_extractions(w);
    case SortRule::kRotate:
      return choose_rotations(w);
    case SortRule::kExtend:
      for (const unsigned long k : std::set<unsigned long>{0, 1, 3, w})
        chosen.push_back({k, w});
      return chosen;
  }
  return chosen;
}

bool is_in_scope(const ProofRow& row, const Parameters& parameters)
{
  const bool is_extension = get_operator_info(row.kind).rule == SortRule::kExtend;
  const bool is_one_bit = is_extension ? parameters[1] == 1 && parameters[0] > 0 : parameters[0] == 1;
  switch (row.scope) {
    case Scope::kEvery:
      return true;
    case Scope::kOneBit:
      return is_one_bit;
    case Scope::kWider:
      return !is_one_bit;
    case Scope::kBools:
      return parameters[0] == 0;
    case Scope::kVectors:
      return parameters[0] != 0;
  }
  return false;
}

std::vector<std::string_view> split_words(std::string_view text)
{
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end != 0) words.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

}  // namespace lumo::test
