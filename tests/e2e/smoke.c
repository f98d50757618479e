/* A plain C99 host program: includes only the public header, links the
 * shipped libcaltofal.so and runs against the emulator with a small model. */
#define _POSIX_C_SOURCE 200809L

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "caltofal.h"

static int passed, failed;

static void check(int ok, const char *what) {
  if (ok) {
    passed++;
  } else {
    failed++;
    printf("FAILED: %s\n", what);
  }
}

int main(int argc, char **argv) {
  MsgHeader header;
  char value[128] = "";
  char *out = value;
  char upper[] = "aa:bb";
  char digits[16];

  if (argc != 2) return 2;
  setenv("CALTOFAL_MODEL", argv[1], 1);

  memset(&header, 0, sizeof header);
  check(faltocal_send_main(&header, "Device.DeviceInfo.", "get", "get", 1, "ModelName") == 0,
        "get succeeds");
  check(caltofal_paramValue_get(header.pObjList, "DeviceInfo", "ModelName", &out) == 0,
        "value found");
  check(strcmp(value, "Smoke Router") == 0, "value is the model's");
  faltocal_finalize(&header);
  check(header.pObjList == NULL, "message released");

  memset(&header, 0, sizeof header);
  check(faltocal_send_main(&header, "Device.Nothing.", "get", "get", 0) == -1, "absent object");
  faltocal_finalize(&header);

  check(GetDeviceID("02:00:00:00:00:05") == 5, "host by MAC");
  check(GetDeviceID("10.1.1.5") == 5, "host by IPv4");
  check(atob("TRUE") == 1 && atob("yes") == 0, "atob");
  check(itoa(4096, digits) == 0 && strcmp(digits, "4096") == 0, "itoa");
  check(strcmp(strupr(upper), "AA:BB") == 0, "strupr");
  check(zintu_isValidMacAddress("02:00:00:00:00:05") == 0, "MAC check");
  check(sizeof(ZintuWanInfo) == 3440 && sizeof(WifiParamTable) == 64004, "record sizes");

  printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
