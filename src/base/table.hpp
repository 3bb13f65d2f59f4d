#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <new>
#include <vector>

#include "base/failure.hpp"
#include "base/memory.hpp"

namespace velmor {

/// Numbers with bounds 0..Rows by 0..Cols, row by row. Work uses 1..Rows by 1..Cols, so that code reads like
/// the formula it comes from; index 0 holds nothing. A wrong index is an error of the code and stops a debug
/// build; an index that comes from a file is checked where it is read.
template <int Rows, int Cols>
class Table {
 public:
  double& operator()(int i, int j) { return entries_[At(i, j)]; }
  double operator()(int i, int j) const { return entries_[At(i, j)]; }
  void Clear() { entries_.fill(0.0); }

 private:
  static std::size_t At(int i, int j) {
    assert(0 <= i && i <= Rows && 0 <= j && j <= Cols);
    return static_cast<std::size_t>(i * (Cols + 1) + j);
  }
  std::array<double, static_cast<std::size_t>((Rows + 1) * (Cols + 1))> entries_{};
};

/// The brother of Table with one index: bounds 0..Size.
template <typename T, int Size>
class Row {
 public:
  T& operator()(int i) { return entries_[At(i)]; }
  T operator()(int i) const { return entries_[At(i)]; }

 private:
  static std::size_t At(int i) {
    assert(0 <= i && i <= Size);
    return static_cast<std::size_t>(i);
  }
  std::array<T, static_cast<std::size_t>(Size + 1)> entries_{};
};

/// A table whose bounds 0..rows by 0..cols a stage computes; every entry starts at `initial`. A default-made
/// grid has no entries at all. Failure 7 if there is no memory for it.
template <typename T>
class GridOf {
 public:
  GridOf() = default;
  GridOf(int rows, int cols, T initial = T{}) try
      : rows_(rows), cols_(cols), entries_(Affordable(Count(rows) * Count(cols)), initial) {
  } catch (const std::bad_alloc&) {
    throw Failure(error::OutOfMemory, "no memory for a table");
  }

  T& operator()(int i, int j) { return entries_[At(i, j)]; }
  const T& operator()(int i, int j) const { return entries_[At(i, j)]; }
  int Rows() const { return rows_; }
  int Cols() const { return cols_; }
  bool IsThere() const { return !entries_.empty(); }
  void Fill(T value) { entries_.assign(entries_.size(), value); }
  /// First entry (index 0) of row i; the row's entries follow each other.
  T* RowStart(int i) { return &entries_[At(i, 0)]; }
  const T* RowStart(int i) const { return &entries_[At(i, 0)]; }

 private:
  static std::size_t Count(int bound) { return static_cast<std::size_t>(bound) + 1; }
  /// Systems promise more memory than they have: what could never fit is refused before it is touched.
  static std::size_t Affordable(std::size_t count) {
    constexpr std::size_t small = std::size_t{1} << 26;
    if (count > small && count > MemoryCeiling() / sizeof(T)) throw std::bad_alloc();
    return count;
  }
  std::size_t At(int i, int j) const {
    assert(0 <= i && i <= rows_ && 0 <= j && j <= cols_);
    return static_cast<std::size_t>(i) * Count(cols_) + static_cast<std::size_t>(j);
  }
  int rows_ = -1;
  int cols_ = -1;
  std::vector<T> entries_;
};
using Grid = GridOf<double>;

/// The brother of GridOf with one index: bounds 0..size.
template <typename T>
class ColumnOf {
 public:
  ColumnOf() = default;
  explicit ColumnOf(int size, T initial = T{}) try
      : size_(size), entries_(static_cast<std::size_t>(size) + 1, initial) {
  } catch (const std::bad_alloc&) {
    throw Failure(error::OutOfMemory, "no memory for a table");
  }

  T& operator()(int i) { return entries_[At(i)]; }
  const T& operator()(int i) const { return entries_[At(i)]; }
  int Size() const { return size_; }
  bool IsThere() const { return !entries_.empty(); }

 private:
  std::size_t At(int i) const {
    assert(0 <= i && i <= size_);
    return static_cast<std::size_t>(i);
  }
  int size_ = -1;
  std::vector<T> entries_;
};
using Column = ColumnOf<double>;

}  // namespace velmor
