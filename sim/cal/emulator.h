// The emulator's one state: the loaded model, the logs and the injected
// failures, behind one mutex.
#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "calsim.h"
#include "failmap.h"
#include "fileio.h"
#include "help_objlist.h"
#include "model.h"
#include "request.h"

namespace calsim {

enum class Entry { Get, Set, SetToDb };

class Emulator {
 public:
  static Emulator &instance();

  // One request of an entry point; the reason of a failure goes to `error`.
  int request(Entry entry, MsgHeader *msg, std::string *error);

  bool loadString(const std::string &text, const std::string &name, std::string *error);
  bool loadFile(const std::string &path, std::string *error);
  void injectFailure(int code, int count, int skip);
  std::vector<Request> requests();
  void clearRequests();
  std::vector<std::string> journal();
  std::optional<std::string> value(const std::string &path, const std::string &param);
  void reset();

 private:
  // A request once logged: its answer or change, under the lock.
  int serve(Entry entry, MsgHeader *msg, const Incoming &in, std::string *error);
  // What the environment names for every request (NULL: not set).
  struct Settings {
    const char *fail = nullptr;   // CALTOFAL_FAIL
    const char *model = nullptr;  // CALTOFAL_MODEL
  };
  static Settings settings();
  // `named`: the CALTOFAL_MODEL of this request.
  bool ensureLoaded(const char *named, std::string *error);
  // The code that the environment's failure map gives this request (0: none).
  int failureOnDemand(const Incoming &in, const char *text, std::string *error);
  bool loadFromFile(const std::string &path, bool keepDefaults, std::string *error);
  int set(Entry entry, const Incoming &in, std::string *error);
  void resetModel();
  void log(Entry entry, const MsgHeader *msg, const Incoming &in);

  // A request as logged: the header words, and its objects packed into one
  // text and one list of numbers, so a request costs two allocations
  // whatever its size (the oldest entry's are reused once the log is full).
  struct Logged {
    Request header;     // without objects
    std::string texts;  // names and values back to back
    // Per object: operation, name length, parameter count, then per
    // parameter: name length, value length.
    std::vector<uint32_t> shape;
  };
  static Request unpack(const Logged &logged);

  std::mutex mutex_;
  bool pinned_ = false;      // loaded through the test interface: no environment lookups
  bool fileBacked_ = false;  // written back, journal in a file
  std::string source_;       // model file path, or the name of a string model
  FileStamp stamp_;          // the file as last read or written
  std::string loadError_;    // why the model could not be loaded
  std::unique_ptr<Model> live_;
  std::unique_ptr<Model> defaults_;  // the model as loaded, once a set changed it
  std::vector<std::string> memoryJournal_;
  std::deque<Logged> requests_;
  Incoming incoming_;  // the request being served; its capacity is kept
  GetScratch getWork_;
  int injectCode_ = 0;
  int injectCount_ = 0;
  int injectSkip_ = 0;
  std::string failText_;  // CALTOFAL_FAIL as last parsed
  FailureMap failMap_;
  std::string failError_;  // why that text was refused
};

}  // namespace calsim
