// The real side of the OS seam against commands that misbehave: they cannot
// start, exit non-zero, are killed, print 10 MB or nothing, or are read while
// signals interrupt the reads. Each gives its documented result, and the set
// of open descriptors is the same before and after; a child sees only its
// standard streams (its stdout being its pipe) and what the caller itself
// left inheritable.
#include "frame/os.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>

namespace os = caltofal::os;

namespace {

std::set<int> openDescriptors() {
  std::set<int> fds;
  DIR *dir = opendir("/proc/self/fd");
  if (dir == nullptr) return fds;
  while (dirent *entry = readdir(dir)) {
    if (entry->d_name[0] != '.') fds.insert(std::atoi(entry->d_name));
  }
  const int own = dirfd(dir);
  closedir(dir);
  fds.erase(own);
  return fds;
}

// Every line of a command's output through readLine, and its wait status.
struct Outcome {
  bool started = false;
  std::string text;
  int lines = 0;
  int status = -1;
};

Outcome readAll(const char *command, int lineSize = 128) {
  Outcome out;
  os::Stream *stream = os::openCommand(command);
  if (stream == nullptr) return out;
  out.started = true;
  std::string buf(static_cast<std::size_t>(lineSize), '\0');
  while (os::readLine(stream, buf.data(), lineSize) != nullptr) {
    out.text += buf.c_str();
    ++out.lines;
  }
  out.status = os::close(stream);
  return out;
}

class OsSeam : public ::testing::Test {
 protected:
  void SetUp() override { before_ = openDescriptors(); }
  void TearDown() override { EXPECT_EQ(openDescriptors(), before_) << "descriptors changed"; }

 private:
  std::set<int> before_;
};

TEST_F(OsSeam, CommandsThatFailGiveTheirStatus) {
  const struct {
    const char *command;
    const char *output;
    bool exited;
    int code;  // exit code, or the signal that ended the shell
  } cases[] = {
      {"printf 'one\\ntwo\\n'", "one\ntwo\n", true, 0},
      {"true", "", true, 0},
      {"echo partial; exit 3", "partial\n", true, 3},
      {"/nonexistent/tool", "", true, 127},  // the shell cannot start it
      {"echo before; kill -9 $$", "before\n", false, SIGKILL},
      {"kill -TERM $$", "", false, SIGTERM},
  };
  for (const auto &c : cases) {
    const Outcome out = readAll(c.command);
    ASSERT_TRUE(out.started) << c.command;
    EXPECT_EQ(out.text, c.output) << c.command;
    if (c.exited) {
      EXPECT_TRUE(WIFEXITED(out.status)) << c.command;
      EXPECT_EQ(WEXITSTATUS(out.status), c.code) << c.command;
      EXPECT_EQ(os::run(c.command), out.status) << c.command;
    } else {
      EXPECT_TRUE(WIFSIGNALED(out.status)) << c.command;
      EXPECT_EQ(WTERMSIG(out.status), c.code) << c.command;
    }
  }
  EXPECT_EQ(os::openCommand(nullptr), nullptr);
  EXPECT_EQ(os::run(nullptr), 1);  // system(NULL): a shell is there
}

// 10 MB on one line: read in 127-byte pieces to the end, or closed after the
// first piece (the writer then ends on SIGPIPE and is still reaped).
TEST_F(OsSeam, TenMegabytesAreReadOrAbandoned) {
  const char *command = "head -c 10000000 /dev/zero | tr '\\000' a";
  const Outcome all = readAll(command);
  EXPECT_EQ(all.text.size(), 10000000u);
  EXPECT_EQ(all.lines, (10000000 + 126) / 127);
  EXPECT_EQ(all.status, 0);

  os::Stream *stream = os::openCommand(command);
  ASSERT_NE(stream, nullptr);
  char first[1024];
  EXPECT_EQ(os::readBytes(stream, first, sizeof first), sizeof first);
  const int status = os::close(stream);
  EXPECT_TRUE(WIFEXITED(status) || WIFSIGNALED(status));
}

volatile sig_atomic_t ticks = 0;
void onTick(int) {
  ticks = ticks + 1;
}

// A timer interrupts the reads every millisecond (no SA_RESTART): the lines
// and bytes still arrive whole and in order.
TEST_F(OsSeam, ReadsResumeAfterSignals) {
  struct sigaction action {};
  action.sa_handler = onTick;
  sigemptyset(&action.sa_mask);
  struct sigaction previous {};
  ASSERT_EQ(sigaction(SIGALRM, &action, &previous), 0);
  itimerval every{{0, 1000}, {0, 1000}};
  ASSERT_EQ(setitimer(ITIMER_REAL, &every, nullptr), 0);
  ticks = 0;

  const Outcome out = readAll("sleep 0.2; echo first; sleep 0.2; echo second");
  os::Stream *stream = os::openCommand("sleep 0.2; printf 0123456789");
  char bytes[16] = {0};
  const std::size_t n = stream != nullptr ? os::readBytes(stream, bytes, 10) : 0;
  if (stream != nullptr) os::close(stream);
  const int status = os::run("sleep 0.1; exit 4");

  itimerval off{};
  setitimer(ITIMER_REAL, &off, nullptr);
  sigaction(SIGALRM, &previous, nullptr);
  EXPECT_GT(ticks, 50);  // the reads really were interrupted
  EXPECT_EQ(out.text, "first\nsecond\n");
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(std::string(bytes, n), "0123456789");
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 4);
}

// While the library holds a file and a command open, another command sees
// only its standard streams and what this process left inheritable itself.
TEST_F(OsSeam, ChildrenSeeOnlyTheirStandardStreams) {
  char path[] = "/tmp/os-seam-XXXXXX";
  const int scratch = mkstemp(path);
  ASSERT_GE(scratch, 0);
  close(scratch);
  os::Stream *file = os::openFile(path, "ab+");
  ASSERT_NE(file, nullptr);
  os::Stream *other = os::openCommand("sleep 0.3");
  ASSERT_NE(other, nullptr);

  std::set<int> expected = {0, 1, 2};
  for (int fd : openDescriptors()) {
    const int flags = fcntl(fd, F_GETFD);
    if (flags >= 0 && (flags & FD_CLOEXEC) == 0) expected.insert(fd);
  }
  const Outcome listing = readAll("ls /proc/$$/fd");
  std::set<int> seen;
  std::istringstream words(listing.text);
  for (int fd; words >> fd;) seen.insert(fd);
  EXPECT_EQ(seen, expected);

  os::close(other);
  os::close(file);
  unlink(path);
}

}  // namespace
