/* Compiles only when every record has its fixed layout (the headers' own
 * checks) and, on a 32-bit target, when the platform's message and node
 * records have the platform's sizes. */
#include "caltofal.h"
#include "help_objlist.h"
#include "libcal.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
typedef char layout_msghdr[(sizeof(MsgHeader) == 24) ? 1 : -1];
typedef char layout_objlist[(sizeof(ObjList) == 676) ? 1 : -1];
typedef char layout_objattr[(sizeof(ObjAttrList) == 2024) ? 1 : -1];
typedef char layout_objacs[(sizeof(ObjACSList) == 668) ? 1 : -1];
#endif
typedef char layout_paramvalue[(offsetof(ParamList, sParamValue) == 256) ? 1 : -1];

int layout_unused(void);
