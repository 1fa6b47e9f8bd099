#pragma once
// Writing a file whole or not at all.
//
// Every file the program writes (settings, saved images, PDF pages) goes through a
// temporary file beside the target.  Each write and the final flush are checked, and
// only a complete file is renamed over the target, so a full disk, a vanished folder or
// a crash never leaves a truncated file, and an earlier file of that name stays as it
// was until the new one is complete.

#include <cstddef>
#include <filesystem>
#include <string>

namespace sedra {

class ReplacingFile {
 public:
  explicit ReplacingFile(std::filesystem::path target);
  ~ReplacingFile();  // an uncommitted temporary is removed
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  // Creates the temporary beside the target.  A symbolic link is followed, so the file
  // it points to is replaced and the link stays.  A target that is a device or a pipe
  // cannot be replaced and is written directly.  A read-only target is refused even
  // where the user's rights would let it be overwritten (it was made read-only on
  // purpose).  False, with Error() set, when nothing can be written.
  bool Open();

  // Appends bytes.  After the first failure every later call fails at once, so a
  // writer may check only the last call, or Commit().
  bool Write(const void* data, size_t size);

  // Flushes, syncs and closes the temporary and renames it over the target.  False,
  // with the temporary removed and the target untouched, when anything failed.
  bool Commit();

  // The errno of the first failure (0 while none).
  int Error() const { return error_; }

 private:
  bool Fail(int error);
  bool FlushBuffer();
  void Discard();

  std::filesystem::path target_, destination_, temporary_;
  int fd_ = -1;
  int error_ = 0;
  bool direct_ = false;
  bool committed_ = false;
  std::string buffer_;
};

// The reason for an errno from ReplacingFile, in words for the user ("the disk is full").
std::string WriteFailureReason(int error);

// "The file '<name>' could not be written: <reason>. ..." for a failed write.
std::string FileNotWrittenMessage(const std::filesystem::path& path, int error);

}  // namespace sedra
