// The emulator's model-file parser: any text either loads or is refused
// with a "NAME:LINE: reason" error; a loaded model answers a whole-tree get.
#include "calsim.h"
#include "fuzz.h"
#include "help_objlist.h"
#include "libcal.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  calsim::reset();
  std::string error;
  const bool loaded = calsim::loadModelString(
      std::string(reinterpret_cast<const char *>(data), size), "fuzz", &error);
  if (!loaded && error.rfind("fuzz:", 0) != 0) fuzz::fail("errors name the model and line");
  if (loaded) {
    MsgHeader msg{};
    HELP_CREATE_OBJ(&msg, MOPT_GET, SOPT_OBJVALUE, 2);
    HELP_OBJECT_GET(msg.pObjList, "Device.", SOPT_OBJVALUE);
    cal_getValue(&msg);
    help_delMsg(&msg, 1);
  }
  calsim::reset();
  return 0;
}
