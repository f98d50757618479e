// caltofal-device: runs a command on a simulated gateway device.
//
// The command runs in a private mount namespace over a copy of the device
// tree (sim/device/tree): /opt/lantiq, /opt/meshgrove, /tmp/wlan_wave and the
// radio driver's /proc/net/mtlk, with /dev/console captured and the fake
// device tools (iw, iwlist, ubus, gddbc, killall) first on PATH. Nothing
// outside the namespace changes but the mount points /tmp/wlan_wave and, when
// missing, /opt.
//
//   caltofal-device [--tree DIR] [--run DIR] [--console-to-stderr] [--] COMMAND [ARG...]
//
// The run folder (a fresh temporary one unless --run names one; removed at
// the end unless named) holds the device copy, console.log (all console
// output), calls.log (every call of a fake tool) and the fake tools. The exit
// status is the command's, 128 + N when signal N ended it, and 1 when the
// sandbox could not be set up (it says why).
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// The device tree and the fake tools: the installed copies under
// share/caltofal/device beside the launcher's bin folder, else the source
// tree's (a build that is not installed).
constexpr const char *kInstalledDevice = "../share/caltofal/device";

fs::path installedDevice() {
  std::error_code ignored;
  fs::path self = fs::read_symlink("/proc/self/exe", ignored);
  if (self.empty()) return {};
  fs::path device = self.parent_path() / kInstalledDevice;
  if (fs::is_directory(device / "tree", ignored) && fs::is_directory(device / "tools", ignored)) {
    return device.lexically_normal();
  }
  return {};
}

std::string devicePart(const char *part, const char *built) {
  fs::path installed = installedDevice();
  return installed.empty() ? std::string(built) : (installed / part).string();
}

struct Options {
  std::string tree = devicePart("tree", CALTOFAL_DEVICE_TREE);
  std::string tools = devicePart("tools", CALTOFAL_DEVICE_TOOLS);
  std::string run;
  bool consoleToStderr = false;
  std::vector<std::string> command;
};

[[noreturn]] void usage(const std::string &problem) {
  std::fprintf(stderr,
               "caltofal-device: %s\n"
               "usage: caltofal-device [--tree DIR] [--run DIR] [--console-to-stderr] [--] "
               "COMMAND [ARG...]\n",
               problem.c_str());
  std::exit(2);
}

Options parse(int argc, char **argv) {
  Options o;
  int i = 1;
  for (; i < argc; ++i) {
    std::string word = argv[i];
    auto value = [&](const char *name) -> std::string {
      if (i + 1 >= argc || argv[i + 1][0] == '\0') usage(std::string(name) + " needs a folder");
      return argv[++i];
    };
    if (word == "--") {
      ++i;
      break;
    }
    if (word == "--tree") {
      o.tree = value("--tree");
    } else if (word == "--run") {
      o.run = value("--run");
    } else if (word == "--console-to-stderr") {
      o.consoleToStderr = true;
    } else if (word.rfind("--", 0) == 0) {
      usage("unknown option " + word);
    } else {
      break;
    }
  }
  for (; i < argc; ++i) o.command.emplace_back(argv[i]);
  if (o.command.empty()) usage("no command");
  return o;
}

std::string errnoText(int code) {
  char buf[256] = {};
  return strerror_r(code, buf, sizeof buf);
}

[[noreturn]] void fail(const std::string &what) {
  throw std::runtime_error(what);
}

void check(int rc, const std::string &what) {
  if (rc != 0) fail(what + ": " + errnoText(errno));
}

void bindMount(const std::string &from, const std::string &to) {
  check(mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr),
        "cannot bind " + from + " over " + to);
}

// An empty directory or file to mount `like` over, at `at`.
void makeMountPoint(const fs::path &like, const fs::path &at) {
  if (fs::is_directory(like)) {
    fs::create_directories(at);
  } else {
    std::ofstream(at.string()).close();
  }
}

// /opt as on the device: its own lantiq and meshgrove folders, the host's
// other entries bound back in place.
void mountOpt(const fs::path &run, const fs::path &device) {
  const fs::path hostOpt = run / "host-opt";
  fs::create_directories(hostOpt);
  if (!fs::exists("/opt")) fs::create_directory("/opt");
  bindMount("/opt", hostOpt.string());
  check(mount("tmpfs", "/opt", "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755"),
        "cannot mount a tmpfs over /opt");
  for (const auto &entry : fs::directory_iterator(hostOpt)) {
    const std::string name = entry.path().filename().string();
    if (name == "lantiq" || name == "meshgrove") continue;
    makeMountPoint(entry.path(), fs::path("/opt") / name);
    bindMount(entry.path().string(), "/opt/" + name);
  }
  for (const char *name : {"lantiq", "meshgrove"}) {
    fs::create_directories(fs::path("/opt") / name);
    bindMount((device / "opt" / name).string(), std::string("/opt/") + name);
  }
}

// /proc/net is the link "self/net", resolved by each process for itself. A
// link to the simulated folder is mounted over the link itself (the mount
// API that does not follow a last symbolic link), so every process of the
// sandbox, the shells of the library's command lines too, finds the driver's
// files there. The folder links every real entry back to /proc/self/net.
void mountProcNet(const fs::path &run, const fs::path &device) {
  const fs::path folder = run / "proc-net";
  fs::create_directories(folder);
  fs::copy(device / "proc" / "net", folder, fs::copy_options::recursive);
  for (const auto &entry : fs::directory_iterator("/proc/self/net")) {
    const fs::path name = entry.path().filename();
    if (!fs::exists(fs::symlink_status(folder / name))) {
      fs::create_symlink(fs::path("/proc/self/net") / name, folder / name);
    }
  }
  const fs::path link = run / "proc-net.link";
  fs::create_symlink(folder, link);
#if defined(SYS_open_tree) && defined(SYS_move_mount)
  constexpr unsigned kOpenTreeClone = 1;  // OPEN_TREE_CLONE
  constexpr unsigned kNoFollow = AT_SYMLINK_NOFOLLOW;
  constexpr unsigned kEmptyPath = 0x4;  // MOVE_MOUNT_F_EMPTY_PATH
  int tree = static_cast<int>(
      syscall(SYS_open_tree, AT_FDCWD, link.c_str(), kOpenTreeClone | kNoFollow | O_CLOEXEC));
  if (tree < 0) fail("cannot take the link " + link.string() + ": " + errnoText(errno));
  int rc = static_cast<int>(syscall(SYS_move_mount, tree, "", AT_FDCWD, "/proc/net", kEmptyPath));
  int saved = errno;
  close(tree);
  if (rc != 0) fail("cannot mount the driver's files at /proc/net: " + errnoText(saved));
#else
  fail("this system has no mount call for links: /proc/net cannot be simulated");
#endif
}

// The device's shell runs "source FILE"; Debian's /bin/sh does not.
void mountShell() {
  if (!fs::exists("/bin/bash")) return;
  const fs::path sh = fs::canonical("/bin/sh");
  if (sh == fs::canonical("/bin/bash")) return;
  bindMount("/bin/bash", sh.string());
}

void setUpNamespace(const Options &o, const fs::path &run) {
  const fs::path device = run / "device";
  check(unshare(CLONE_NEWNS), "cannot make a private mount namespace");
  check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr),
        "cannot make the mounts private");
  mountOpt(run, device);
  fs::create_directories("/tmp/wlan_wave");
  bindMount((run / "wlan_wave").string(), "/tmp/wlan_wave");
  if (!fs::exists("/dev/console")) fail("/dev/console is missing: nothing to capture");
  bindMount((run / "console.fifo").string(), "/dev/console");
  mountProcNet(run, device);
  mountShell();

  const char *path = std::getenv("PATH");
  std::string searched = (run / "bin").string() + ":" + (path != nullptr ? path : "/usr/bin:/bin");
  setenv("PATH", searched.c_str(), 1);
  setenv("CALTOFAL_DEVICE", run.c_str(), 1);
  (void)o;
}

// The run folder: the device copy, the fake tools, the work folder, the
// console's FIFO and the logs.
void prepareRun(const Options &o, const fs::path &run) {
  if (!fs::is_directory(fs::path(o.tree) / "opt")) {
    fail("no device tree at " + o.tree + " (want opt/, proc/net/, tmp/wlan_wave/)");
  }
  const fs::path device = run / "device";
  fs::copy(o.tree, device, fs::copy_options::recursive);
  fs::create_directories(run / "wlan_wave");
  if (fs::exists(device / "tmp" / "wlan_wave")) {
    fs::copy(device / "tmp" / "wlan_wave", run / "wlan_wave", fs::copy_options::recursive);
  }
  fs::copy(o.tools, run / "bin", fs::copy_options::recursive);
  for (const auto &tool : fs::directory_iterator(run / "bin")) {
    fs::permissions(tool.path(),
                    fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                    fs::perm_options::add);
  }
  std::ofstream((run / "calls.log").string()).close();
  std::ofstream((run / "console.log").string()).close();
  check(mkfifo((run / "console.fifo").c_str(), 0600), "cannot make the console FIFO");
}

bool writeAll(int fd, const char *data, size_t n) {
  while (n > 0) {
    ssize_t w = write(fd, data, n);
    if (w < 0 && errno == EINTR) continue;
    if (w <= 0) return false;
    data += w;
    n -= static_cast<size_t>(w);
  }
  return true;
}

// Moves what is waiting in the FIFO to the log (and standard error).
void drain(int fifo, int log, bool toStderr) {
  char buf[4096];
  while (true) {
    ssize_t n = read(fifo, buf, sizeof buf);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    writeAll(log, buf, static_cast<size_t>(n));
    if (toStderr) writeAll(STDERR_FILENO, buf, static_cast<size_t>(n));
  }
}

int statusOf(int wstatus) {
  if (WIFEXITED(wstatus)) return WEXITSTATUS(wstatus);
  if (WIFSIGNALED(wstatus)) return 128 + WTERMSIG(wstatus);
  return 1;
}

// Runs the command in the sandbox and returns its exit status; a set-up
// problem is sent back through `report` and the child exits 1.
int runCommand(const Options &o, const fs::path &run) {
  int fifo = open((run / "console.fifo").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (fifo < 0) fail("cannot open the console FIFO: " + errnoText(errno));
  int log = open((run / "console.log").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  if (log < 0) fail("cannot open console.log: " + errnoText(errno));
  int report[2];
  check(pipe2(report, O_CLOEXEC), "cannot make a pipe");

  pid_t child = fork();
  if (child < 0) fail("cannot fork: " + errnoText(errno));
  if (child == 0) {
    close(report[0]);
    std::string problem;
    try {
      setUpNamespace(o, run);
      std::vector<char *> argv;
      for (const std::string &word : o.command) argv.push_back(const_cast<char *>(word.c_str()));
      argv.push_back(nullptr);
      execvp(argv[0], argv.data());
      problem = "cannot run " + o.command[0] + ": " + errnoText(errno);
    } catch (const std::exception &e) {
      problem = e.what();
    }
    writeAll(report[1], problem.data(), problem.size());
    _exit(1);
  }
  close(report[1]);

  int wstatus = 0;
  while (true) {
    pollfd p{fifo, POLLIN, 0};
    poll(&p, 1, 50);
    drain(fifo, log, o.consoleToStderr);
    pid_t done = waitpid(child, &wstatus, WNOHANG);
    if (done == child) break;
    if (done < 0 && errno != EINTR) fail("cannot wait for the command: " + errnoText(errno));
  }
  drain(fifo, log, o.consoleToStderr);
  close(fifo);
  close(log);

  std::string problem;
  char buf[512];
  for (ssize_t n; (n = read(report[0], buf, sizeof buf)) > 0;) problem.append(buf, n);
  close(report[0]);
  if (!problem.empty()) fail(problem);
  return statusOf(wstatus);
}

}  // namespace

int main(int argc, char **argv) {
  Options o = parse(argc, argv);
  if (geteuid() != 0) {
    std::fprintf(stderr,
                 "caltofal-device: the device sandbox needs root (it mounts the simulated "
                 "device in a private mount namespace); run it as root\n");
    return 1;
  }
  fs::path run;
  bool temporary = o.run.empty();
  int status = 1;
  try {
    if (temporary) {
      char tmpl[] = "/tmp/caltofal-device-XXXXXX";
      if (mkdtemp(tmpl) == nullptr) fail("cannot make a run folder: " + errnoText(errno));
      run = tmpl;
    } else {
      run = fs::absolute(o.run);
      if (fs::exists(run) && !fs::is_empty(run)) fail("the run folder " + o.run + " is not empty");
      fs::create_directories(run);
    }
    prepareRun(o, run);
    status = runCommand(o, run);
  } catch (const std::exception &e) {
    std::fprintf(stderr, "caltofal-device: %s\n", e.what());
    status = 1;
  }
  if (temporary && !run.empty()) {
    std::error_code ignored;
    fs::remove_all(run, ignored);
  }
  return status;
}
