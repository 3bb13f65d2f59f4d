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

[[noreturn]] void FailOpening(const std::string& path, int errorNumber, std::source_location where) {
  const bool missing = errorNumber == ENOENT || errorNumber == ENOTDIR;
  throw Failure(Cause::MissingFile, missing ? error::FileNotFound : error::PathAccessError,
                path + ": " + std::strerror(errorNumber), path, where);
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

void DeleteFile(const std::string& path) { ::unlink(FindFile(path).c_str()); }

std::int64_t FileSize(const std::string& path) {
  struct stat status {};
  return ::stat(FindFile(path).c_str(), &status) == 0 ? static_cast<std::int64_t>(status.st_size) : -1;
}

FileStamp StampOf(const std::string& path) {
  struct stat status {};
  if (::stat(FindFile(path).c_str(), &status) != 0) return {};
  return {status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

std::string ProgramFolder() { return fs::read_symlink("/proc/self/exe").parent_path().string() + "/"; }

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
  if (descriptor_ < 0) FailOpening(path_, errno, where);
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
    ::close(descriptor_);
    FailOpening(path_, S_ISDIR(status.st_mode) ? EISDIR : EACCES, where);
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
  if (!exists || S_ISREG(older.st_mode)) Create(path_ + ".part", exists ? older.st_mode & 07777 : 0666);
  if (descriptor_ >= 0) {
    temporary_ = path_ + ".part";
    if (exists) ::fchmod(descriptor_, older.st_mode & 07777);
    return;
  }
  // A device, or a folder or name that leaves no room for another file: written in its place.
  Create(path_, 0666);
  if (descriptor_ < 0) FailCreating(errno);
}

void OutputFile::Create(const std::string& name, mode_t mode) {
  descriptor_ = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, mode);
}

void OutputFile::FailCreating(int errorNumber) const {
  throw Failure(error::PathAccessError, spelled_ + " cannot be written: " + std::strerror(errorNumber), where_);
}

/// Takes both the file in the making and the older one away; a device stays.
void OutputFile::Remove() const {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  std::error_code ignored;
  if (fs::is_regular_file(path_, ignored)) ::unlink(path_.c_str());
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
  ::close(descriptor_);
  if (keep && (temporary_.empty() || ::rename(temporary_.c_str(), path_.c_str()) == 0)) return;
  Remove();
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
  const int descriptor = std::exchange(descriptor_, -1);
  if (::close(descriptor) != 0 || (!temporary_.empty() && ::rename(temporary_.c_str(), path_.c_str()) != 0)) {
    const int reason = errno;
    Remove();
    errno = reason;
    FailWriting(where);
  }
}

}  // namespace velmor
