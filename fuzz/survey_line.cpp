// The site-survey line reader: one result line to its ten columns and, when
// complete, an entry; the entry's texts never exceed 126 characters.
#include "fuzz.h"
#include "wifi/driver_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  const auto line = fuzz::text(data, size);
  const caltofal::wifi::SurveyColumns columns = caltofal::wifi::surveyColumnsOf(line.get());
  for (const auto &column : columns.text) {
    if (strnlen(column, sizeof column) >= sizeof column) fuzz::fail("column without its end");
  }
  if (!columns.complete()) return 0;
  const SiteSurveyEntry entry = caltofal::wifi::surveyEntryOf(columns);
  for (const char *text : {entry.ssid, entry.security, entry.encryption, entry.macaddr,
                           entry.phymode, entry.sideband}) {
    if (strnlen(text, 128) > 126) fuzz::fail("entry text over 126 characters");
  }
  return 0;
}
