// Readers of what the radio driver and its tools print: pure functions from
// text to values, apart from the I/O that fetched the text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "caltofal.h"

namespace caltofal::wifi {

// The text cut as fgets with a buffer of `size` bytes reads it: pieces of at
// most size-1 characters, each ending at its newline (kept) if it has one.
std::vector<std::string> fgetsLines(std::string_view text, int size);

// The radio number of "iw dev IF info" output: the decimal number 6
// characters after the first "wiphy"; -1 without one.
int phyNumberOf(std::string_view info);

// One line of "iw phy PHY show_channel" ("CHANNEL MHZ 160 80 40+ 40- DFS")
// as a channel entry; false for a line that gives none: a missing channel or
// frequency, a radar channel while 802.11h is off, a frequency of 2485 MHz or
// more on radio 1.
bool channelEntryOf(const char *line, bool dfsEnabled, int radioIndex, WifiChannelEntry *entry);

// The channel of an "iwlist IF channel" line holding "Current Channel=".
std::optional<int> currentChannelOf(const char *line);

// The stations of the driver's peer lines ("value : description"), as the
// station page reads them: a station's MAC line, then up to four antenna
// lines; the line that ends a station is consumed. With `filter`, only the
// stations whose MAC matches it case-insensitively over its length. At most
// the list's 128 entries; the count is returned.
int stationsOf(std::string_view peerLines, const char *filter, WifiStaList *list);

// The ten tab-separated columns of a site-survey result line (ssid,
// channel, rssi, security, encryption, macaddr, bandwidth, phymode, sideband,
// product), each at most 127 characters; columns after the first empty one
// stay empty, and the last runs to the end of the line.
struct SurveyColumns {
  char text[10][128] = {};
  bool complete() const;  // no column is empty
};
SurveyColumns surveyColumnsOf(const char *line);

// The entry of a complete line: texts cut at 126 characters, numbers as
// atoi reads them.
SiteSurveyEntry surveyEntryOf(const SurveyColumns &columns);

}  // namespace caltofal::wifi
