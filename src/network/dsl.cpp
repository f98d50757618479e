// The DSL status page: line state, rates, noise margins, attenuation and
// CRC error counts of line 1 and channel 1, and the enabled DSL modes.
#include <cstddef>
#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

const char *const DEF_DSL_MODE[10] = {
    "G.dmt",        "T1.413",       "G.Lite", "ADSL",          "ADSL2",
    "ADSL2 AnnexL", "ADSL2 AnnexM", "ADSL2+", "ADSL2+ AnnexM", "VDSL2",
};

namespace {

#define LINE_FIELD(param, member, take) CALTOFAL_FIELD(ZintuDslLineInfo, param, member, take)
constexpr RecordField kLineFields[] = {
    LINE_FIELD("Status", sStatus, Take::kSpecial),
    LINE_FIELD("CurrentProfile", sCurrentProfile, Take::kTextIfShorter),
    LINE_FIELD("UpstreamMaxBitRate", nUpstreamMaxBitRate, Take::kNumberIfSet),
    LINE_FIELD("DownstreamMaxBitRate", nDownstreamMaxBitRate, Take::kNumberIfSet),
    LINE_FIELD("UpstreamNoiseMargin", nUpstreamNoiseMargin, Take::kNumberIfSet),
    LINE_FIELD("DownstreamNoiseMargin", nDownstreamNoiseMargin, Take::kNumberIfSet),
};
constexpr RecordField kChannelFields[] = {
    LINE_FIELD("UpstreamCurrRate", nUpstreamCurrRate, Take::kNumberIfSet),
    LINE_FIELD("DownstreamCurrRate", nDownstreamCurrRate, Take::kNumberIfSet),
};
constexpr RecordField kTestFields[] = {
    LINE_FIELD("LATNds", sLATNds, Take::kTextIfShorter),
    LINE_FIELD("LATNus", sLATNus, Take::kTextIfShorter),
};
constexpr RecordField kTotalFields[] = {
    LINE_FIELD("XTURCRCErrors", nXTURCRCErrors, Take::kNumberIfSet),
    LINE_FIELD("XTUCCRCErrors", nXTUCCRCErrors, Take::kNumberIfSet),
};
#undef LINE_FIELD

// The four requests of the page, in the order they are made.
constexpr FieldGroup kLineRequests[] = {
    fieldGroup("Device.DSL.Line.1.", kLineFields),
    fieldGroup("Device.DSL.Channel.1.", kChannelFields),
    fieldGroup("Device.DSL.Line.1.TestParams.", kTestFields),
    fieldGroup("Device.DSL.Channel.1.Stats.Total.", kTotalFields),
};

// Whether a line state is taken: a value shorter than the field.
bool storesStatus(const char *value) {
  return std::strlen(value) < sizeof ZintuDslLineInfo::sStatus;
}

// The line state: a value shorter than the field is copied over the field's
// start, then "connected" or "disconnected" is written over it, both without
// a terminator; a longer value leaves the field as it was.
void takeStatus(char (&field)[16], const char *value) {
  if (!storesStatus(value)) return;
  std::size_t length = std::strlen(value);
  std::memcpy(field, value, length);
  std::string_view word = contains(fieldText(field), "Up") ? "connected" : "disconnected";
  std::memcpy(field, word.data(), word.size());
}

// The enabled mode numbers of a comma-separated list, mode n as bit n - 1:
// 1 to 10 count; other numbers and words are passed over, and so is a list
// of 256 characters or more.
unsigned modeBits(const char *list) {
  char work[256] = {0};
  if (std::strlen(list) < sizeof work) std::memcpy(work, list, std::strlen(list));
  unsigned bits = 0;
  char *rest = nullptr;
  for (char *token = strtok_r(work, ",", &rest); token != nullptr;
       token = strtok_r(nullptr, ",", &rest)) {
    int number = decimalOf(token);
    if (number >= 1 && number <= 10) bits |= 1u << (number - 1);
  }
  return bits;
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_LineInfo(ZintuDslLineInfo *info) noexcept {
  Message msg;
  for (const FieldGroup &request : kLineRequests) {
    if (getObjectTraced(msg, request.object.data(), "ZintuGet_LineInfo", __LINE__,
                        "faltocal_SendMultiObj is Failure \n") != 0) {
      return -1;
    }
    if (info == nullptr) {  // no record: -1 at the first answer that would fill a field
      const bool stores = anyParam(msg, [&request](const ParamList *param) {
        return storesNamed(request, param, [](const RecordField &, const char *value) {
          return storesStatus(value);
        });
      });
      if (stores) return -1;
      continue;
    }
    forEachParam(msg, [&](ObjList *, ParamList *param) {
      putNamed(info, request, param,
               [&](const RecordField &, const char *value) { takeStatus(info->sStatus, value); });
    });
  }
  return 0;
}

CALTOFAL_API int32_t ZintuGet_DslMode(int32_t modes[10]) noexcept {
  Message msg;
  if (getObjectTraced(msg, "Device.DSL.X_LANTIQ_COM_Config", "ZintuGet_DslMode", __LINE__,
                      "faltocal_send_main is Failure \n") != 0) {
    return -1;
  }
  unsigned bits = 0;
  forEachParam(msg, [&](ObjList *, ParamList *param) {
    if (sameName(param->sParamName, "XTSE_Modes")) bits |= modeBits(param->sParamValue);
  });
  if (bits == 0) return 0;  // flags are only ever set: with none to set, nothing is written
  if (modes == nullptr) return -1;
  for (int i = 0; i < 10; ++i) {
    if ((bits >> i & 1u) != 0) modes[i] = 1;
  }
  return 0;
}

}  // extern "C"
