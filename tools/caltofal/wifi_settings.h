// The Wi-Fi settings that the pages show in the UI's words, and their
// conversions through the library: a UI value the library has no word for
// is refused with the values the setting takes.
#pragma once

#include <string>

#include "caltofal.h"

namespace cli::wifi {

enum class Kind {
  kWords,      // a pair table: configuration words and UI words
  kPower,      // transmit power: a percentage, high/medium/low in the UI
  kRange,      // a number the radio takes within a range
  kFrequency,  // a frequency in MHz, shown as its channel (to the UI only)
};

struct Setting {
  const char *name;   // the tool's name for it
  const char *param;  // the configuration parameter ("" for none)
  Kind kind;
  const char *(*convert)(const char *, int);  // kWords (or null: walk the table), kPower
  const ConvPairRow *table;                   // kWords
  int rows;
  int (*clamp)(int);  // kRange: the library's clamp, and the range it keeps
  int low, high;
};

// By the tool's name or by parameter name; nullptr when neither.
const Setting *findSetting(const std::string &name);
// "security, bandwidth, ..." for a usage message.
std::string settingNames();

// The UI's word for a configuration value; an unknown value shows as it is.
std::string toUi(const Setting &setting, const std::string &value);
// The same, refusing (UsageError) a value the setting has no UI word for.
std::string toUiChecked(const Setting &setting, const std::string &value);
// The configuration value of a UI value; refuses (UsageError) any other,
// naming the setting and the values it takes.
std::string toConfig(const Setting &setting, const std::string &uiValue);

}  // namespace cli::wifi
