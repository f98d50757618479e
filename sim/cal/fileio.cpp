#include "fileio.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace calsim {
namespace {

// strerror_r comes in a GNU and a POSIX form; take either (only one of the
// two is used where the other form is the C library's).
[[maybe_unused]] inline std::string fromStrerror(const char *text, const char *) {
  return text;
}
[[maybe_unused]] inline std::string fromStrerror(int rc, const char *buf) {
  return rc == 0 ? buf : "error " + std::to_string(errno);
}

bool writeAll(int fd, std::string_view data) {
  while (!data.empty()) {
    ssize_t n = write(fd, data.data(), data.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

std::string resolved(const std::string &path) {
  char *real = realpath(path.c_str(), nullptr);
  if (real == nullptr) return path;
  std::string out = real;
  free(real);
  return out;
}

}  // namespace

bool FileStamp::operator==(const FileStamp &o) const {
  if (exists != o.exists) return false;
  return !exists || (device == o.device && inode == o.inode && size == o.size &&
                     mtime.tv_sec == o.mtime.tv_sec && mtime.tv_nsec == o.mtime.tv_nsec);
}

FileStamp stampOf(const std::string &path) {
  FileStamp stamp;
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return stamp;
  stamp.exists = true;
  stamp.device = st.st_dev;
  stamp.inode = st.st_ino;
  stamp.size = st.st_size;
  stamp.mtime = st.st_mtim;
  return stamp;
}

std::string errnoText(int code) {
  char buf[256] = "";
  return fromStrerror(strerror_r(code, buf, sizeof buf), buf);
}

bool readFile(const std::string &path, std::string *out, std::string *error) {
  // O_NONBLOCK: opening a FIFO must not wait for a writer; it is refused below.
  int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) {
    *error = path + ": cannot open: " + errnoText(errno);
    return false;
  }
  struct stat st;
  if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    *error = path + ": not a regular file";
    close(fd);
    return false;
  }
  const std::string tooLarge =
      path + ": larger than " + std::to_string(kMaxFileBytes >> 20) + " MiB";
  if (static_cast<unsigned long long>(st.st_size) > kMaxFileBytes) {
    *error = tooLarge;
    close(fd);
    return false;
  }
  out->clear();
  char buf[65536];
  for (;;) {
    ssize_t n = read(fd, buf, sizeof buf);
    if (n == 0) break;
    if (n < 0) {
      if (errno == EINTR) continue;
      *error = path + ": cannot read: " + errnoText(errno);
      close(fd);
      return false;
    }
    if (out->size() + static_cast<size_t>(n) > kMaxFileBytes) {  // grew while read
      *error = tooLarge;
      close(fd);
      return false;
    }
    out->append(buf, static_cast<size_t>(n));
  }
  close(fd);
  return true;
}

bool replaceFile(const std::string &path, std::string_view data, std::string *error) {
  std::string target = resolved(path);
  size_t slash = target.rfind('/');
  std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : target.substr(0, slash));
  std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
  // ".NAME.XXXXXX" beside the file, the name cut so that it stays a valid file name.
  std::string temp = (dir == "/" ? "" : dir) + "/." + base.substr(0, 200) + ".XXXXXX";
  int fd = mkostemp(temp.data(), O_CLOEXEC);
  if (fd < 0) {
    *error = dir + ": cannot create a temporary file: " + errnoText(errno);
    return false;
  }
  struct stat st;
  mode_t mode = stat(target.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644;
  const char *step = nullptr;
  if (fchmod(fd, mode) != 0) {
    step = "cannot set the mode of the temporary file";
  } else if (!writeAll(fd, data)) {
    step = "cannot write the temporary file";
  } else if (fsync(fd) != 0) {
    step = "cannot flush the temporary file";
  }
  int saved = errno;
  if (close(fd) != 0 && step == nullptr) {
    step = "cannot close the temporary file";
    saved = errno;
  }
  if (step == nullptr && rename(temp.c_str(), target.c_str()) != 0) {
    step = "cannot rename the temporary file over it";
    saved = errno;
  }
  if (step != nullptr) {
    unlink(temp.c_str());
    *error = target + ": " + step + ": " + errnoText(saved);
    return false;
  }
  int dirFd = open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dirFd >= 0) {
    fsync(dirFd);  // best effort: the rename itself has succeeded
    close(dirFd);
  }
  return true;
}

bool appendFile(const std::string &path, std::string_view data, std::string *error) {
  int fd = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) {
    *error = path + ": cannot open: " + errnoText(errno);
    return false;
  }
  bool ok = writeAll(fd, data);
  int saved = errno;
  if (close(fd) != 0 && ok) {
    ok = false;
    saved = errno;
  }
  if (!ok) *error = path + ": cannot write: " + errnoText(saved);
  return ok;
}

std::vector<std::string> readLines(const std::string &path) {
  std::vector<std::string> lines;
  std::string text, error;
  if (!readFile(path, &text, &error)) return lines;
  size_t pos = 0;
  while (pos < text.size()) {
    size_t end = text.find('\n', pos);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(pos, end - pos));
    pos = end + 1;
  }
  return lines;
}

}  // namespace calsim
