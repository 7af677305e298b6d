#ifndef LUMO_TERMS_DATA_TYPE_H
#define LUMO_TERMS_DATA_TYPE_H

#include <limits>
#include <string>
#include <utility>

namespace lumo {

class TermManager;

/// Only a term manager can make one, so only term managers can call functions that take it.
class TermManagerKey
{
 private:
  friend class TermManager;
  // With a defaulted constructor, any caller could write {}.
  // NOLINTNEXTLINE(modernize-use-equals-default)
  TermManagerKey() {}
};

/// A sort: Bool, or bit-vectors of one width. A term manager owns one object per sort, so sorts of one
/// manager are equal if and only if their addresses are.
///
/// A user of a manager may derive *opaque* sorts. The manager makes constants of them, but has neither operators nor
/// values for them; the user owns the sort.
class DataType
{
 public:
  /// Width 0 makes Bool.
  DataType(TermManagerKey /*key*/, const TermManager* manager, unsigned long width)
      : manager_(manager), width_(width)
  {}
  DataType(const DataType&) = delete;
  DataType& operator=(const DataType&) = delete;

  [[nodiscard]] bool is_bool() const { return width_ == 0; }
  [[nodiscard]] bool is_bit_vector() const { return width_ - 1 < kOpaque - 1; }
  [[nodiscard]] bool is_opaque() const { return width_ == kOpaque; }
  /// The width of a bit-vector sort, 0 for Bool; of no meaning for an opaque sort.
  [[nodiscard]] unsigned long get_width() const { return width_; }
  [[nodiscard]] const TermManager* get_manager() const { return manager_; }
  /// The SMT-LIB 2 spelling: `Bool` or `(_ BitVec 8)`, or that of an opaque sort.
  [[nodiscard]] std::string to_string() const
  {
    if (is_opaque()) return spelling_;
    return is_bool() ? "Bool" : "(_ BitVec " + std::to_string(width_) + ")";
  }

 protected:
  /// An opaque sort.
  DataType(const TermManager* manager, std::string spelling)
      : manager_(manager), width_(kOpaque), spelling_(std::move(spelling))
  {}

 private:
  static constexpr unsigned long kOpaque = std::numeric_limits<unsigned long>::max();

  const TermManager* manager_;
  unsigned long width_;
  std::string spelling_;  ///< of an opaque sort
};

}  // namespace lumo

#endif
