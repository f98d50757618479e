// The two address checks of the network pages, against the C library's own
// parsers: what inet_aton stores, and what inet_pton takes as IPv6.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "caltofal.h"

namespace {

// The value as the four address bytes in memory order.
uint32_t bytes(uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
  const uint8_t raw[4] = {a, b, c, d};
  uint32_t value;
  std::memcpy(&value, raw, sizeof value);
  return value;
}

TEST(IPConvertTouint, StoresTheAddressInNetworkByteOrder) {
  struct Case {
    const char *text;
    uint32_t expected;
  };
  const Case cases[] = {
      {"192.168.1.1", bytes(192, 168, 1, 1)},
      {"0.0.0.0", 0},
      {"10.1", bytes(10, 0, 0, 1)},  // the short forms inet_aton takes
      {"0x7f.1", bytes(127, 0, 0, 1)},
      {"255.255.255.255", 0xFFFFFFFFu},  // the same as a failure
      {"abc", 0xFFFFFFFFu},
      {"", 0xFFFFFFFFu},
      {"256.1.1.1", 0xFFFFFFFFu},
      {nullptr, 0},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(IPConvertTouint(c.text), c.expected) << (c.text ? c.text : "(null)");
  }
}

// The number itself differs with the byte order: on the gateway's big-endian
// MIPS it reads as 0xC0A80101, on a little-endian PC the bytes are reversed.
TEST(IPConvertTouint, IsTheNumberOfTheTargetsByteOrder) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  EXPECT_EQ(IPConvertTouint("192.168.1.1"), 0xC0A80101u);
  EXPECT_EQ(IPConvertTouint("10.0.0.1"), 0x0A000001u);
#else
  EXPECT_EQ(IPConvertTouint("192.168.1.1"), 0x0101A8C0u);
  EXPECT_EQ(IPConvertTouint("10.0.0.1"), 0x0100000Au);
#endif
}

TEST(ValidationCheckIPv6Addr, AcceptsWhatInetPtonTakes) {
  struct Case {
    const char *text;
    int32_t expected;
  };
  const Case cases[] = {
      {"fe80::1", 0},
      {"::", 0},
      {"2001:db8:1::1ff", 0},
      {"::ffff:192.0.2.1", 0},
      {"2001:db8::/64", -1},
      {"fe80::1%eth0", -1},
      {"192.0.2.1", -1},
      {"1:2:3:4:5:6:7:8:9", -1},
      {"", -1},
      {nullptr, -1},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(validationCheck_IPv6Addr(c.text), c.expected) << (c.text ? c.text : "(null)");
  }
}

TEST(Tables, NameTheDslModesAndTheWanInterfaces) {
  const char *const modes[10] = {"G.dmt",         "T1.413",       "G.Lite",       "ADSL",
                                 "ADSL2",         "ADSL2 AnnexL", "ADSL2 AnnexM", "ADSL2+",
                                 "ADSL2+ AnnexM", "VDSL2"};
  for (int i = 0; i < 10; ++i) EXPECT_STREQ(DEF_DSL_MODE[i], modes[i]) << i;
  for (int i = 0; i < 19; ++i) {
    EXPECT_EQ(ZINTU_DEF_IP_INTERFACE[i], "Device.IP.Interface." + std::to_string(i + 3) + ".");
  }
}

}  // namespace
