// The real side of the OS seam: POSIX calls, thread-safe and close-on-exec.
#include <fcntl.h>
#include <spawn.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "frame/os.h"

extern char **environ;

namespace caltofal::os {

struct Stream {
  FILE *fp = nullptr;
  pid_t pid = -1;  // the shell behind a command stream
};

namespace {

// Starts /bin/sh -c command; with outFd >= 0 the child's stdout is that fd.
pid_t spawnShell(const char *command, int outFd, int closeFd) {
  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return -1;
  if (outFd >= 0) {
    posix_spawn_file_actions_adddup2(&actions, outFd, STDOUT_FILENO);
    if (closeFd >= 0) posix_spawn_file_actions_addclose(&actions, closeFd);
  }
  const char *argv[] = {"sh", "-c", command, nullptr};
  pid_t pid = -1;
  int rc =
      posix_spawn(&pid, "/bin/sh", &actions, nullptr, const_cast<char *const *>(argv), environ);
  posix_spawn_file_actions_destroy(&actions);
  return rc == 0 ? pid : -1;
}

int waitFor(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return status;
}

}  // namespace

Stream *openCommand(const char *command) {
  if (command == nullptr) return nullptr;
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) return nullptr;
  pid_t pid = spawnShell(command, fds[1], fds[0]);
  ::close(fds[1]);
  if (pid < 0) {
    ::close(fds[0]);
    return nullptr;
  }
  FILE *fp = fdopen(fds[0], "r");
  if (fp == nullptr) {
    ::close(fds[0]);
    waitFor(pid);
    return nullptr;
  }
  Stream *stream = new (std::nothrow) Stream{fp, pid};
  if (stream == nullptr) {
    std::fclose(fp);
    waitFor(pid);
  }
  return stream;
}

Stream *openFile(const char *path, const char *mode) {
  if (path == nullptr || mode == nullptr) return nullptr;
  char cloexecMode[8];
  if (std::snprintf(cloexecMode, sizeof cloexecMode, "%se", mode) >=
      static_cast<int>(sizeof cloexecMode)) {
    return nullptr;
  }
  FILE *fp = std::fopen(path, cloexecMode);
  if (fp == nullptr) return nullptr;
  Stream *stream = new (std::nothrow) Stream{fp, -1};
  if (stream == nullptr) std::fclose(fp);
  return stream;
}

// fgets, resumed when a signal interrupts the read (fgets would give up and
// lose what it had read).
char *readLine(Stream *stream, char *buf, int size) {
  if (stream == nullptr || buf == nullptr || size <= 0) return nullptr;
  FILE *fp = stream->fp;
  int used = 0;
  flockfile(fp);
  while (used < size - 1) {
    errno = 0;
    int c = getc_unlocked(fp);
    if (c == EOF) {
      if (ferror_unlocked(fp) && errno == EINTR) {
        clearerr_unlocked(fp);
        continue;
      }
      break;
    }
    buf[used++] = static_cast<char>(c);
    if (c == '\n') break;
  }
  funlockfile(fp);
  if (used == 0 && size > 1) return nullptr;
  buf[used] = '\0';
  return buf;
}

// fread, resumed when a signal interrupts the read.
std::size_t readBytes(Stream *stream, char *buf, std::size_t n) {
  if (stream == nullptr || buf == nullptr) return 0;
  std::size_t done = 0;
  while (done < n) {
    errno = 0;
    std::size_t got = std::fread(buf + done, 1, n - done, stream->fp);
    done += got;
    if (done == n) break;
    if (!(std::ferror(stream->fp) && errno == EINTR)) break;
    std::clearerr(stream->fp);
  }
  return done;
}

int close(Stream *stream) {
  if (stream == nullptr) return -1;
  int rc = std::fclose(stream->fp);
  if (stream->pid >= 0) rc = waitFor(stream->pid);
  delete stream;
  return rc;
}

int run(const char *command) {
  if (command == nullptr) return 1;  // system(NULL): a shell is available
  pid_t pid = spawnShell(command, -1, -1);
  if (pid < 0) return -1;
  int status = waitFor(pid);
  if (status < 0) return -1;
  return status;
}

bool exists(const char *path) {
  return path != nullptr && access(path, F_OK) == 0;
}

int consoleWrite(const char *data, std::size_t len) {
  int fd = open("/dev/console", O_RDWR | O_CLOEXEC);
  if (fd < 0) return fd;
  std::size_t done = 0;
  while (done < len) {
    ssize_t n = write(fd, data + done, len - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += static_cast<std::size_t>(n);
  }
  return ::close(fd);
}

void syslogLine(int priority, const char *text) {
  syslog(priority, "%s", text);
}

void stdoutWrite(const char *data, std::size_t len) {
  std::fwrite(data, 1, len, stdout);
  std::fflush(stdout);
}

void stderrWrite(const char *data, std::size_t len) {
  std::fwrite(data, 1, len, stderr);
}

bool localNow(std::tm *out) {
  timeval tv{};
  gettimeofday(&tv, nullptr);
  time_t seconds = tv.tv_sec;
  return localtime_r(&seconds, out) != nullptr;
}

void sleepSeconds(unsigned seconds) {
  unsigned left = seconds;
  while (left > 0) left = sleep(left);
}

}  // namespace caltofal::os
