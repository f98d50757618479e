/* A plain C99 host program that builds its own request with the platform
 * header's inline HELP_* helpers: it must link against the exported names of
 * libcaltofal.so and libhelper.so alone, and the helpers' log lines must come
 * out in the frame's format. */
#define _POSIX_C_SOURCE 200809L

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "caltofal.h"
#include "help_objlist.h"

int main(int argc, char **argv) {
  MsgHeader header;
  void *object;
  char value[128] = "";
  char *out = value;
  int failed = 0;

  if (argc != 2) return 2;
  setenv("CALTOFAL_MODEL", argv[1], 1);

  memset(&header, 0, sizeof header);
  HELP_CREATE_OBJ(&header, MOPT_GET, SOPT_OBJVALUE, 32);
  object = HELP_OBJECT_GET(header.pObjList, "Device.DeviceInfo", SOPT_OBJVALUE);
  HELP_PARAM_GET(object, "SerialNumber", SOPT_OBJVALUE);
  if (faltocal_sendQuery(&header) != 0 ||
      caltofal_paramValue_get(header.pObjList, "DeviceInfo", "SerialNumber", &out) != 0 ||
      strcmp(value, "S0001") != 0) {
    printf("FAILED: the request built with the helpers\n");
    failed = 1;
  }
  help_delMsg(&header, 1);

  /* A kind-less flag word logs the helper's error line (coloured, on stdout). */
  unfaltocalLogType = 2;
  HELP_CREATE_OBJ(&header, MOPT_GET, 0, 32);
  printf("\n");
  if (header.pObjList != NULL) {
    printf("FAILED: no list for a kind-less flag word\n");
    failed = 1;
  }
  return failed;
}
