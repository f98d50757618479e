#include "sample_path.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#ifndef CALTOFAL_SAMPLE_MODEL
#define CALTOFAL_SAMPLE_MODEL ""
#endif
// The sample's path relative to the folder libcal.so is installed in.
#ifndef CALTOFAL_INSTALLED_SAMPLE
#define CALTOFAL_INSTALLED_SAMPLE "../share/caltofal/gateway.model"
#endif

namespace calsim {
namespace {

bool readableFile(const std::string &path) {
  struct stat st {};
  return !path.empty() && stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) &&
         access(path.c_str(), R_OK) == 0;
}

std::string libraryDir() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void *>(&sampleModelPath), &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  std::string self = info.dli_fname;
  std::size_t slash = self.rfind('/');
  return slash == std::string::npos ? std::string() : self.substr(0, slash);
}

}  // namespace

const std::string &sampleModelPath() {
  // The library does not move and its sample is installed with it: every
  // request of a process without a named model asks, so look only once.
  static const std::string path = [] {
    std::string dir = libraryDir();
    if (!dir.empty()) {
      std::string installed = dir + "/" + CALTOFAL_INSTALLED_SAMPLE;
      if (readableFile(installed)) return installed;
    }
    return std::string(CALTOFAL_SAMPLE_MODEL);
  }();
  return path;
}

}  // namespace calsim
