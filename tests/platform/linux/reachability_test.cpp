#include "platform/linux/reachability.h"

#include <gtest/gtest.h>

#include "tests/platform/linux/processes.h"

namespace zelvo::tests {
namespace {

/// Asks in a network of its own, made by these commands. Two ends of a cable are there: "near" and "far".
class ReachabilityInNamespaces : public testing::Test {
 protected:
  void SetUp() override {
    const std::string reason = whyNoNamespaces("-Urn");
    if (!reason.empty()) GTEST_SKIP() << reason;
  }
  static std::string flagsWith(const std::string& commands) {
    const Ended ended =
        runShell("unshare -Urn sh -ec " + quoted(commands + "\n" + quoted(ZELVO_SERVICE_PROBE) + " reachable"));
    EXPECT_EQ(ended.status, 0);
    return ended.output;
  }

  const std::string lan =
      "ip link set lo up; ip link add near type veth peer name far; ip addr add 10.0.0.2/24 dev near;"
      "ip link set near up; ip link set far up;";
};

TEST_F(ReachabilityInNamespaces, WithoutAnyInterfaceNoFlagIsSet) { EXPECT_EQ(flagsWith(""), "0\n"); }

TEST_F(ReachabilityInNamespaces, LoopbackAloneIsNotReachable) { EXPECT_EQ(flagsWith("ip link set lo up"), "0\n"); }

TEST_F(ReachabilityInNamespaces, NetworkWithoutAWayOutIsNotReachable) { EXPECT_EQ(flagsWith(lan), "0\n"); }

TEST_F(ReachabilityInNamespaces, DefaultRouteIsReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add default via 10.0.0.1"), "2\n");
}

TEST_F(ReachabilityInNamespaces, LostCarrierRequiresAConnection) {
  EXPECT_EQ(flagsWith(lan + "ip route add default via 10.0.0.1; ip link set far down"), "6\n");
}

TEST_F(ReachabilityInNamespaces, BlackholeIsNotReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add blackhole default"), "0\n");
}

TEST_F(ReachabilityInNamespaces, UnreachableDefaultIsNotReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add unreachable default"), "0\n");
}

TEST_F(ReachabilityInNamespaces, ProhibitedDefaultIsNotReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add prohibit default"), "0\n");
}

TEST_F(ReachabilityInNamespaces, TwoHalvesAreAWholeWayOut) {
  EXPECT_EQ(flagsWith(lan + "ip route add 0.0.0.0/1 via 10.0.0.1; ip route add 128.0.0.0/1 via 10.0.0.1"), "2\n");
}

TEST_F(ReachabilityInNamespaces, RouteOfATableInUseIsReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add default via 10.0.0.1 table 77; ip rule add from all lookup 77"), "2\n");
}

TEST_F(ReachabilityInNamespaces, RouteOfATableThatIsNotUsedIsNotReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add default via 10.0.0.1 table 77"), "0\n");
}

TEST_F(ReachabilityInNamespaces, SeveralWaysAtOnceAreReachable) {
  EXPECT_EQ(flagsWith(lan + "ip route add default nexthop via 10.0.0.1 nexthop via 10.0.0.3"), "2\n");
}

TEST(Reachability, AnAddressOfAnotherKindHasNoReference) {
  platform::linux_::LinuxReachability reachability;
  EXPECT_EQ(reachability.createWithAddress({.length = 16, .family = 10}), nullptr);
  EXPECT_EQ(reachability.createWithAddress({.length = 28, .family = 2}), nullptr);
}

TEST(Reachability, TheReferenceAnswersAgainAndAgain) {
  platform::linux_::LinuxReachability reachability;
  const auto reference = reachability.createWithAddress({.length = 16, .family = 2, .address = {127, 0, 0, 1}});
  ASSERT_NE(reference, nullptr);
  EXPECT_EQ(reference->flags(), reference->flags());
}

}  // namespace
}  // namespace zelvo::tests
