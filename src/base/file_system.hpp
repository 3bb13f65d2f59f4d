#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <source_location>
#include <string>
#include <string_view>

namespace velmor {

/// The file that `path` means. Names are case-blind: a path that does not exist as spelled is looked up once
/// more in its folder without regard to case (the first match in alphabetical order). Without a match it is
/// `path` itself, which is then the name of a file to create.
std::string FindFile(const std::string& path);

/// Deletes the file that `path` means; false if it is still there. A file that does not exist is no error.
bool DeleteFile(const std::string& path);

/// Size in bytes of the file that `path` means, or -1 if there is none.
std::int64_t FileSize(const std::string& path);

/// What tells a file from the one that stood in its place before; all zero if there is none.
struct FileStamp {
  std::uint64_t inode = 0;
  std::int64_t seconds = 0, nanoseconds = 0;
  bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(const std::string& path);

/// The folder that holds the running program, absolute, with a trailing '/'; empty if the system does not tell it.
std::string ProgramFolder();

/// Keeps a second start in the same folder away for as long as it lives; leaves no file behind.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  bool IsHeld() const { return held_; }

 private:
  int descriptor_ = -1;
  bool held_ = false;
};

/// A regular file opened for reading. Failure (Cause::MissingFile) 53 if it is not there, 75 if it is there and cannot
/// be opened (a folder, a pipe, no permission), 57 if reading fails later.
class InputFile {
 public:
  explicit InputFile(const std::string& path, std::source_location where = std::source_location::current());
  ~InputFile();
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;

  const std::string& Path() const { return path_; }
  std::int64_t Size() const { return size_; }
  /// Fills `bytes` bytes from the current position; failure 62 if the file ends before.
  void Read(void* to, std::size_t bytes);
  /// Up to `bytes` bytes from the current position; returns how many there were.
  std::size_t ReadSome(void* to, std::size_t bytes);
  /// Fills `bytes` bytes from byte `place` of the file, wherever Read goes on; failure 62 if the file ends before.
  void ReadAt(std::int64_t place, void* to, std::size_t bytes) const;
  /// True if the system knows that the bytes from `begin` to before `end` are zeros that the disk does not hold.
  bool IsHole(std::int64_t begin, std::int64_t end) const;
  /// Back to the first byte.
  void Rewind();

 private:
  std::string path_;
  int descriptor_ = -1;
  std::int64_t size_ = 0;
};

/// What becomes of a file whose stage fails before Close.
enum class Unfinished { Discard, Keep };

/// A file being written. It grows under a name of its own beside its place and takes its place at Close, so
/// that a program killed at any moment leaves a whole file or none. Without Close, when its stage fails, or when Close
/// fails, it disappears together with the older file of its name, so that nothing stale is taken for its result, or
/// stays with what had been written (Unfinished::Keep). No two runs write one file at a time. A device in its place is
/// written directly, and so is a file whose folder or name has no room for a second one; such a file is whole only when
/// Close has returned. Failure 75 if it cannot be created or another run is writing it, 57 if writing fails (a full
/// disk).
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, Unfinished unfinished = Unfinished::Discard,
                      std::source_location where = std::source_location::current());
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Removes the older file now, so that the disk need not hold both.
  void RemoveOlder();
  void Write(const void* from, std::size_t bytes) {
    Flush();
    WriteNow(from, bytes);
  }
  /// Goes on after so many zeros, at least one, which stay a hole where the file system has holes.
  void Skip(std::size_t bytes);
  /// Appends text through a buffer of the file's own.
  void Append(std::string_view text);
  /// Room for so many bytes, no more than the buffer has, in which the next part of the file can be written as it is
  /// made; Took says where that part ends.
  char* Room(std::size_t bytes) {
    if (bytes > BufferSize - used_) Flush();
    return buffer_.get() + used_;
  }
  void Took(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }
  void Close(std::source_location where = std::source_location::current());

 private:
  void CreateTemporary(mode_t mode);
  void Lock();
  void Empty();
  [[noreturn]] void FailCreating(int errorNumber) const;
  void WriteNow(const void* from, std::size_t bytes);
  void Flush();
  void Remove() const;
  [[noreturn]] void FailWriting(std::source_location where) const;

  static constexpr std::size_t BufferSize = std::size_t{1} << 18;
  std::string spelled_;    // as the stage spells it, for messages
  std::string path_;       // where the file belongs
  std::string temporary_;  // where it grows; empty if it is written in place
  Unfinished unfinished_;
  std::source_location where_;
  int descriptor_ = -1;
  std::size_t used_ = 0;
  std::unique_ptr<char[]> buffer_;
};

}  // namespace velmor
