// Shared pieces of the network getters.
#include "network/walk.h"

#include <strings.h>

#include <climits>
#include <cstdio>

#include "frame/trace.h"

namespace caltofal::net {

int getObject(Message &msg, const char *object) {
  msg.release();
  return faltocal_send_main(msg.get(), object, "get", "get", 0);
}

int getObjectTraced(Message &msg, const char *object, const char *function, int line,
                    const char *failure) {
  int rc = getObject(msg, object);
  if (rc != 0) traceFailure(function, line, rc, failure);
  return rc;
}

int getObjectParam(Message &msg, const char *object, const char *name) {
  msg.release();
  return faltocal_send_main(msg.get(), object, "get", "get", 1, name);
}

int getTree(Message &msg, const char *object) {
  msg.release();
  return faltocal_SendMultiObj(1, 256, 2, msg.get(), object, "get", "get", 0);
}

int getFiltered(Message &msg, const char *table, const char *param, const char *value) {
  msg.release();
  return faltocal_SendMultiObj(1, 256, 2, msg.get(), table, "get_filter_by_param_value", "get", 1,
                               param, value);
}

const char *lookup(ObjList *obj, const char *name) {
  const char *value = nullptr;
  zintu_GetParamFromObjUnit(obj, name, &value);
  return value;
}

const char *paramIn(ObjList *obj, const char *name) {
  for (ParamList *param : paramsOf(obj)) {
    if (sameName(param->sParamName, name)) return param->sParamValue;
  }
  return nullptr;
}

void putField(void *record, const RecordField &f, std::string_view value) {
  char *field = static_cast<char *>(record) + f.offset;
  switch (f.take) {
    case Take::kText: {
      std::size_t n = value.size() < f.width ? value.size() : f.width;
      std::memcpy(field, value.data(), n);
      std::memset(field + n, 0, f.width - n);
      break;
    }
    case Take::kTextIfShorter:
      if (value.size() < f.width) std::memcpy(field, value.data(), value.size());
      break;
    case Take::kNumberIfSet:
      if (value.empty()) break;
      [[fallthrough]];
    case Take::kNumber: {
      int32_t number = decimalOf(value);
      std::memcpy(field, &number, sizeof number);
      break;
    }
    case Take::kFlag: {
      char text[HELP_MAX_VALUE_LEN] = {0};
      std::memcpy(text, value.data(), value.size() < sizeof text ? value.size() : sizeof text - 1);
      *reinterpret_cast<uint8_t *>(field) = static_cast<uint8_t>(atob(text));
      break;
    }
    case Take::kSpecial:
      break;
  }
}

bool storesValue(const RecordField &f, std::string_view value) {
  switch (f.take) {
    case Take::kTextIfShorter:
      return !value.empty() && value.size() < f.width;
    case Take::kNumberIfSet:
      return !value.empty();
    case Take::kText:  // the field's rest is cleared, also for an empty value
    case Take::kNumber:
    case Take::kFlag:
      return true;
    case Take::kSpecial:
      break;
  }
  return false;
}

const char *firstParam(const Message &msg, const char *name) {
  for (ObjList *obj : objectsOf(msg)) {
    if (const char *value = paramIn(obj, name)) return value;
  }
  return nullptr;
}

const char *lastWithParam(const Message &msg, const char *name) {
  const char *value = nullptr;
  for (ObjList *obj : objectsOf(msg)) {
    if (const char *found = lookup(obj, name)) value = found;
  }
  return value;
}

bool startsWith(const char *text, std::string_view prefix) {
  return text != nullptr && std::strncmp(text, prefix.data(), prefix.size()) == 0;
}

bool startsWithNoCase(const char *text, std::string_view prefix) {
  return text != nullptr && strncasecmp(text, prefix.data(), prefix.size()) == 0;
}

bool isOn(const char *value) {
  return value != nullptr && (value[0] == '1' || startsWithNoCase(value, "true"));
}

int decimalOf(std::string_view text) {
  std::size_t i = 0;
  auto blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
  while (i < text.size() && blank(text[i])) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  long long magnitude = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    if (magnitude <= static_cast<long long>(INT_MAX) + 1)
      magnitude = magnitude * 10 + (text[i] - '0');
  }
  long long value = negative ? -magnitude : magnitude;
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

bool isGatewayOrigin(const char *origin) {
  constexpr std::string_view kOrigins[] = {"DHCPv4", "Static", "X_LANTIQ_COM_PPPoE"};
  for (std::string_view prefix : kOrigins) {
    if (startsWith(origin, prefix)) return true;
  }
  return false;
}

DottedPath::DottedPath(const char *path) {
  std::snprintf(text_, 256, "%s", path != nullptr ? path : "");
  zintu_InsertDotEndofObj(text_);
}

bool DottedPath::matches(const char *reference) const {
  if (reference == nullptr) return false;
  std::size_t length = std::strlen(reference);
  if (length == 0 || reference[length - 1] == '.') return std::strcmp(reference, text_) == 0;
  // The reference with a dot added: one character shorter than the path.
  return length + 1 == std::strlen(text_) && std::strncmp(reference, text_, length) == 0;
}

void subPath(char (&out)[256], const char *interface, const char *name) {
  int length = std::snprintf(out, sizeof out, "%s.%s", interface, name);
  (void)length;  // a longer path is cut at the buffer
}

void traceFailure(const char *function, int line, int code, const char *message) {
  traceAtCode(function, line, code);
  PRINT_TO_CONSOLE("%s", message);
}

int readIpv4Gateway(Message &msg, const char *dottedInterface, char (&gateway)[16]) {
  int rc =
      getFiltered(msg, "Device.Routing.Router.1.IPv4Forwarding.", "Interface", dottedInterface);
  if (rc != 0) return rc;
  for (ObjList *entry : objectsOf(msg)) {
    const char *address = lookup(entry, "GatewayIPAddress");
    const char *origin = lookup(entry, "Origin");
    if (address != nullptr && origin != nullptr && !isEmpty(address) && isGatewayOrigin(origin)) {
      copyCut(gateway, address);
    }
  }
  return rc;
}

}  // namespace caltofal::net
