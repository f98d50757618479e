/*
 * Object-list helper library (libhelper): the records of a request message
 * and the functions that allocate, link and release them.
 *
 * A message (MsgHeader, declared in caltofal.h) owns a circular, doubly
 * linked list of object nodes; each object node owns a circular list of
 * parameter nodes. Every list is threaded through a two-pointer link embedded
 * in its nodes; a list head is a sentinel node of the list's kind whose link
 * points to itself when the list is empty.
 *
 * Sizes on a 32-bit target are those of the gateway's platform (24-byte
 * header, 676/2024/668-byte object nodes). On a 64-bit host the pointers grow;
 * every allocation uses sizeof the record, so nothing overflows.
 */
#ifndef HELP_OBJLIST_H
#define HELP_OBJLIST_H

#include <stddef.h>
#include <stdint.h>

#include "caltofal.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Object-list kinds (word 2 of MsgHeader); the first matching test wins. */
#define SOPT_OBJVALUE 0x4
#define SOPT_OBJATTR 0x8
#define SOPT_OBJACSATTR 0x10
#define SOPT_OBJVALUE_MASK 0x147 /* any of these bits selects value nodes */

/* Request modifiers OR-ed into word 2 by the multi-object requests. */
#define SOPT_DEFVAL 0x40
#define SOPT_LEAFNODE 0x100
#define SOPT_TREE 0x1000

/* Main operations (word 1). */
#define MOPT_GET 1
#define MOPT_SET 2
#define MOPT_FACTORYRESET 32
#define MOPT_BACKUP 64
#define MOPT_REBOOT 128
#define MOPT_FWUPGRADE 256

/* Object operations of a set (the sub-operation codes). */
#define OBJOPT_ADD 1
#define OBJOPT_DEL 2
#define OBJOPT_MODIFY 4
#define OBJOPT_GET 8
#define OBJOPT_ACT 16

#define HELP_MAX_NAME_LEN 256
#define HELP_MAX_VALUE_LEN 1024 /* a value holds up to 1023 characters */

typedef struct HelpListLink {
  struct HelpListLink *next;
  struct HelpListLink *prev;
} HelpListLink;

/* Value parameter node. */
typedef struct ParamList {
  char sParamName[HELP_MAX_NAME_LEN];
  char sParamValue[HELP_MAX_VALUE_LEN];
  uint32_t unParamId;
  uint32_t unParamFlag;
  HelpListLink xPlist; /* link in the object's parameter list */
} ParamList;

/* Value object node (also the list head of a value-kind message). */
typedef struct ObjList {
  char sObjName[HELP_MAX_NAME_LEN];
  uint16_t unSid;
  uint16_t unOid;
  uint32_t unObjOper;
  uint32_t unObjFlag;
  char sReserved[392];
  HelpListLink xParamList; /* head of the parameter list */
  HelpListLink xOlist;     /* link in the message's object list */
} ObjList;

/* Attribute parameter node. */
typedef struct ParamAttrList {
  char sParamName[HELP_MAX_NAME_LEN];
  uint32_t unParamId;
  uint32_t unParamFlag;
  uint32_t unNotify;
  uint32_t unAccessList;
  uint32_t unActiveNotify;
  uint32_t unNotifyChange;
  uint32_t unIsUpdated;
  uint32_t unInform;
  uint32_t unReserved;
  HelpListLink xPlist;
} ParamAttrList;

/* Attribute object node. */
typedef struct ObjAttrList {
  char sObjName[HELP_MAX_NAME_LEN];
  uint16_t unSid;
  uint16_t unOid;
  uint32_t unObjOper;
  uint32_t unObjFlag;
  char sReserved[1740];
  HelpListLink xParamAttrList;
  HelpListLink xOlist;
} ObjAttrList;

/* Access-attribute object node. */
typedef struct ObjACSList {
  char sObjName[HELP_MAX_NAME_LEN];
  uint16_t unSid;
  uint16_t unOid;
  uint32_t unObjOper;
  uint32_t unObjFlag;
  char sReserved[384];
  HelpListLink xParamList;
  HelpListLink xOlist;
} ObjACSList;

#if UINTPTR_MAX == 0xFFFFFFFFu
/* The platform's 32-bit record sizes. */
typedef char help_assert_msghdr[(sizeof(MsgHeader) == 24) ? 1 : -1];
typedef char help_assert_objlist[(sizeof(ObjList) == 676) ? 1 : -1];
typedef char help_assert_objattr[(sizeof(ObjAttrList) == 2024) ? 1 : -1];
typedef char help_assert_objacs[(sizeof(ObjACSList) == 668) ? 1 : -1];
#endif

/* Node from link. */
#define HELP_OBJ_OF(link) ((ObjList *)((char *)(link)-offsetof(ObjList, xOlist)))
#define HELP_PARAM_OF(link) ((ParamList *)((char *)(link)-offsetof(ParamList, xPlist)))

/* Walk a value-kind object list / an object's parameter list. */
#define HELP_FOR_EACH_OBJ(head, obj)                \
  for (HelpListLink *help_l_ = (head)->xOlist.next; \
       help_l_ != &(head)->xOlist && ((obj) = HELP_OBJ_OF(help_l_), 1); help_l_ = help_l_->next)
#define HELP_FOR_EACH_PARAM(o, param)                                        \
  for (HelpListLink *help_p_ = (o)->xParamList.next;                         \
       help_p_ != &(o)->xParamList && ((param) = HELP_PARAM_OF(help_p_), 1); \
       help_p_ = help_p_->next)

/* Allocation with the caller's source unit and line (for allocation tracking). */
void *help_calloc(uint32_t count, uint32_t size, const char *file, uint32_t line);
void help_free(void *ptr);

/* Append an object node to a list head; NULL on a NULL head or no memory. */
ObjList *help_addObjList(ObjList *head, const char *name, uint16_t sid, uint16_t oid, uint32_t oper,
                         uint32_t flag);
ObjAttrList *help_addObjAttrList(ObjAttrList *head, const char *name, uint16_t sid, uint16_t oid);

/* Append a parameter; a NULL value stores "" (a value-less parameter); the
 * value is cut to HELP_MAX_VALUE_LEN - 1 characters. NULL on a NULL object. */
ParamList *help_addParamList(ObjList *obj, const char *name, uint16_t id, const char *value,
                             uint32_t flag);
ParamAttrList *help_addParamAttrList(ObjAttrList *obj, const char *name, uint16_t id, uint32_t flag,
                                     uint32_t notify, uint32_t accessList, uint32_t activeNotify,
                                     uint32_t notifyChange, uint32_t isUpdated, uint32_t inform,
                                     uint32_t reserved);

/* Release a message's object list (head and every node) and set word 6 to
 * NULL. flag 1: the list only (the header may live on the stack); flag 0:
 * the header too (it must come from help_calloc). Returns 0. */
int help_delMsg(MsgHeader *msg, int flag);

/* Release every node of the message's object list but keep its head. */
int help_emptyObjList(MsgHeader *msg);

/* Unlink and release one value object node with its parameters. */
void help_delObj(ObjList *obj);

/*
 * Inline helpers: message initialisation and node creation, logging in the
 * frame's own log format (HELP_LOG). Inside the library that is the frame's
 * log itself; in a host program the same rules are applied here with nothing
 * but the exported log settings and libc, so a program that uses the helpers
 * links against the exported names alone.
 */
#ifdef CALTOFAL_BUILD
void faltocal_logLine(unsigned prio, const char *fmt, ...)
    __attribute__((format(printf, 2, 3), visibility("hidden")));
#define HELP_LOG faltocal_logLine
#else
#include <stdarg.h>
#include <stdio.h>
#include <syslog.h>
#include <time.h>
#ifndef __cplusplus
/* POSIX; declared here too for hosts built as strict ISO C. */
struct tm *localtime_r(const time_t *clock, struct tm *result);
#endif

/* One frame log line: to syslog (bit 0 of unfaltocalLogType) and in colour
 * on standard output (bit 1) when unfaltocalLogLevel >= prio; cut at 1,023
 * bytes. The helpers log at priorities 2 (CRITICAL) and 3 (ERROR). */
static inline void HELP_LOG(unsigned prio, const char *fmt, ...)
    __attribute__((format(printf, 2, 3)));
static inline void HELP_LOG(unsigned prio, const char *fmt, ...) {
  char text[1024];
  va_list args;
  if (unfaltocalLogLevel < prio) return;
  va_start(args, fmt);
  vsnprintf(text, sizeof text, fmt, args);
  va_end(args);
  if (unfaltocalLogType & 1) syslog((int)prio, "%s", text);
  if ((unfaltocalLogType & 2) && (prio == 2 || prio == 3)) {
    char when[50] = "";
    struct tm now;
    time_t seconds = time(NULL);
    if (localtime_r(&seconds, &now) != NULL &&
        strftime(when, sizeof when, "%d-%m-%Y %T", &now) == 0) {
      when[0] = '\0';
    }
    printf("%s<%s> [%s] %s\033[0m", prio == 2 ? "\033[31m" : "\033[38;5;214m", when,
           prio == 2 ? "CRITICAL" : "ERROR", text);
    fflush(stdout);
  }
}
#endif

static inline void *HELP_ALLOC_HEAD(uint32_t size, int line) {
  return help_calloc(1, size, "help_objlist", (uint32_t)line);
}

static inline void HELP_CREATE_OBJ(MsgHeader *msg, uint32_t mainOper, uint32_t listFlags,
                                   uint32_t owner) {
  msg->unMainOper = 0;
  msg->unListFlags = 0;
  msg->unOwner = 0;
  msg->unInit = 0;
  msg->unReserved = 0;
  msg->pObjList = NULL;
  msg->unInit = 1;
  msg->unMainOper = mainOper;
  msg->unListFlags = listFlags;
  msg->unOwner = owner;
  if (listFlags & SOPT_OBJVALUE_MASK) {
    ObjList *head = (ObjList *)HELP_ALLOC_HEAD(sizeof(ObjList), 99);
    if (head == NULL) {
      HELP_LOG(2, "faltocal{%s, %d}: malloc failed\n", "HELP_CREATE_OBJ", 102);
      return;
    }
    head->xOlist.next = head->xOlist.prev = &head->xOlist;
    head->xParamList.next = head->xParamList.prev = &head->xParamList;
    msg->pObjList = head;
  } else if (listFlags & SOPT_OBJATTR) {
    ObjAttrList *head = (ObjAttrList *)HELP_ALLOC_HEAD(sizeof(ObjAttrList), 111);
    if (head == NULL) {
      HELP_LOG(2, "faltocal{%s, %d}: malloc failed\n", "HELP_CREATE_OBJ", 114);
      return;
    }
    head->xOlist.next = head->xOlist.prev = &head->xOlist;
    head->xParamAttrList.next = head->xParamAttrList.prev = &head->xParamAttrList;
    msg->pObjList = head;
  } else if (listFlags & SOPT_OBJACSATTR) {
    ObjACSList *head = (ObjACSList *)HELP_ALLOC_HEAD(sizeof(ObjACSList), 124);
    if (head == NULL) {
      HELP_LOG(2, "faltocal{%s, %d}: malloc failed\n", "HELP_CREATE_OBJ", 127);
      return;
    }
    head->xOlist.next = head->xOlist.prev = &head->xOlist;
    head->xParamList.next = head->xParamList.prev = &head->xParamList;
    msg->pObjList = head;
  } else {
    HELP_LOG(3,
             "faltocal{%s, %d}: Pass Proper Objlist Flag (i.e SOPT_OBJVALUE, "
             "SOPT_OBJATTR, SOPT_OBJACSATTR\n",
             "HELP_CREATE_OBJ", 135);
  }
}

/* Object node for a get: value or attribute kind by listFlags; NULL otherwise. */
static inline void *HELP_OBJECT_GET(void *head, const char *name, uint32_t listFlags) {
  if (listFlags & SOPT_OBJVALUE_MASK) return help_addObjList((ObjList *)head, name, 0, 0, 0, 0);
  if (listFlags & SOPT_OBJATTR) return help_addObjAttrList((ObjAttrList *)head, name, 0, 0);
  HELP_LOG(3,
           "faltocal{%s, %d}:Error in Objlist Construction, Pass proper flag(i.e "
           "SOPT_OBJVALUE, SOPT_OBJATTR\n",
           "HELP_OBJECT_GET", 241);
  return NULL;
}

static inline void HELP_PARAM_SET(void *obj, const char *name, const char *value) {
  help_addParamList((ObjList *)obj, name, 0, value, 0);
}

static inline void HELP_PARAM_GET(void *obj, const char *name, uint32_t listFlags) {
  if (listFlags & SOPT_OBJVALUE_MASK) {
    help_addParamList((ObjList *)obj, name, 0, NULL, 0);
  } else if (listFlags & SOPT_OBJATTR) {
    help_addParamAttrList((ObjAttrList *)obj, name, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  } else {
    HELP_LOG(3,
             "faltocal{%s, %d}:Error in Objlist Construction, Pass proper flag(i.e "
             "SOPT_OBJVALUE, SOPT_OBJATTR\n",
             "HELP_PARAM_GET", 267);
  }
}

#ifdef __cplusplus
}
#endif

#endif /* HELP_OBJLIST_H */
