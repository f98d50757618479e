// Every configuration getter against an emulator whose model (object names,
// parameter names, values of any length) is the fuzz input. Records live on
// the heap at exactly their size, so AddressSanitizer sees any write past
// them; every message is released (LeakSanitizer checks at exit).
#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "fuzz.h"

namespace {

template <typename T>
std::unique_ptr<T> zeroed() {
  return std::make_unique<T>();  // value-initialised: zero-filled as callers do
}

std::unique_ptr<char[]> buffer(std::size_t size) {
  return std::make_unique<char[]>(size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  fakeos::reset();
  calsim::reset();
  std::string error;
  if (!calsim::loadModelString(std::string(reinterpret_cast<const char *>(data), size), "fuzz",
                               &error)) {
    return 0;
  }
  ZintuGet_OperMode();
  ZintuGet_DefGw(zeroed<ZintuWanInfo>().get());
  ZintuGet_UciSectionByConnMode("pppoe", buffer(128).get());
  ZintuGet_UciSectionByConnMode("dhcp", buffer(128).get());
  ZintuGet_UciSectionOfDefGw(buffer(128).get());
  ZintuGet_LowerLayers("Device.IP.Interface.3.", buffer(256).get());
  ZintuGet_EthWanObjName(buffer(128).get());
  ZintuGet_LineInfo(zeroed<ZintuDslLineInfo>().get());
  int32_t modes[10] = {0};
  ZintuGet_DslMode(modes);
  ZintuGet_WanDns("Device.IP.Interface.3", buffer(16).get(), buffer(16).get());
  int32_t dnsAuto = 0;
  ZintuGet_WanStaticDns("Device.IP.Interface.3.", &dnsAuto, buffer(16).get(), buffer(16).get());
  ZintuGet_BrWanInfo(0, zeroed<ZintuWanInfo>().get());
  ZintuGet_BrWanInfo(1, zeroed<ZintuWanInfo>().get());
  ZintuGet_WanIPv6(zeroed<ZintuWanInfo>().get());
  ZintuGet_DefWanInfo(zeroed<ZintuWanInfo>().get());
  ZintuGet_IPv6PD();
  ZintuGet_AtmInfo(zeroed<ZintuWanInfo>().get());
  ZintuGet_LANv4Info(zeroed<LANv4Info>().get());
  ZintuGet_LANv6Info(zeroed<LANv6Info>().get());
  ZintuGet_MultiWanInfo(zeroed<ZintuMultiWanInfo>().get());
  zintu_GetWanIfName(buffer(128).get());
  zintu_GetValueFromDBInfo("Device.Hosts.Host.", "PhysAddress", "02:", "IPAddress",
                           buffer(128).get(), buffer(128).get());
  Zintu_isEnabledIptvStb();
  GetDeviceID("02:00:00:00:00:05");
  GetDeviceID("192.168.1.10");
  for (int radio = 1; radio <= 2; ++radio) {
    GetWireInfoFromFapiToBuff(radio, zeroed<WifiParamTable>().get());
    GetAssociatedDeviceNumberOfEntries(radio);
    GetChannelList(radio == 1 ? "wlan0" : "wlan2", radio, zeroed<WifiChannelList>().get());
  }
  for (int ssid = 1; ssid <= 16; ssid += 5) {
    GetSsIdInfoFromFapiToBuff(ssid, zeroed<WifiParamTable>().get());
  }
  GetDFSChannel();
  GetEPEnable(buffer(128).get());
  GetEPConnectionStatus(buffer(128).get());
  calsim::reset();
  return 0;
}
