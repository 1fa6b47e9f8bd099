#include "model/file_replace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "model/messages.h"
#include "model/numbers.h"

namespace sedra {

namespace fs = std::filesystem;

namespace {

// Writes are gathered into blocks this large: few system calls, little memory.
constexpr size_t kBlock = size_t(1) << 16;

// A link to a link is followed to the end; a loop gives up where the kernel would.
fs::path FollowLinks(fs::path path) {
  for (int depth = 0; depth < 40; ++depth) {
    std::error_code ec;
    if (!fs::is_symlink(fs::symlink_status(path, ec))) return path;
    const fs::path to = fs::read_symlink(path, ec);
    if (ec) return path;
    path = to.is_absolute() ? to : path.parent_path() / to;
  }
  return path;
}

// The file was made read-only on purpose when nobody may write it, even where the
// process could (an administrator's rights pass over the mode bits).
bool ReadOnlyOnPurpose(const struct stat& st) {
  return (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

std::atomic<unsigned> temporaryCounter{0};

}  // namespace

ReplacingFile::ReplacingFile(fs::path target) : target_(std::move(target)) {}

ReplacingFile::~ReplacingFile() { Discard(); }

bool ReplacingFile::Fail(int error) {
  if (error_ == 0) error_ = error != 0 ? error : EIO;
  return false;
}

bool ReplacingFile::Open() {
  destination_ = FollowLinks(target_);
  struct stat st {};
  const bool exists = ::stat(destination_.c_str(), &st) == 0;
  if (exists && (S_ISCHR(st.st_mode) || S_ISFIFO(st.st_mode) || S_ISBLK(st.st_mode) || S_ISSOCK(st.st_mode))) {
    // A device cannot be swapped for a file; it gets the bytes as they come.
    fd_ = ::open(destination_.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd_ < 0) return Fail(errno);
    direct_ = true;
    return true;
  }
  if (exists && S_ISDIR(st.st_mode)) return Fail(EISDIR);
  if (exists && (ReadOnlyOnPurpose(st) || ::access(destination_.c_str(), W_OK) != 0)) return Fail(EACCES);

  const fs::path folder = destination_.parent_path().empty() ? fs::path(".") : destination_.parent_path();
  // A unique name: a stale temporary of an earlier run (even a folder of that name)
  // never stands in the way.
  for (int attempt = 0; attempt < 100; ++attempt) {
    temporary_ = folder / (destination_.filename().string() + ".tmp-" + std::to_string(::getpid()) + "-" +
                           std::to_string(temporaryCounter++));
    fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd_ >= 0) break;
    if (errno != EEXIST) {
      temporary_.clear();
      return Fail(errno);
    }
  }
  if (fd_ < 0) {
    temporary_.clear();
    return Fail(EEXIST);
  }
  // The new file keeps the mode of the one it replaces.
  if (exists) (void)::fchmod(fd_, st.st_mode & 07777);
  buffer_.reserve(kBlock);
  return true;
}

bool ReplacingFile::FlushBuffer() {
  const char* p = buffer_.data();
  size_t left = buffer_.size();
  while (left > 0) {
    const ssize_t n = ::write(fd_, p, left);
    if (n < 0) {
      if (errno == EINTR) continue;
      return Fail(errno);
    }
    if (n == 0) return Fail(ENOSPC);
    p += n;
    left -= size_t(n);
  }
  buffer_.clear();
  return true;
}

bool ReplacingFile::Write(const void* data, size_t size) {
  if (error_ != 0) return false;
  if (fd_ < 0) return Fail(EBADF);
  const char* p = static_cast<const char*>(data);
  while (size > 0) {
    const size_t take = std::min(size, kBlock - buffer_.size());
    buffer_.append(p, take);
    p += take;
    size -= take;
    if (buffer_.size() == kBlock && !FlushBuffer()) return false;
  }
  return true;
}

bool ReplacingFile::Commit() {
  if (error_ == 0 && fd_ < 0) Fail(EBADF);
  if (error_ == 0) FlushBuffer();
  // The data must be on the disk before the name points at it, or a power cut could
  // leave the new name on an empty file.  A device may not sync; that is no failure.
  if (error_ == 0 && ::fsync(fd_) != 0 && !(direct_ && (errno == EINVAL || errno == EROFS || errno == ENOTSUP)))
    Fail(errno);
  if (fd_ >= 0) {
    if (::close(fd_) != 0 && error_ == 0 && !direct_) Fail(errno);
    fd_ = -1;
  }
  if (error_ == 0 && !direct_ && ::rename(temporary_.c_str(), destination_.c_str()) != 0) Fail(errno);
  if (error_ != 0) {
    Discard();
    return false;
  }
  committed_ = true;
  temporary_.clear();
  return true;
}

void ReplacingFile::Discard() {
  if (fd_ >= 0) {
    ::close(fd_);
    fd_ = -1;
  }
  if (!temporary_.empty()) {
    ::unlink(temporary_.c_str());
    temporary_.clear();
  }
}

std::string WriteFailureReason(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return msg::kReasonDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
      return msg::kReasonReadOnly;
    case ENOENT:
    case ENOTDIR:
      return msg::kReasonNoFolder;
    default:
      return std::strerror(error);
  }
}

std::string FileNotWrittenMessage(const fs::path& path, int error) {
  return Format(msg::kFileNotWritten, path.filename().string().c_str(), WriteFailureReason(error).c_str());
}

}  // namespace sedra
