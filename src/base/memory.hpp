#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmor {

/// Bytes that this process can hope to get: the memory and swap of the machine, or less where a limit is set
/// on the process or on its control group. What others use at the moment is not taken off.
std::uint64_t MemoryCeiling();

/// One block of zeros for a large table, aligned to a page, taken from the system page by page as it is
/// touched and given back as a whole.
class ZeroedBlock {
 public:
  ZeroedBlock() = default;
  /// `count` numbers. Failure 7 if the system has no such block or it is above the ceiling, before
  /// anything is touched.
  explicit ZeroedBlock(std::uint64_t count);
  ~ZeroedBlock();
  ZeroedBlock(ZeroedBlock&& other) noexcept;
  ZeroedBlock& operator=(ZeroedBlock&& other) noexcept;

  double* Data() { return numbers_.data(); }
  const double* Data() const { return numbers_.data(); }
  std::size_t Count() const { return numbers_.size(); }

 private:
  std::span<double> numbers_;
};

}  // namespace velmor
