#include "model_location.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "failure.h"

#ifndef CALTOFAL_SAMPLE_MODEL
#define CALTOFAL_SAMPLE_MODEL ""
#endif

namespace cli {

namespace {

constexpr const char *kModelName = "gateway.model";
constexpr const char *kInstalledSample = "/../share/caltofal/gateway.model";

bool readable(const std::string &path) {
  struct stat st {};
  return !path.empty() && stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) &&
         access(path.c_str(), R_OK) == 0;
}

std::string executableDir() {
  std::vector<char> buf(PATH_MAX + 1, '\0');
  ssize_t n = readlink("/proc/self/exe", buf.data(), buf.size() - 1);
  if (n <= 0) return {};
  std::string exe(buf.data(), static_cast<std::size_t>(n));
  std::size_t slash = exe.rfind('/');
  return slash == std::string::npos ? std::string() : exe.substr(0, slash);
}

bool isAbsolute(const char *path) {
  return path != nullptr && path[0] == '/';
}

std::string homeDir() {
  const char *home = std::getenv("HOME");
  if (isAbsolute(home)) return home;
  long size = sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buf(size > 0 ? static_cast<std::size_t>(size) : 16384);
  struct passwd pw {};
  struct passwd *found = nullptr;
  if (getpwuid_r(getuid(), &pw, buf.data(), buf.size(), &found) == 0 && found != nullptr &&
      isAbsolute(found->pw_dir)) {
    return found->pw_dir;
  }
  return {};
}

// mkdir -p, each new directory private to the user.
bool makeDirs(const std::string &dir, std::string *error) {
  std::size_t pos = 0;
  while (pos != std::string::npos) {
    pos = dir.find('/', pos + 1);
    std::string part = dir.substr(0, pos);
    if (part.empty()) continue;
    if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
      *error = "cannot create " + part + ": " + errnoText(errno);
      return false;
    }
  }
  struct stat st {};
  if (stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) {
    *error = "cannot use " + dir + ": not a directory";
    return false;
  }
  return true;
}

bool writeAll(int fd, const std::string &data) {
  std::size_t done = 0;
  while (done < data.size()) {
    ssize_t n = write(fd, data.data() + done, data.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

// Copies the sample to `target` unless it exists; a concurrent first use
// keeps whichever copy was complete first.
bool copySample(const std::string &sample, const std::string &target, std::string *error) {
  std::ifstream in(sample, std::ios::binary);
  std::ostringstream text;
  if (in.is_open()) text << in.rdbuf();
  if (!in.is_open() || in.bad()) {
    *error = "cannot read the sample model " + sample;
    return false;
  }
  std::string tmpl = target + ".XXXXXX";
  std::vector<char> name(tmpl.begin(), tmpl.end());
  name.push_back('\0');
  int fd = mkostemp(name.data(), O_CLOEXEC);
  if (fd < 0) {
    *error = "cannot create the working copy " + target + ": " + errnoText(errno);
    return false;
  }
  bool ok = writeAll(fd, text.str()) && fsync(fd) == 0;
  int saved = errno;
  ok = (close(fd) == 0) && ok;
  if (ok && link(name.data(), target.c_str()) != 0 && errno != EEXIST) {
    saved = errno;
    ok = false;
  }
  unlink(name.data());
  if (!ok) *error = "cannot write the working copy " + target + ": " + errnoText(saved);
  return ok;
}

}  // namespace

// An installed tool uses the installed sample; a build's tool, which has none
// beside it, the source tree's.
std::string sampleModelPath() {
  std::string dir = executableDir();
  if (!dir.empty() && readable(dir + kInstalledSample)) return dir + kInstalledSample;
  std::string built = CALTOFAL_SAMPLE_MODEL;
  if (readable(built)) return built;
  return {};
}

std::string workingCopyPath() {
  const char *state = std::getenv("XDG_STATE_HOME");
  std::string base;
  if (isAbsolute(state)) {
    base = state;
  } else {
    std::string home = homeDir();
    if (home.empty()) return {};
    base = home + "/.local/state";
  }
  return base + "/caltofal/" + kModelName;
}

std::string journalPathOf(const std::string &modelPath) {
  return modelPath + ".journal";
}

bool locateModel(const std::string &named, bool create, ModelFile *model, std::string *error) {
  if (!named.empty()) {
    std::unique_ptr<char, decltype(&std::free)> real(realpath(named.c_str(), nullptr), &std::free);
    if (real == nullptr) {
      *error = "cannot use the model " + named + ": " + errnoText(errno);
      return false;
    }
    if (!readable(real.get())) {
      *error = "cannot read the model " + named;
      return false;
    }
    *model = ModelFile{real.get(), false};
    return true;
  }
  std::string copy = workingCopyPath();
  if (copy.empty()) {
    *error = "no home directory to keep the working copy in (set HOME or XDG_STATE_HOME)";
    return false;
  }
  *model = ModelFile{copy, true};
  if (!create || readable(copy)) return true;
  std::string sample = sampleModelPath();
  if (sample.empty()) {
    *error = std::string("cannot find the sample model (looked for ") + executableDir() +
             kInstalledSample + " and " + CALTOFAL_SAMPLE_MODEL + ")";
    return false;
  }
  return makeDirs(copy.substr(0, copy.rfind('/')), error) && copySample(sample, copy, error);
}

bool selectModel(const ModelFile &model, std::string *error) {
  if (setenv("CALTOFAL_MODEL", model.path.c_str(), 1) != 0) {
    *error = "cannot select the model " + model.path + ": " + errnoText(errno);
    return false;
  }
  return true;
}

}  // namespace cli
