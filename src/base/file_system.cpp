#include "base/file_system.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/failure.hpp"
#include "base/interruption.hpp"

namespace velmor {
namespace {

namespace fs = std::filesystem;

bool SameWithoutCase(const std::string& a, const std::string& b) {
  const auto lower = [](char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char one, char other) { return lower(one) == lower(other); });
}

[[noreturn]] void FailOpening(const std::string& path, int number, const char* reason, std::source_location where) {
  throw Failure(Cause::MissingFile, number, path + ": " + reason, path, where);
}

}  // namespace

std::string FindFile(const std::string& path) {
  std::error_code ignored;
  const fs::path asSpelled(path);
  if (fs::exists(fs::symlink_status(asSpelled, ignored))) return path;
  const std::string wanted = asSpelled.filename().string();
  const fs::path folder = asSpelled.has_parent_path() ? asSpelled.parent_path() : fs::path(".");
  std::string found;
  for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end; entry.increment(ignored)) {
    std::string name = entry->path().filename().string();
    if (SameWithoutCase(name, wanted) && (found.empty() || name < found)) found = std::move(name);
  }
  return found.empty() ? path : (asSpelled.parent_path() / found).string();
}

bool DeleteFile(const std::string& path) { return ::unlink(FindFile(path).c_str()) == 0 || errno == ENOENT; }

std::int64_t FileSize(const std::string& path) {
  struct stat status {};
  return ::stat(FindFile(path).c_str(), &status) == 0 ? static_cast<std::int64_t>(status.st_size) : -1;
}

FileStamp StampOf(const std::string& path) {
  struct stat status {};
  if (::stat(FindFile(path).c_str(), &status) != 0) return {};
  return {status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::string ProgramFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? "" : program.parent_path().string() + "/";
}

FolderLock::FolderLock(const std::string& folder) {
  descriptor_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  held_ = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;  // a system without locks stops nobody
}

FolderLock::~FolderLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

InputFile::InputFile(const std::string& path, std::source_location where) : path_(path) {
  // Without O_NONBLOCK a pipe without a writer would hold the run for ever.
  descriptor_ = ::open(FindFile(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) {
    const bool missing = errno == ENOENT || errno == ENOTDIR;
    FailOpening(path_, missing ? error::FileNotFound : error::PathAccessError, std::strerror(errno), where);
  }
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
    ::close(descriptor_);
    FailOpening(path_, error::PathAccessError, "no regular file", where);
  }
  size_ = static_cast<std::int64_t>(status.st_size);
}

InputFile::~InputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

InputFile::InputFile(InputFile&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

std::size_t InputFile::ReadSome(void* to, std::size_t bytes) {
  char* const target = static_cast<char*>(to);
  std::size_t done = 0;
  while (done < bytes) {
    const ssize_t count = ::read(descriptor_, target + done, bytes - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(error::ReadWriteError, path_ + ": " + std::strerror(errno));
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void InputFile::Read(void* to, std::size_t bytes) {
  if (ReadSome(to, bytes) < bytes) throw Failure(error::InputPastEnd, path_ + ": the file is cut short");
}

void InputFile::ReadAt(std::int64_t place, void* to, std::size_t bytes) const {
  char* const target = static_cast<char*>(to);
  for (std::size_t done = 0; done < bytes;) {
    const ssize_t count = ::pread(descriptor_, target + done, bytes - done, place + static_cast<std::int64_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(error::ReadWriteError, path_ + ": " + std::strerror(errno));
    if (count == 0) throw Failure(error::InputPastEnd, path_ + ": the file is cut short");
    done += static_cast<std::size_t>(count);
  }
}

bool InputFile::IsHole(std::int64_t begin, std::int64_t end) const {
  const off_t here = ::lseek(descriptor_, 0, SEEK_CUR);
  const off_t data = ::lseek(descriptor_, begin, SEEK_DATA);
  const bool noneLeft = data < 0 && errno == ENXIO;  // any other reason: the system cannot tell
  ::lseek(descriptor_, here, SEEK_SET);
  return data >= end || (noneLeft && end <= size_);
}

void InputFile::Rewind() {
  if (::lseek(descriptor_, 0, SEEK_SET) != 0) throw Failure(error::ReadWriteError, path_ + ": " + std::strerror(errno));
}

OutputFile::OutputFile(const std::string& path, Unfinished unfinished, std::source_location where)
    : spelled_(path),
      path_(FindFile(path)),
      unfinished_(unfinished),
      where_(where),
      buffer_(std::make_unique_for_overwrite<char[]>(BufferSize)) {
  // A link is followed, so that the file it points at is replaced and the link stays.
  std::error_code ignored;
  if (fs::path target = fs::canonical(path_, ignored); !ignored) path_ = target.string();
  struct stat older {};
  const bool exists = ::stat(path_.c_str(), &older) == 0;
  if (exists && S_ISDIR(older.st_mode)) FailCreating(EISDIR);
  if (exists && ::access(path_.c_str(), W_OK) != 0) FailCreating(errno);
  if (!exists || S_ISREG(older.st_mode)) CreateTemporary(exists ? older.st_mode & 07777 : 0666);
  if (descriptor_ >= 0) {
    if (exists) ::fchmod(descriptor_, older.st_mode & 07777);
    return;
  }
  // A device, or a folder or name that leaves no room for another file: written in its place.
  descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
  if (descriptor_ < 0) FailCreating(errno);
  if (exists && !S_ISREG(older.st_mode)) return;
  Lock();
  Empty();
}

/// Opens the file in which the result grows; what a killed run has left in it goes.
void OutputFile::CreateTemporary(mode_t mode) {
  const std::string name = path_ + ".part";
  for (int left = 10; left > 0; --left) {
    descriptor_ = ::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW, mode);
    if (descriptor_ < 0) return;
    Lock();
    // Between the two calls another run may have given the file its final name.
    struct stat opened {};
    struct stat named {};
    const bool known = ::fstat(descriptor_, &opened) == 0 && ::lstat(name.c_str(), &named) == 0;
    if (known && opened.st_ino == named.st_ino) break;
    if (left > 1) ::close(descriptor_);
  }
  temporary_ = name;
  Empty();
}

/// Keeps other runs from the open file until it is closed.
void OutputFile::Lock() {
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return;
  ::close(std::exchange(descriptor_, -1));
  throw Failure(error::PathAccessError, spelled_ + " cannot be written: another run is writing it", where_);
}

void OutputFile::Empty() {
  if (::ftruncate(descriptor_, 0) == 0) return;
  const int reason = errno;
  ::close(std::exchange(descriptor_, -1));
  FailCreating(reason);
}

void OutputFile::FailCreating(int errorNumber) const {
  throw Failure(error::PathAccessError, spelled_ + " cannot be written: " + std::strerror(errorNumber), where_);
}

/// Takes both the file in the making and the older one away, or empties it where the folder lets no file go; a device
/// stays.
void OutputFile::Remove() const {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  std::error_code ignored;
  if (fs::is_regular_file(path_, ignored) && ::unlink(path_.c_str()) != 0) fs::resize_file(path_, 0, ignored);
}

void OutputFile::RemoveOlder() {
  if (!temporary_.empty()) ::unlink(path_.c_str());
}

OutputFile::~OutputFile() {
  if (descriptor_ < 0) return;
  const bool keep = unfinished_ == Unfinished::Keep && CaughtSignal() == 0;
  if (keep) {
    try {
      Flush();
    } catch (const Failure&) {
      // The disk is full: what it took before stays.
    }
  }
  if (!keep || (!temporary_.empty() && ::rename(temporary_.c_str(), path_.c_str()) != 0)) Remove();
  ::close(descriptor_);
}

void OutputFile::FailWriting(std::source_location where) const {
  throw Failure(error::ReadWriteError, spelled_ + " cannot be written: " + std::strerror(errno), where);
}

void OutputFile::WriteNow(const void* from, std::size_t bytes) {
  const char* const source = static_cast<const char*>(from);
  for (std::size_t done = 0; done < bytes;) {
    const ssize_t count = ::write(descriptor_, source + done, bytes - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) FailWriting(where_);
    done += static_cast<std::size_t>(count);
  }
}

void OutputFile::Skip(std::size_t bytes) {
  Flush();
  const char zeros[4096] = {};
  // The last zero is written, so that the file reaches so far even if it ends here.
  if (::lseek(descriptor_, static_cast<off_t>(bytes - 1), SEEK_CUR) >= 0) return WriteNow(zeros, 1);
  for (std::size_t left = bytes; left > 0; left -= std::min(left, sizeof zeros)) {
    WriteNow(zeros, std::min(left, sizeof zeros));
  }
}

void OutputFile::Flush() { WriteNow(buffer_.get(), std::exchange(used_, 0)); }

void OutputFile::Append(std::string_view text) {
  if (text.size() > BufferSize - used_) Flush();
  if (text.size() > BufferSize) return WriteNow(text.data(), text.size());
  std::memcpy(buffer_.get() + used_, text.data(), text.size());
  used_ += text.size();
}

void OutputFile::Close(std::source_location where) {
  Flush();
  const int lock = ::dup(descriptor_);  // keeps other runs away until the file has its name
  const bool written = ::close(std::exchange(descriptor_, -1)) == 0;
  const bool done = written && (temporary_.empty() || ::rename(temporary_.c_str(), path_.c_str()) == 0);
  const int reason = errno;
  if (!done) Remove();
  ::close(lock);
  if (done) return;
  if (reason == EACCES || reason == EPERM) FailCreating(reason);
  errno = reason;
  FailWriting(where);
}

}  // namespace velmor
