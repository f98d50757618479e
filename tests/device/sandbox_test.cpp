// The device sandbox as its users meet it: a command run by caltofal-device
// sees the simulated device, every process of it the same driver files, the
// console captured in order and the fake tools logging their calls.
#include "device_test.h"

namespace {

using namespace devicetest;  // NOLINT: the shared fixture's own test files

class Sandbox : public DeviceTest {
 protected:
  // Runs `script` with sh -c inside the sandbox.
  Outcome run(const std::string &script, const std::string &options = "") {
    return inSandbox("sh -c " + quoted(script), options);
  }
};

TEST_F(Sandbox, EveryProcessSeesTheDriversFiles) {
  // The command's shell, a shell it starts, and a program reading the file
  // itself: /proc/net is each process's own link, and all see the device.
  Outcome o =
      run("head -1 /proc/net/mtlk/wlan0/channel; sh -c 'head -1 /proc/net/mtlk/wlan2/channel'; "
          "cat /proc/net/mtlk/wlan2.7/PeerFlowStatus | grep 'STA MAC'; "
          "test -e /proc/net/dev && echo real-entries-kept");
  EXPECT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out, "width: 40\nwidth: 80\n0E:77:12:9A:00:21 : STA MAC\nreal-entries-kept\n");
  EXPECT_FALSE(fs::exists("/proc/net/mtlk")) << "the host's /proc/net must not change";
}

TEST_F(Sandbox, TheConsoleIsCapturedWriteByWriteInOrder) {
  // Each write opens the console afresh, as the library's traces do; only
  // --console-to-stderr copies it to standard error too.
  const std::string traces = "trace 1\ntrace 2\ntrace 3\n";
  for (const std::string options : {"", "--console-to-stderr"}) {
    Outcome o = run("for i in 1 2 3; do printf 'trace %s\\n' $i >/dev/console; done", options);
    EXPECT_EQ(o.status, 0) << o.err;
    EXPECT_EQ(log("console.log"), traces);
    EXPECT_EQ(o.out, "");
    EXPECT_EQ(o.err, options.empty() ? "" : traces);
  }
}

TEST_F(Sandbox, FakeToolsAnswerFromTheTreeAndLogTheirCalls) {
  Outcome o =
      run("iw dev wlan2 info | grep wiphy; iw phy phy0 show_channel | sed -n 5p; "
          "iwlist wlan0 channel | grep 'Current Channel='; iw dev wlan9 info; echo \"iw=$?\"; "
          "gddbc -i -s /runtime/x \"a b\"; gddbc -i -g /runtime/x; "
          "killall -SIGUSR1 nimbord; killall -SIGUSR1 nobody 2>/dev/null; echo \"killall=$?\"; "
          "ubus call servd notify '{\"ssid\":\"Home\"}'; ubus call servd notify '{\"ssid\"'; "
          "echo \"ubus=$?\"");
  EXPECT_EQ(o.out,
            "\twiphy 2\n5 2432 - - 40+ 40- -\n          Current Channel=6\niw=237\na b\n"
            "killall=1\nubus=2\n");
  EXPECT_EQ(o.err, "command failed: No such device (-19)\nInvalid argument\n");
  EXPECT_EQ(log("calls.log"),
            "iw dev wlan2 info\niw phy phy0 show_channel\niwlist wlan0 channel\n"
            "iw dev wlan9 info\ngddbc -i -s /runtime/x a\\ b\ngddbc -i -g /runtime/x\n"
            "killall -SIGUSR1 nimbord\nkillall -SIGUSR1 nobody\n"
            "ubus call servd notify \\{\\\"ssid\\\":\\\"Home\\\"\\}\n"
            "json: {\"ssid\": \"Home\"}\n"
            "ubus call servd notify \\{\\\"ssid\\\"\n"
            "rejected: json.decoder.JSONDecodeError: Expecting ':' delimiter: line 1 column 8 "
            "(char 7)\n");
}

TEST_F(Sandbox, WorkFilesStayInTheRunFolderAndTheShellHasSource) {
  Outcome o =
      run("echo kept > /tmp/wlan_wave/sta_info_wlan0; echo 'echo sourced' > /tmp/wlan_wave/s.sh; "
          "source /tmp/wlan_wave/s.sh; ls /opt/lantiq/etc");
  EXPECT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out, "sourced\nnextmac.conf\nugw_notify_defs.sh\n");
  EXPECT_EQ(log("wlan_wave/sta_info_wlan0"), "kept\n");
  EXPECT_FALSE(fs::exists("/tmp/wlan_wave/sta_info_wlan0"));
}

TEST_F(Sandbox, TheTreeIsCopiedSoEditsShowOnTheNextRun) {
  fs::copy(DEVICE_TREE, dir_ / "tree", fs::copy_options::recursive);
  std::ofstream(dir_ / "tree/proc/net/mtlk/wlan0/channel") << "width: 20\nprimary_channel: 11\n";
  std::ofstream(dir_ / "tree/wireless/wlan2/iwlist_channel") << "  Current Channel=100\n";
  Outcome o =
      run("cat /proc/net/mtlk/wlan0/channel; iwlist wlan2 channel; "
          "echo x >> /opt/lantiq/etc/nextmac.conf",
          "--tree " + (dir_ / "tree").string());
  // The driver's files and the fake tools' answers both come from the copy.
  EXPECT_EQ(o.out, "width: 20\nprimary_channel: 11\n  Current Channel=100\n");
  EXPECT_EQ(readFile(dir_ / "tree/opt/lantiq/etc/nextmac.conf"),
            readFile(fs::path(DEVICE_TREE) / "opt/lantiq/etc/nextmac.conf"));
}

TEST_F(Sandbox, ExitStatusesAndSetUpProblems) {
  EXPECT_EQ(run("exit 7").status, 7);
  EXPECT_EQ(run("kill -TERM $$").status, 128 + 15);

  Outcome o = run("true", "--tree " + (dir_ / "nowhere").string());
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.err, "caltofal-device: no device tree at " + (dir_ / "nowhere").string() +
                       " (want opt/, proc/net/, tmp/wlan_wave/)\n");

  const std::string launcher = CALTOFAL_DEVICE_LAUNCHER;
  o = shell(launcher + " --bogus true");
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err.rfind("caltofal-device: unknown option --bogus\n", 0), 0u);

  // Without root the sandbox says so.
  o = shell(kAsNobody + launcher + " true");
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.err,
            "caltofal-device: the device sandbox needs root (it mounts the simulated device in a "
            "private mount namespace); run it as root\n");
}

}  // namespace
