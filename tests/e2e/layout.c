/* Compiles only when every record has its fixed layout: the public header
 * checks the records of every page, the platform header the 24-byte message
 * header and the 676/2024/668-byte object nodes on a 32-bit target. */
#include "caltofal.h"
#include "help_objlist.h"
#include "libcal.h"

/* The value text follows the 256-byte name directly. */
typedef char layout_paramvalue[(offsetof(ParamList, sParamValue) == 256) ? 1 : -1];

int layout_unused(void);
