// File access of the emulator: whole-file reads, atomic replacement, appends
// and the identity of a file on disk (to notice changes by other processes).
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace calsim {

struct FileStamp {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec mtime{};

  bool operator==(const FileStamp &other) const;
  bool operator!=(const FileStamp &other) const { return !(*this == other); }
};

FileStamp stampOf(const std::string &path);

// The text of errno value `code`.
std::string errnoText(int code);

// The largest file read: models and journals are far smaller; anything bigger
// (or a device that never ends, such as /dev/zero) is refused, not read.
constexpr std::size_t kMaxFileBytes = std::size_t{64} << 20;

// Each of these returns false with a reason in `error` on failure.
bool readFile(const std::string &path, std::string *out, std::string *error);
// Replaces the file (its target, when `path` is a symbolic link) by a new
// one written next to it: temporary file, fsync, rename, fsync of the folder.
bool replaceFile(const std::string &path, std::string_view data, std::string *error);
bool appendFile(const std::string &path, std::string_view data, std::string *error);

// The lines of a text file (without line ends); empty when it does not exist.
std::vector<std::string> readLines(const std::string &path);

}  // namespace calsim
