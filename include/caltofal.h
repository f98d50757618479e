/*
 * libcaltofal: configuration access for the gateway's management programs.
 *
 * The one header host programs include. Plain C (C99 and C++), plain records,
 * integer result codes. Records are owned by the caller, who zero-fills them
 * before a getter runs (several getters copy text without a terminator).
 *
 * Result conventions: configuration getters return 0 on success and -1 or the
 * configuration layer's own negative code (-202 absent object, -208 no match)
 * on failure; boolean tests return 1, 0 or -1; list getters return their
 * entry count; GetCurrentChannel and the WPS/scan requests return 1 for
 * success. Each function's comment says which.
 */
#ifndef CALTOFAL_H
#define CALTOFAL_H

#include <pthread.h>
#include <stddef.h>
#include <stdint.h>

#if defined(CALTOFAL_BUILD)
#define CALTOFAL_API __attribute__((visibility("default")))
#else
#define CALTOFAL_API
#endif

/* No exported function lets a C++ exception out: in C++ they are noexcept. */
#ifdef __cplusplus
#define CALTOFAL_NOEXCEPT noexcept
#else
#define CALTOFAL_NOEXCEPT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Compile-time layout checks that work in C99 and C++. */
#define CALTOFAL_LAYOUT_CHECK(name, cond) typedef char caltofal_layout_##name[(cond) ? 1 : -1]

/* ------------------------------------------------------------------------ */
/* Request message                                                           */
/* ------------------------------------------------------------------------ */

#ifndef CALTOFAL_MSGHEADER_DEFINED
#define CALTOFAL_MSGHEADER_DEFINED
/* A request message: six words, zeroed before its first use. */
typedef struct MsgHeader {
  uint32_t unMainOper;  /* 1 get, 2 set, 32 factory reset, 64 backup, 128 reboot, 256 fw upgrade */
  uint32_t unListFlags; /* object-list kind and request modifiers */
  uint32_t unOwner;     /* sender code */
  uint32_t unInit;      /* 1 once initialised */
  uint32_t unReserved;  /* never set by this library */
  void *pObjList;       /* object list head; NULL while the message is new */
} MsgHeader;
#endif

/* Logging: bit 0 of the type sends frame log lines to syslog, bit 1 prints
 * them in colour on standard output; lines of priority p pass when
 * unfaltocalLogLevel >= p. Initially 1 and 5. */
extern CALTOFAL_API uint16_t unfaltocalLogType;
extern CALTOFAL_API uint16_t unfaltocalLogLevel;

/* Held around every single call into the configuration layer. */
extern CALTOFAL_API pthread_mutex_t capi_mutex;

/* Writes a formatted text to /dev/console; returns close()'s result, or the
 * negative descriptor when the console cannot be opened. */
CALTOFAL_API int PRINT_TO_CONSOLE(const char *format, ...) CALTOFAL_NOEXCEPT
    __attribute__((format(printf, 1, 2)));

/* Message building (nodes are the platform's object and parameter nodes). */
CALTOFAL_API MsgHeader *faltocal_createMessage(uint32_t mainOper,
                                               uint32_t listFlags) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_FillObject(void **outNode, void *listHead, const char *objectName,
                                     uint32_t mainOper, uint32_t subOper,
                                     uint32_t listFlags) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_FillParam(void **node, uint32_t mainOper, const char *paramName,
                                    uint32_t paramId, const char *value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_AddFilter(void **node, const char *paramName,
                                    const char *value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_finalize(MsgHeader *message) CALTOFAL_NOEXCEPT;

/* Senders: main operation 1 through cal_getValue, 2 through cal_setValue
 * (or cal_setValueToDb for the _ToDb form); anything else -1. */
CALTOFAL_API int faltocal_sendQuery(MsgHeader *message) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_sendQuery_ToDb(MsgHeader *message) CALTOFAL_NOEXCEPT;

/* One-object requests: count names (get) or name/value pairs (set). */
CALTOFAL_API int faltocal_send_main(MsgHeader *message, const char *object, const char *mainOper,
                                    const char *subOper, int count, ...) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_send_main_ToDb(MsgHeader *message, const char *object,
                                         const char *mainOper, const char *subOper, int count,
                                         ...) CALTOFAL_NOEXCEPT;

/* Multi-object requests: an object containing '&' is queued, "query" sends. */
CALTOFAL_API int faltocal_send_main_multi_obj(MsgHeader *message, const char *object,
                                              const char *mainOper, const char *subOper, int count,
                                              ...) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_send_main_multi_obj_No_variable(MsgHeader *message, const char *object,
                                                          const char *mainOper, const char *subOper,
                                                          int count,
                                                          const char **params) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_SendMultiObj(uint8_t send, uint32_t listFlags, uint32_t owner,
                                       MsgHeader *message, const char *object, const char *mainOper,
                                       const char *subOper, int count, ...) CALTOFAL_NOEXCEPT;

/* Answer lookup. */
CALTOFAL_API int caltofal_paramValue_get(void *objectList, const char *objectPart,
                                         const char *paramName, char **out) CALTOFAL_NOEXCEPT;
CALTOFAL_API int zintu_GetParamFromObjUnit(void *object, const char *paramName,
                                           const char **out) CALTOFAL_NOEXCEPT;
CALTOFAL_API void zintu_InsertDotEndofObj(char *path) CALTOFAL_NOEXCEPT;

/* Wi-Fi message builder: header for an operation keyword, flags 0x1004, owner 32. */
CALTOFAL_API int faltocal_create_msg(MsgHeader *header, const char *operation) CALTOFAL_NOEXCEPT;

/* ------------------------------------------------------------------------ */
/* Identity, address checks and text utilities                               */
/* ------------------------------------------------------------------------ */

/* Host-table instance number of the device with this MAC or IPv4 address; 0 if none. */
CALTOFAL_API int GetDeviceID(const char *identifier) CALTOFAL_NOEXCEPT;
/* MAC address of an interface from the platform's MAC allocation file; 0 or -1. */
CALTOFAL_API int zintu_scapi_getMacFromFile(const char *interfaceName,
                                            char *macOut) CALTOFAL_NOEXCEPT;
CALTOFAL_API int zintu_isValidMacAddress(const char *mac) CALTOFAL_NOEXCEPT; /* 0 valid, -1 not */
CALTOFAL_API int zintu_isValidIPv4Address(const char *address)
    CALTOFAL_NOEXCEPT; /* 0 valid, -1 not */
CALTOFAL_API int itoa(int value, char *out) CALTOFAL_NOEXCEPT;
CALTOFAL_API int atob(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API char *strupr(char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API void reverse_string(char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API char *trim_start_space(char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API char *remove_rss_tag(char *text, const char *openTag) CALTOFAL_NOEXCEPT;
/* First output line of a command (128-byte output buffer). */
CALTOFAL_API char *get_from_shell(const char *command, char *output) CALTOFAL_NOEXCEPT;

/* ------------------------------------------------------------------------ */
/* Network pages                                                             */
/* ------------------------------------------------------------------------ */

/* The default WAN summary. */
typedef struct ZintuWanInfo {
  char sStatus[16];
  char sWanIpType[16];
  char sWanLinkType[16];
  char sOperMode[16];
  char sIpv4Mode[16];
  char sIPAddress[16];
  char sSubnetMask[16];
  char sGateway[16];
  char sName[32];
  char sWanIpInterface[256];
  int32_t nWanIpIfIndex;
  char sLowerLayers[256];
  char sReserved1[256];
  char sDescription[256];
  char sPppStaticAddress[32];
  char sUsername[64];
  char sPassword[64];
  char sConnectionTrigger[32];
  int32_t nIdleDisconnectTime;
  int32_t nMaxMRUSize;
  char sACName[256];
  char sServiceName[256];
  char sPppInterface[256];
  int32_t bDnsAuto;
  char sDNS1[16];
  char sDNS2[16];
  char sReserved2[784];
  int32_t nAtmVpi;
  int32_t nAtmVci;
  char sAtmQoSClass[32];
  char sReserved3[32];
  int32_t bVlanEnable;
  int32_t nVlanID;
  char sReserved4[256];
  uint8_t bIpv6Enable;
  char sIpv6Type[32];
  char sIpv6Address[46];
  char sIpv6NextHop[46];
} ZintuWanInfo;

/* DSL line 1 and channel 1 figures. */
typedef struct ZintuDslLineInfo {
  char sStatus[16];
  char sCurrentProfile[256];
  char sReserved[272];
  int32_t nUpstreamCurrRate;
  int32_t nDownstreamCurrRate;
  int32_t nUpstreamMaxBitRate;
  int32_t nDownstreamMaxBitRate;
  int32_t nUpstreamNoiseMargin;
  int32_t nDownstreamNoiseMargin;
  char sLATNds[32];
  char sLATNus[32];
  int32_t nXTURCRCErrors;
  int32_t nXTUCCRCErrors;
} ZintuDslLineInfo;

typedef struct LANv4Info {
  uint8_t bDHCPv4Active;
  char sIPv4Address[16];
  char sIPv4Subnet[16];
  char sDHCPv4StartIP[16];
  char sDHCPv4EndIP[16];
  char sMACAddr[18];
  int32_t nLeaseTimeSec;
} LANv4Info;

typedef struct LANv6Info {
  uint8_t bIPv6Active;
  char sIPv6Address[128];
  int32_t nPrefixLength;
  char sLANv6Mode[128];
  char sDNSv6Primary[128];
  char sDNSv6Secondary[128];
  char sDomainNamev6[128];
  char sDHCPv6StartIP[128];
  char sDHCPv6EndIP[128];
  int32_t nLeaseTimeSec;
  uint8_t bPDActive;
  char sManualPrefix[128];
  int32_t nManualPrefixLength;
} LANv6Info;

typedef struct ZintuMultiWanInfo {
  int32_t nEnabled;
  int32_t nFailOver;
  int32_t nWan1Type;
  int32_t nWan2Type;
  char sWan1Interface[128];
  char sWan2Interface[128];
} ZintuMultiWanInfo;

/* Names of the ten DSL modes, in the order of ZintuGet_DslMode's flags. */
extern CALTOFAL_API const char *const DEF_DSL_MODE[10];
/* "Device.IP.Interface.3." to "Device.IP.Interface.21.". */
extern CALTOFAL_API const char *const ZINTU_DEF_IP_INTERFACE[19];

CALTOFAL_API int32_t ZintuGet_OperMode(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_DefGw(ZintuWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_UciSectionByConnMode(const char *connMode,
                                                   char *uciSection) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_UciSectionOfDefGw(char *uciSection) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_LowerLayers(const char *object, char *lowerLayers) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_EthWanObjName(char *objName) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_LineInfo(ZintuDslLineInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_DslMode(int32_t modes[10]) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_WanDns(const char *ipInterface, char *dns1,
                                     char *dns2) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_WanStaticDns(const char *ipInterface, int32_t *dnsAuto, char *dns1,
                                           char *dns2) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_BrWanInfo(uint32_t flags, ZintuWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_WanIPv6(ZintuWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_DefWanInfo(ZintuWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_IPv6PD(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_AtmInfo(ZintuWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_LANv4Info(LANv4Info *pxLANv4Info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_LANv6Info(LANv6Info *pxLANv6Info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t ZintuGet_MultiWanInfo(ZintuMultiWanInfo *info) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t zintu_GetWanIfName(char *ifName) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t zintu_GetValueFromDBInfo(const char *object, const char *filterParam,
                                              const char *filterValue, const char *wantedParam,
                                              char *outObjectName,
                                              char *outValue) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t Zintu_isEnabledIptvStb(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API uint32_t IPConvertTouint(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API int32_t validationCheck_IPv6Addr(const char *text) CALTOFAL_NOEXCEPT;

/* ------------------------------------------------------------------------ */
/* Mesh control                                                              */
/* ------------------------------------------------------------------------ */

CALTOFAL_API int ZINTU_meshgrove_check_is_enabled(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ZINTU_meshgrove_set_enable_value(uint8_t enable) CALTOFAL_NOEXCEPT;
CALTOFAL_API char *ZINTU_meshgrove_get_from_shell(const char *command,
                                                  char *output) CALTOFAL_NOEXCEPT;
CALTOFAL_API char *ZINTU_meshgrove_get_IP_from_MAC(char *mac) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ZINTU_meshgrove_sync_to_slave(void) CALTOFAL_NOEXCEPT;

/* ------------------------------------------------------------------------ */
/* Wi-Fi                                                                     */
/* ------------------------------------------------------------------------ */

/* A pair-table row: configuration-layer (FAPI) value, then UI value. */
typedef char ConvPairRow[2][127];

extern CALTOFAL_API const ConvPairRow Dot11nProtect_FapiToUi_Table[2];
extern CALTOFAL_API const ConvPairRow WMM_Option_FapiToUi_Table[4];
extern CALTOFAL_API const ConvPairRow SecurityType_FapiToUi_Table[8];
extern CALTOFAL_API const ConvPairRow VhtShortGuardInterval_FapiToUi_Table[2];
extern CALTOFAL_API const ConvPairRow ShortGuardInterval_FapiToUi_Table[2];
extern CALTOFAL_API const ConvPairRow SideBand_FapiToUi_Table[3];
extern CALTOFAL_API const ConvPairRow BandWidth_FapiToUi_Table[5];
extern CALTOFAL_API const ConvPairRow WireLessMode_FapiToUi_Table[12];
extern CALTOFAL_API const ConvPairRow Interface_DevToPhy_Table[4];
extern CALTOFAL_API const ConvPairRow Interface_FapiToUi_Table[2];

/* Retry intervals of a 5 GHz scan, a 2.4 GHz scan and a WPS run. */
extern CALTOFAL_API const uint8_t SCAN_5G_RetryTime[40];
extern CALTOFAL_API const uint8_t SCAN_24G_RetryTime[40];
extern CALTOFAL_API const uint8_t WPS_RetryTime[40];

/* Table walkers: the matching row's other cell, or the input text. */
CALTOFAL_API const char *FapiToUi_Str(const char *text, const ConvPairRow *table,
                                      int rows) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *UiToFapi_Str(const char *text, const ConvPairRow *table,
                                      int rows) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *DevToPhy_Str(const char *text, const ConvPairRow *table,
                                      int rows) CALTOFAL_NOEXCEPT;

/* Per-setting converters: direction 1 FAPI to UI, any other UI to FAPI. */
CALTOFAL_API const char *OperatingStandards_ConvStr(const char *text,
                                                    int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *BandWidth_ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ExtensionChannel_ConvStr(const char *text,
                                                  int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ShortGuardInterval_ConvStr(const char *text,
                                                    int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *VhtShortGuardInterval_ConvStr(const char *text,
                                                       int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *WMMOption_ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *Dot11nProtect_ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *TransmitPower_ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *AutoChannelEnable_ConvStr(const char *text,
                                                   int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ChannelList_ConvStr(const char *text, int direction) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvInt(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvStrToBool(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ConvBoolToStr(uint8_t flag) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvMacACLModeToUI(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *ConvMacACLModeToFapi(uint8_t enabled, int allow) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvSsidIdxToUI(int radio, int index) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvSsidIdxToFapi(int radio, int index) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvBeaconInterval(int value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvDtimInterval(int value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvFragmentationThreshold(int value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvRtsThreshold(int value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvTransmitPower(int percent) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvFreqChannel(int frequencyMHz) CALTOFAL_NOEXCEPT;
CALTOFAL_API int isValidMacAddress(const char *text) CALTOFAL_NOEXCEPT;
CALTOFAL_API int my_strnicmp(const char *s1, const char *s2, int n) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvHexDecToCharStr(const char *hex, char *out) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ConvCharStrToHexDec(const char *bytes, int count, char *out) CALTOFAL_NOEXCEPT;

/* Channels allowed on a radio. */
typedef struct WifiChannelEntry {
  int32_t channel;
  int32_t frequency;
  int32_t belowChannel;
  int32_t aboveChannel;
  int32_t bandwidths[4];
  int32_t reserved;
} WifiChannelEntry;

typedef struct WifiChannelList {
  uint32_t count;
  WifiChannelEntry entries[100];
} WifiChannelList;

CALTOFAL_API int GetPhyNumber(const char *ifname) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetChannelList(const char *ifname, int radioIndex,
                                WifiChannelList *list) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetCurrentChannel(const char *ifname, int ignored, int *channel) CALTOFAL_NOEXCEPT;
CALTOFAL_API const char *GetSideChannel(int channel, const char *countryCode,
                                        const char *fallback) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetDFSChannel(void) CALTOFAL_NOEXCEPT;

/* Associated stations and the MAC access list. */
typedef struct WifiStaEntry {
  char mac[128];
  int32_t rssiAverage;
  int32_t rssi[4];
} WifiStaEntry;

typedef struct WifiStaList {
  uint32_t count;
  WifiStaEntry entries[128];
} WifiStaList;

typedef struct MacAccessEntry {
  int32_t index;
  char name[128];
  char macAddress[128];
} MacAccessEntry;

typedef struct MacAccessList {
  MacAccessEntry entries[32];
  int32_t count;
} MacAccessList;

CALTOFAL_API int GetStaInfo(const char *ifname, const char *macFilter,
                            WifiStaList *list) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetAssociatedDeviceNumberOfEntries(int radioIndex) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetMacAccessList(void *objectNode, const char *prefix,
                                  MacAccessList *list) CALTOFAL_NOEXCEPT;

/* Settings snapshots and change detection. */
typedef struct WifiParamRow {
  char object[256];
  char parameter[256];
  char value[128];
} WifiParamRow;

typedef struct WifiParamTable {
  int32_t count;
  WifiParamRow rows[100];
} WifiParamTable;

CALTOFAL_API int SetParam(WifiParamTable *table, const char *object, const char *parameter,
                          const char *value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetSsIdInfoFromFapiToBuff(int ssidIndex, WifiParamTable *table) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetWireInfoFromFapiToBuff(int radioIndex, WifiParamTable *table) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ComparOrSetParam(WifiParamTable *current, WifiParamTable *changes,
                                  const char *object, const char *parameter, const char *value,
                                  uint8_t force) CALTOFAL_NOEXCEPT;
CALTOFAL_API int CheckGetParam(WifiParamTable *table, const char *object, const char *parameter,
                               const char *value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int CheckGetReqDbAndCurDb(WifiParamTable *requested, WifiParamTable *current,
                                       const char *object, const char *parameter,
                                       const char *value) CALTOFAL_NOEXCEPT;
CALTOFAL_API int faltocal_fromDB(MsgHeader *header, WifiParamTable *changes, int moreFollows,
                                 int onlyDb) CALTOFAL_NOEXCEPT;

/* Site survey. */
typedef struct SiteSurveyEntry {
  char ssid[128];
  int32_t channel;
  int32_t rssi;
  char security[128];
  char encryption[128];
  char macaddr[128];
  int32_t bandwidth;
  char phymode[128];
  char sideband[128];
  int32_t product;
} SiteSurveyEntry;

typedef struct SiteSurveyList {
  int32_t count;
  SiteSurveyEntry *entries; /* allocated by GetSiteSurveyList, freed by the caller */
} SiteSurveyList;

CALTOFAL_API int Remove_Confs_File(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetFileLineCnt(const char *path) CALTOFAL_NOEXCEPT;
CALTOFAL_API int CombineScanResultFiles(const char *first, const char *second,
                                        const char *target) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetSiteSurveyList(const char *path, SiteSurveyList *list,
                                   const char *ssidFilter) CALTOFAL_NOEXCEPT;

/* WPS and scan requests (1 when the shell ran). */
CALTOFAL_API int ReqWPSActive(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ReqWPSCancel(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ReqWPSReset(void) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ReqScan(const char *ifname, const char *ssid) CALTOFAL_NOEXCEPT;

/* Repeater endpoint. */
CALTOFAL_API int GetEPEnable(char *ifnameOut) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetEPContection(const char *ifname, char *macOut) CALTOFAL_NOEXCEPT;
CALTOFAL_API int GetEPConnectionStatus(char *macOut) CALTOFAL_NOEXCEPT;
CALTOFAL_API int ReqEPChannelInfo(const char *ifname, int32_t *values) CALTOFAL_NOEXCEPT;

/* Escape a text for a double-quoted UCI command-line argument; target holds
 * 4 * strlen(source) + 1 bytes. */
CALTOFAL_API int ConvSpecialChar_forUciCli(const char *source, char *target) CALTOFAL_NOEXCEPT;

/* ------------------------------------------------------------------------ */
/* Record layouts (the same on 32- and 64-bit targets)                       */
/* ------------------------------------------------------------------------ */

CALTOFAL_LAYOUT_CHECK(wan_size, sizeof(ZintuWanInfo) == 3440);
CALTOFAL_LAYOUT_CHECK(wan_ifindex, offsetof(ZintuWanInfo, nWanIpIfIndex) == 416);
CALTOFAL_LAYOUT_CHECK(wan_dnsauto, offsetof(ZintuWanInfo, bDnsAuto) == 2156);
CALTOFAL_LAYOUT_CHECK(wan_atmvpi, offsetof(ZintuWanInfo, nAtmVpi) == 2976);
CALTOFAL_LAYOUT_CHECK(wan_vlan, offsetof(ZintuWanInfo, bVlanEnable) == 3048);
CALTOFAL_LAYOUT_CHECK(wan_ipv6, offsetof(ZintuWanInfo, bIpv6Enable) == 3312);
CALTOFAL_LAYOUT_CHECK(wan_nexthop, offsetof(ZintuWanInfo, sIpv6NextHop) == 3391);
CALTOFAL_LAYOUT_CHECK(dsl_size, sizeof(ZintuDslLineInfo) == 640);
CALTOFAL_LAYOUT_CHECK(lanv4_size, sizeof(LANv4Info) == 88);
CALTOFAL_LAYOUT_CHECK(lanv4_lease, offsetof(LANv4Info, nLeaseTimeSec) == 84);
CALTOFAL_LAYOUT_CHECK(lanv6_size, sizeof(LANv6Info) == 1044);
CALTOFAL_LAYOUT_CHECK(lanv6_prefix, offsetof(LANv6Info, sManualPrefix) == 909);
CALTOFAL_LAYOUT_CHECK(multiwan_size, sizeof(ZintuMultiWanInfo) == 272);
CALTOFAL_LAYOUT_CHECK(pair_row, sizeof(ConvPairRow) == 254);
CALTOFAL_LAYOUT_CHECK(param_row, sizeof(WifiParamRow) == 640);
CALTOFAL_LAYOUT_CHECK(param_table, sizeof(WifiParamTable) == 64004);
CALTOFAL_LAYOUT_CHECK(channel_entry, sizeof(WifiChannelEntry) == 36);
CALTOFAL_LAYOUT_CHECK(channel_list, sizeof(WifiChannelList) == 3604);
CALTOFAL_LAYOUT_CHECK(sta_entry, sizeof(WifiStaEntry) == 148);
CALTOFAL_LAYOUT_CHECK(sta_list, sizeof(WifiStaList) == 18948);
CALTOFAL_LAYOUT_CHECK(mac_entry, sizeof(MacAccessEntry) == 260);
CALTOFAL_LAYOUT_CHECK(mac_list, sizeof(MacAccessList) == 8324);
CALTOFAL_LAYOUT_CHECK(mac_count, offsetof(MacAccessList, count) == 8320);
CALTOFAL_LAYOUT_CHECK(survey_entry, sizeof(SiteSurveyEntry) == 784);

#ifdef __cplusplus
}
#endif

#endif /* CALTOFAL_H */
