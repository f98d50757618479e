/*
 * Configuration abstraction layer (libcal): takes one request message, fills
 * or applies it, and returns 0 on success or a negative code:
 *   CAL_ERR_NO_OBJECT (-202) nothing at or under the requested path,
 *   CAL_ERR_NO_MATCH  (-208) a filtered get matched no instance.
 * The answer of a get is written into the message's own object list.
 */
#ifndef LIBCAL_H
#define LIBCAL_H

#include "caltofal.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CAL_ERR_NO_OBJECT (-202)
#define CAL_ERR_NO_MATCH (-208)

/* Read: plain, leaf, filtered or defaults get, by the message's list flags. */
int cal_getValue(MsgHeader *msg);
/* Store and apply (add, delete or modify objects). */
int cal_setValue(MsgHeader *msg);
/* Store in the configuration database only, without applying. */
int cal_setValueToDb(MsgHeader *msg);

#ifdef __cplusplus
}
#endif

#endif /* LIBCAL_H */
