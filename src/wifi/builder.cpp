// The Wi-Fi pages' message builder and the escaping of texts for UCI
// command lines.
#include "caltofal.h"
#include "frame/keywords.h"
#include "help_objlist.h"

using namespace caltofal;

extern "C" {

// A header for an operation keyword: value list with the tree modifier
// (0x1004), owner 32; an unknown keyword leaves the header as it was.
CALTOFAL_API int faltocal_create_msg(MsgHeader *header, const char *operation) noexcept {
  const Keyword *op = findKeyword(kMainOps, operation);
  if (op == nullptr || header == nullptr) return -1;
  HELP_CREATE_OBJ(header, op->code, SOPT_TREE | SOPT_OBJVALUE, 32);
  return 0;
}

// For a double-quoted argument: '\' and '"' get a backslash, and a single
// quote becomes '\'' (close, escaped quote, reopen) for a single-quoted one.
CALTOFAL_API int ConvSpecialChar_forUciCli(const char *source, char *target) noexcept {
  if (source == nullptr || target == nullptr) return 0;
  char *out = target;
  for (const char *in = source; *in != '\0'; ++in) {
    switch (*in) {
      case '\\':
        *out++ = '\\';
        *out++ = '\\';
        break;
      case '"':
        *out++ = '\\';
        *out++ = '"';
        break;
      case '\'':
        *out++ = '\'';
        *out++ = '\\';
        *out++ = '\'';
        *out++ = '\'';
        break;
      default:
        *out++ = *in;
    }
  }
  *out = '\0';
  return 0;
}

}  // extern "C"
