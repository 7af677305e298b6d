#ifndef LUMO_TERMS_DATA_TYPE_H
#define LUMO_TERMS_DATA_TYPE_H

#include <string>

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
  /// The width of a bit-vector sort, 0 for Bool.
  [[nodiscard]] unsigned long get_width() const { return width_; }
  [[nodiscard]] const TermManager* get_manager() const { return manager_; }
  /// The SMT-LIB 2 spelling: `Bool` or `(_ BitVec 8)`.
  [[nodiscard]] std::string to_string() const
  {
    return is_bool() ? "Bool" : "(_ BitVec " + std::to_string(width_) + ")";
  }

 private:
  const TermManager* manager_;
  unsigned long width_;
};

}  // namespace lumo

#endif
