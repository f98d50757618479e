#include "wifi_fixture.h"

#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>

#include "calsim.h"
#include "fake_os.h"

extern "C" void *__real_help_calloc(uint32_t count, uint32_t size, const char *file, uint32_t line);

namespace {
int g_failAt = 0;
}  // namespace

// The program links with --wrap=help_calloc: every allocation of the
// library passes here.
extern "C" void *__wrap_help_calloc(uint32_t count, uint32_t size, const char *file,
                                    uint32_t line) {
  if (g_failAt > 0 && --g_failAt == 0) return nullptr;
  return __real_help_calloc(count, size, file, line);
}

namespace wifitest {

void failAllocation(int n) {
  g_failAt = n;
}

Lines rowsOf(const WifiParamTable &table) {
  Lines rows;
  for (int i = 0; i < table.count && i < 100; ++i) {
    const WifiParamRow &r = table.rows[i];
    rows.push_back(std::string(r.object) + " " + r.parameter + "=" + r.value);
  }
  return rows;
}

std::string console() {
  static const std::regex line("(ZintuWifiUtil:|\\[\\w+ : |\\w+:)([0-9]+)");
  return std::regex_replace(fakeos::console(), line, "$1#");
}

std::string trace(const std::string &function, const std::string &text) {
  return "[ZINTU VOLA FAL] (ZintuWifiUtil:#, " + function + ") " + text;
}

Lines requestLog() {
  Lines log;
  for (const calsim::Request &r : calsim::requests()) {
    std::ostringstream out;
    out << r.entry << " flags=0x" << std::hex << r.listFlags << std::dec;
    for (const calsim::RequestObject &o : r.objects) {
      out << " " << o.name << "(";
      for (const auto &[name, value] : o.params)
        out << " " << name << (value.empty() ? "" : "=") << value;
      out << " )";
    }
    log.push_back(out.str());
  }
  return log;
}

std::string shellOutput(const std::string &command) {
  FILE *pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return "(no shell)";
  std::string out;
  char buf[512];
  for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;) out.append(buf, n);
  pclose(pipe);
  return out;
}

void WifiTest::SetUp() {
  EmulatorTest::SetUp();
  std::ifstream in(std::string(WIFI_FIXTURES) + "/wifi.model");
  std::stringstream text;
  text << in.rdbuf();
  model(text.str());
}

}  // namespace wifitest
