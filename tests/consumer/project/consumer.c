/* A firmware program that uses the installed library: the public header, the
 * platform declarations, and two calls through the installed configuration
 * layer (the development host's emulator, serving its installed sample). */
#include <stdio.h>
#include <string.h>

#include <caltofal.h>
#include <caltofal/help_objlist.h>

int main(void) {
  int failed = 0;
  /* The address in network byte order: 0xC0A80101 on a big-endian target,
   * the bytes reversed on a little-endian one. */
  uint32_t number = IPConvertTouint("192.168.1.1");
  unsigned char bytes[4];
  memcpy(bytes, &number, sizeof bytes);
  if (bytes[0] != 192 || bytes[1] != 168 || bytes[2] != 1 || bytes[3] != 1) {
    printf("IPConvertTouint: got 0x%08X\n", (unsigned)number);
    failed = 1;
  }

  LANv4Info lan;
  memset(&lan, 0, sizeof lan);
  int32_t rc = ZintuGet_LANv4Info(&lan);
  if (rc != 0 || strcmp(lan.sIPv4Address, "192.168.1.1") != 0) {
    printf("ZintuGet_LANv4Info: %d, address '%s'\n", (int)rc, lan.sIPv4Address);
    failed = 1;
  }

  /* A request, its answer walked with the platform's node declarations. */
  MsgHeader header;
  memset(&header, 0, sizeof header);
  const char *model = NULL;
  if (faltocal_send_main(&header, "Device.DeviceInfo.", "get", "get", 1, "ModelName") == 0 &&
      header.pObjList != NULL) {
    ObjList *head = (ObjList *)header.pObjList;
    ObjList *obj;
    ParamList *param;
    HELP_FOR_EACH_OBJ(head, obj) {
      HELP_FOR_EACH_PARAM(obj, param) {
        if (strcmp(param->sParamName, "ModelName") == 0) model = param->sParamValue;
      }
    }
  }
  if (model == NULL || model[0] == '\0') {
    printf("faltocal_send_main: no ModelName\n");
    failed = 1;
  }
  faltocal_finalize(&header);

  printf("%s\n", failed ? "consumer: FAILED" : "consumer: ok");
  return failed;
}
