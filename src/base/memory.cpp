#include "base/memory.hpp"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>
#include <utility>

#include "base/failure.hpp"

namespace velmor {
namespace {

/// A limit from a file of the control group; none if the file is not there or holds the word "max".
std::uint64_t GroupLimit(const char* path) {
  std::uint64_t bytes = 0;
  std::ifstream file(path);
  return file >> bytes ? bytes : std::numeric_limits<std::uint64_t>::max();
}

}  // namespace

std::uint64_t MemoryCeiling() {
  std::uint64_t ceiling = std::numeric_limits<std::uint64_t>::max();
  struct sysinfo system {};
  if (::sysinfo(&system) == 0) ceiling = (std::uint64_t{system.totalram} + system.totalswap) * system.mem_unit;
  struct rlimit limit {};
  if (::getrlimit(RLIMIT_AS, &limit) == 0) ceiling = std::min(ceiling, std::uint64_t{limit.rlim_cur});
  ceiling = std::min(ceiling, GroupLimit("/sys/fs/cgroup/memory.max"));
  return std::min(ceiling, GroupLimit("/sys/fs/cgroup/memory/memory.limit_in_bytes"));
}

ZeroedBlock::ZeroedBlock(std::uint64_t count) {
  const auto fail = [&] {
    return Failure(error::OutOfMemory, "no memory for a table of " + std::to_string(count / (1 << 17)) + " MB");
  };
  if (count > MemoryCeiling() / sizeof(double)) throw fail();
  void* const block =
      ::mmap(nullptr, count * sizeof(double), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) throw fail();
  // Huge pages spare most of the page faults and of the address translation; a system without them may refuse.
  static_cast<void>(::madvise(block, count * sizeof(double), MADV_HUGEPAGE));
  numbers_ = {static_cast<double*>(block), static_cast<std::size_t>(count)};
}

ZeroedBlock::~ZeroedBlock() {
  if (!numbers_.empty()) ::munmap(numbers_.data(), numbers_.size_bytes());
}

ZeroedBlock::ZeroedBlock(ZeroedBlock&& other) noexcept : numbers_(std::exchange(other.numbers_, {})) {}

ZeroedBlock& ZeroedBlock::operator=(ZeroedBlock&& other) noexcept {
  std::swap(numbers_, other.numbers_);
  return *this;
}

}  // namespace velmor
