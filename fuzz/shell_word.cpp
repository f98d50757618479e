// The shell quoter. Property: /bin/sh reads the quoted text back as exactly
// the input, as one word. One shell reads a command per input from a pipe:
//   set -- WORD; printf '%s\n%s%s' "$#" "$1" MARK
// and must print "1", a newline, the input and the mark. A word that leaves
// a quote open makes the shell wait for more (no answer within 10 s), one
// that ends the shell closes its output: both are findings.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include "frame/shell.h"
#include "fuzz.h"

extern char **environ;

namespace {

// Ends every answer; the inputs are cut at 8 KiB and never hold it by chance
// (libFuzzer could only find it by reading this file).
constexpr char kMark[] = "<end-of-word-7f3a9c21d84e>";

struct Shell {
  int in = -1;
  int out = -1;
};

Shell start() {
  int toShell[2], fromShell[2];
  if (pipe2(toShell, O_CLOEXEC) != 0 || pipe2(fromShell, O_CLOEXEC) != 0) fuzz::fail("pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, toShell[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fromShell[1], STDOUT_FILENO);
  const char *argv[] = {"sh", nullptr};
  pid_t pid = -1;
  if (posix_spawn(&pid, "/bin/sh", &actions, nullptr, const_cast<char *const *>(argv), environ) !=
      0) {
    fuzz::fail("spawn /bin/sh");
  }
  posix_spawn_file_actions_destroy(&actions);
  close(toShell[0]);
  close(fromShell[1]);
  signal(SIGPIPE, SIG_IGN);  // a shell that ended is reported, not fatal
  return {toShell[1], fromShell[0]};
}

void writeAll(int fd, const std::string &text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n <= 0) fuzz::fail("the shell stopped reading");
    done += static_cast<std::size_t>(n);
  }
}

// Reads until the answer ends with the mark.
std::string answer(int fd) {
  std::string out;
  const std::string_view mark(kMark);
  while (out.size() < mark.size() ||
         std::string_view(out).substr(out.size() - mark.size()) != mark) {
    pollfd p{fd, POLLIN, 0};
    if (poll(&p, 1, 10000) != 1) fuzz::fail("no answer from the shell (a quote left open?)");
    char buf[4096];
    const ssize_t n = read(fd, buf, sizeof buf);
    if (n <= 0) fuzz::fail("the shell ended");
    out.append(buf, static_cast<std::size_t>(n));
  }
  return out.substr(0, out.size() - mark.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  static const Shell shell = start();
  // A command line holds no NUL: the text ends at the first one.
  const std::string input = fuzz::split(data, size).first;
  const std::string word = caltofal::shell::word(input);
  writeAll(shell.in, "set -- " + word + "; printf '%s\\n%s%s' \"$#\" \"$1\" '" + kMark + "'\n");
  if (answer(shell.out) != "1\n" + input) fuzz::fail("sh reads back the input as one word");
  return 0;
}
