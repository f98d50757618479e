#include "fake_os.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <set>

#include "frame/os.h"

namespace {

struct State {
  std::map<std::string, fakeos::Reply> replies;
  std::vector<std::string> commands;
  std::map<std::string, std::string> files;
  std::set<std::string> failing;
  std::set<std::string> paths;
  std::vector<std::string> console;
  bool consoleFails = false;
  bool capture = true;
  std::vector<std::pair<int, std::string>> syslog;
  std::string out;
  std::string err;
  std::optional<std::tm> time;
  std::vector<unsigned> sleeps;
};

struct Shared {
  std::mutex lock;
  State state;
};

Shared &shared() {
  static Shared s;
  return s;
}

// Runs f on the state under its lock and returns what f returns.
template <typename F>
auto locked(F f) {
  Shared &s = shared();
  std::lock_guard<std::mutex> guard(s.lock);
  return f(s.state);
}

// Runs a command: records it, performs its file writes, returns its reply.
fakeos::Reply execute(const char *command) {
  return locked([&](State &s) {
    if (s.capture) s.commands.emplace_back(command);
    auto it = s.replies.find(command);
    fakeos::Reply reply = it != s.replies.end() ? it->second : fakeos::Reply{};
    if (!reply.startFails) {
      for (const auto &[path, content] : reply.writes) s.files[path] = content;
    }
    return reply;
  });
}

}  // namespace

namespace caltofal::os {

struct Stream {
  std::string data;
  std::size_t at = 0;
  int status = 0;
};

Stream *openCommand(const char *command) {
  if (command == nullptr) return nullptr;
  fakeos::Reply reply = execute(command);
  if (reply.startFails) return nullptr;
  return new Stream{reply.output, 0, reply.status};
}

Stream *openFile(const char *path, const char *mode) {
  return locked([&](State &s) -> Stream * {
    if (path == nullptr || mode == nullptr || s.failing.count(path) != 0) return nullptr;
    auto it = s.files.find(path);
    if (it == s.files.end()) {
      if (mode[0] == 'r') return nullptr;
      it = s.files.emplace(path, std::string()).first;  // "w"/"a" create the file
    }
    return new Stream{it->second, 0, 0};
  });
}

char *readLine(Stream *stream, char *buf, int size) {
  if (stream == nullptr || size <= 0 || stream->at >= stream->data.size()) return nullptr;
  int n = 0;
  while (n < size - 1 && stream->at < stream->data.size()) {
    char c = stream->data[stream->at++];
    buf[n++] = c;
    if (c == '\n') break;
  }
  buf[n] = '\0';
  return buf;
}

std::size_t readBytes(Stream *stream, char *buf, std::size_t n) {
  if (stream == nullptr) return 0;
  std::size_t count = std::min(n, stream->data.size() - stream->at);
  std::memcpy(buf, stream->data.data() + stream->at, count);
  stream->at += count;
  return count;
}

int close(Stream *stream) {
  if (stream == nullptr) return -1;
  int status = stream->status;
  delete stream;
  return status;
}

int run(const char *command) {
  if (command == nullptr) return 1;
  fakeos::Reply reply = execute(command);
  return reply.startFails ? -1 : reply.status;
}

bool exists(const char *path) {
  return locked([&](State &s) {
    return path != nullptr && (s.files.count(path) != 0 || s.paths.count(path) != 0);
  });
}

int consoleWrite(const char *data, std::size_t len) {
  return locked([&](State &s) {
    if (s.consoleFails) return -1;
    if (s.capture) s.console.emplace_back(data, len);
    return 0;
  });
}

void syslogLine(int priority, const char *text) {
  locked([&](State &s) {
    if (s.capture) s.syslog.emplace_back(priority, text);
  });
}

void stdoutWrite(const char *data, std::size_t len) {
  locked([&](State &s) {
    if (s.capture) s.out.append(data, len);
  });
}

void stderrWrite(const char *data, std::size_t len) {
  locked([&](State &s) {
    if (s.capture) s.err.append(data, len);
  });
}

bool localNow(std::tm *out) {
  return locked([&](State &s) {
    if (!s.time) return false;
    *out = *s.time;
    return true;
  });
}

void sleepSeconds(unsigned seconds) {
  locked([&](State &s) { s.sleeps.push_back(seconds); });
}

}  // namespace caltofal::os

namespace fakeos {

void reset() {
  locked([](State &s) { s = State{}; });
}

void onCommand(const std::string &command, Reply reply) {
  locked([&](State &s) { s.replies[command] = std::move(reply); });
}
std::vector<std::string> commands() {
  return locked([](State &s) { return s.commands; });
}
void setFile(const std::string &path, const std::string &content) {
  locked([&](State &s) { s.files[path] = content; });
}
std::optional<std::string> file(const std::string &path) {
  return locked([&](State &s) -> std::optional<std::string> {
    auto it = s.files.find(path);
    if (it == s.files.end()) return std::nullopt;
    return it->second;
  });
}
void failOpen(const std::string &path) {
  locked([&](State &s) { s.failing.insert(path); });
}
void addPath(const std::string &path) {
  locked([&](State &s) { s.paths.insert(path); });
}
std::string console() {
  return locked([](State &s) {
    std::string all;
    for (const std::string &w : s.console) all += w;
    return all;
  });
}
std::vector<std::string> consoleWrites() {
  return locked([](State &s) { return s.console; });
}
void setConsoleFails(bool fails) {
  locked([&](State &s) { s.consoleFails = fails; });
}
std::vector<std::pair<int, std::string>> syslogLines() {
  return locked([](State &s) { return s.syslog; });
}
std::string stdoutText() {
  return locked([](State &s) { return s.out; });
}
std::string stderrText() {
  return locked([](State &s) { return s.err; });
}
void setTime(const std::tm &when) {
  locked([&](State &s) { s.time = when; });
}
std::vector<unsigned> sleeps() {
  return locked([](State &s) { return s.sleeps; });
}

void setCapture(bool on) {
  locked([on](State &s) { s.capture = on; });
}

}  // namespace fakeos
