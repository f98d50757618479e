#include "wifi/driver_text.h"

#include <cstdio>
#include <cstring>

#include "frame/message.h"

namespace caltofal::wifi {
namespace {

constexpr std::size_t kStations = sizeof(WifiStaList::entries) / sizeof(WifiStaEntry);
constexpr int kLine = 128;  // the readers' line buffers

// The value word and the first word of the description of "value : text".
struct PeerLine {
  char value[kLine] = {0};
  char description[kLine] = {0};
  explicit PeerLine(const std::string &line) {
    std::sscanf(line.c_str(), "%127s : %127s", value, description);
  }
};

}  // namespace

std::vector<std::string> fgetsLines(std::string_view text, int size) {
  std::vector<std::string> lines;
  const std::size_t most = size > 1 ? static_cast<std::size_t>(size - 1) : 1;
  while (!text.empty()) {
    std::size_t end = text.find('\n');
    std::size_t take = end == std::string_view::npos ? text.size() : end + 1;
    if (take > most) take = most;
    lines.emplace_back(text.substr(0, take));
    text.remove_prefix(take);
  }
  return lines;
}

int phyNumberOf(std::string_view info) {
  std::size_t at = info.find("wiphy");
  if (at == std::string_view::npos) return -1;
  // The number after "wiphy ", read from a terminated copy (the tool's text
  // is read into a 1024-byte buffer, so the copy holds all of it).
  char rest[1025] = {0};
  if (at + 6 <= info.size()) {
    const std::string_view tail = info.substr(at + 6);
    std::memcpy(rest, tail.data(), tail.size() < sizeof rest ? tail.size() : sizeof rest - 1);
  }
  return ConvInt(rest);
}

bool channelEntryOf(const char *line, bool dfsEnabled, int radioIndex, WifiChannelEntry *entry) {
  char words[7][kLine] = {};
  std::sscanf(line, "%127s %127s %127s %127s %127s %127s %127s", words[0], words[1], words[2],
              words[3], words[4], words[5], words[6]);
  if (words[0][0] == '\0' || words[1][0] == '\0') return false;
  if (words[6][0] != '\0' && std::strncmp(words[6], "DFS", 3) == 0 && !dfsEnabled) return false;
  const int channel = ConvInt(words[0]);
  const int frequency = ConvInt(words[1]);
  if (radioIndex == 1 && frequency >= 2485) return false;

  WifiChannelEntry e{};
  e.channel = channel;
  e.frequency = frequency;
  int widths = 0;
  e.bandwidths[widths++] = 20;
  const bool above = std::strcmp(words[4], "40+") == 0;
  const bool below = std::strcmp(words[5], "40-") == 0;
  if (above) e.aboveChannel = channel + 4;
  if (below) e.belowChannel = channel - 4;
  if (above || below) e.bandwidths[widths++] = 40;
  if (std::strcmp(words[3], "80") == 0) e.bandwidths[widths++] = 80;
  if (std::strcmp(words[2], "160") == 0) e.bandwidths[widths++] = 160;
  *entry = e;
  return true;
}

std::optional<int> currentChannelOf(const char *line) {
  static constexpr char kMark[] = "Current Channel=";
  const char *at = std::strstr(line, kMark);
  if (at == nullptr) return std::nullopt;
  return ConvInt(at + sizeof kMark - 1);
}

int stationsOf(std::string_view peerLines, const char *filter, WifiStaList *list) {
  const std::vector<std::string> lines = fgetsLines(peerLines, kLine);
  const std::size_t filterLength = filter != nullptr ? std::strlen(filter) : 0;
  std::size_t next = 0;
  while (next < lines.size() && list->count < kStations) {
    PeerLine station(lines[next++]);
    if (isValidMacAddress(station.value) != 1) continue;
    if (filter != nullptr &&
        my_strnicmp(station.value, filter, static_cast<int>(filterLength)) != 0) {
      continue;
    }
    WifiStaEntry &entry = list->entries[list->count];
    copyPadded(entry.mac, station.value, 126);
    int antennas = 0;
    bool ended = false;
    for (int i = 0; i < 4; ++i) {
      if (next >= lines.size()) {
        ended = true;
        break;
      }
      PeerLine antenna(lines[next++]);
      if (std::strncmp(antenna.description, "Short-term", 10) != 0) break;
      entry.rssi[antennas++] = ConvInt(antenna.value);
    }
    int sum = 0;
    int valid = 0;
    for (int32_t v : entry.rssi) {
      if (v >= -127 && v < 0) {
        sum += v;
        ++valid;
      }
    }
    entry.rssiAverage = valid > 0 ? sum / valid : 0;
    ++list->count;
    if (ended) break;
  }
  return static_cast<int>(list->count);
}

bool SurveyColumns::complete() const {
  for (const auto &column : text) {
    if (column[0] == '\0') return false;
  }
  return true;
}

SurveyColumns surveyColumnsOf(const char *line) {
  SurveyColumns c;
  std::sscanf(line,
              "%127[^\t]\t%127[^\t]\t%127[^\t]\t%127[^\t]\t%127[^\t]\t%127[^\t]\t%127[^\t]\t"
              "%127[^\t]\t%127[^\t]\t%127[^\t]",
              c.text[0], c.text[1], c.text[2], c.text[3], c.text[4], c.text[5], c.text[6],
              c.text[7], c.text[8], c.text[9]);
  return c;
}

SiteSurveyEntry surveyEntryOf(const SurveyColumns &c) {
  SiteSurveyEntry e{};
  copyPadded(e.ssid, c.text[0], 126);
  e.channel = ConvInt(c.text[1]);
  e.rssi = ConvInt(c.text[2]);
  copyPadded(e.security, c.text[3], 126);
  copyPadded(e.encryption, c.text[4], 126);
  copyPadded(e.macaddr, c.text[5], 126);
  e.bandwidth = ConvInt(c.text[6]);
  copyPadded(e.phymode, c.text[7], 126);
  copyPadded(e.sideband, c.text[8], 126);
  e.product = ConvInt(c.text[9]);
  return e;
}

}  // namespace caltofal::wifi
