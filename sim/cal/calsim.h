/*
 * The configuration-layer emulator (libcal.so) for host programs and tests.
 *
 * cal_getValue, cal_setValue and cal_setValueToDb (libcal.h) answer from a
 * TR-181 model file: the one named by the environment variable
 * CALTOFAL_MODEL, else the bundled sample gateway. This header adds the
 * failure text of the last request and, for C++, a test interface.
 */
#ifndef CALSIM_H
#define CALSIM_H

#define CALSIM_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Why the calling thread's last request failed ("" after a success), e.g.
 * "no object at Device.Foo" or "gateway.model:12: parameter outside any
 * object". Valid until the thread's next request. */
CALSIM_API const char *calsim_lastError(void);

/* What is wrong with a failure map "PATH=CODE[,PATH=CODE...]" (the form of
 * CALTOFAL_FAIL), naming the bad entry; "" when it is fine. Valid until the
 * thread's next call. */
CALSIM_API const char *calsim_failureMapProblem(const char *map);

#ifdef __cplusplus
}

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace calsim {

/* One object of a request, as the caller sent it. */
struct RequestObject {
  std::string name;
  uint32_t objOper = 0;
  std::vector<std::pair<std::string, std::string>> params; /* (name, value) */
};

/* One request: the entry point ("get", "set", "setToDb"), the header words
 * and the objects of a value list (none for other lists or a NULL message). */
struct Request {
  std::string entry;
  bool hasMessage = false;
  uint32_t mainOper = 0;
  uint32_t listFlags = 0;
  uint32_t owner = 0;
  uint32_t init = 0;
  uint32_t reserved = 0;
  bool hasList = false;
  std::vector<RequestObject> objects;
};

/* Replace the model. A string model is never written anywhere and keeps its
 * journal in memory; a file model is written back after each set and keeps
 * its journal in PATH.journal. Either stays loaded (the environment is not
 * looked at) until reset(). On failure every request fails with the reason,
 * which is also stored in *error ("NAME:LINE: reason"). */
CALSIM_API bool loadModelString(const std::string &text, const std::string &name,
                                std::string *error);
CALSIM_API bool loadModelFile(const std::string &path, std::string *error);

/* After `skip` requests served as usual, the next `count` requests of any
 * entry point return `code` and change nothing; they are still recorded.
 * (skip 2, count 1: the third request from now fails.) */
CALSIM_API void injectFailure(int code, int count, int skip = 0);

/* The requests received so far (the most recent 10000), oldest first. */
CALSIM_API std::vector<Request> requests();
CALSIM_API void clearRequests();

/* Lines of the apply journal, oldest first: "set PATH A=1 B=2",
 * "add PATH A=1", "del PATH". */
CALSIM_API std::vector<std::string> journal();

/* A parameter's current value (path with or without trailing dot). */
CALSIM_API std::optional<std::string> value(const std::string &path, const std::string &param);

/* Unload the model, forget requests, journal in memory and injected failures. */
CALSIM_API void reset();

} /* namespace calsim */
#endif

#endif /* CALSIM_H */
