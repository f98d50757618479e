// Console trace and frame log helpers shared by every subsystem.
//
// A console trace is two PRINT_TO_CONSOLE writes: a location tag, then the
// message. The frame log (faltocal_logLine, help_objlist.h) goes to syslog
// and/or coloured standard output, gated by unfaltocalLogType/Level.
#pragma once

#include "caltofal.h"

namespace caltofal {

// Source-unit names printed in location tags.
inline constexpr const char kUnitFrame[] = "FaltoCal";
inline constexpr const char kUnitNetwork[] = "ZintuNetworkGet";
inline constexpr const char kUnitMesh[] = "ZintuMeshGrove";
inline constexpr const char kUnitWifi[] = "ZintuWifiUtil";

// "[ZINTU VOLA FAL] (%s:%d, %s) "
void traceTag(const char *unit, int line, const char *function);
// "\n\n\t[%s : %d] "
void traceAt(const char *function, int line);
// "\n\n\t[%s : %d] (%d)"
void traceAtCode(const char *function, int line, int code);

// printf's "%s" for a possibly NULL text: glibc prints "(null)".
inline const char *orNull(const char *text) {
  return text != nullptr ? text : "(null)";
}

}  // namespace caltofal
