#include "platform/linux/web.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "platform/linux/digest.h"
#include "platform/linux/files.h"
#include "platform/linux/property_lists.h"
#include "tests/platform/linux/processes.h"
#include "tests/platform/linux/variable.h"
#include "tests/platform/linux/web_server.h"
#include "tests/update/fakes.h"
#include "update/hashes.h"

namespace zelvo::tests {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kLargest = 65536;

class Web : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(server.serves()); }

  /// The whole body; nothing when the fetch failed.
  std::optional<std::string> fetched(const std::string& address, const platform::FetchLimits& limits = kUsual) {
    std::string body;
    const bool whole = web.fetch(address, limits, [&body](std::span<const std::byte> piece) {
      for (const std::byte byte : piece) body += static_cast<char>(byte);
    });
    return whole ? std::optional(body) : std::nullopt;
  }
  std::optional<std::string> fetched(const std::string& name, const std::string& path) {
    return fetched(server.address(name, path));
  }
  /// An address that redirects to another.
  [[nodiscard]] std::string redirectTo(const std::string& from, const std::string& target) const {
    std::string escaped;
    for (const char character : target) {
      escaped += character == '%' ? "%25" : character == '?' ? "%3F" : std::string(1, character);
    }
    return server.address(from, "to?" + escaped);
  }

  const Variable noProxy{"no_proxy", "*"};
  const Variable noProxyEither{"NO_PROXY", "*"};
  static constexpr platform::FetchLimits kUsual{.total = 60s, .largest = kLargest};
  WebServer server;
  platform::linux_::WebLibrary library;
  platform::linux_::LinuxWeb web{library, server.authority()};
};

TEST_F(Web, BodyIsFetchedPlainAndEncrypted) {
  EXPECT_EQ(fetched("http", "plain"), "plain body");
  EXPECT_EQ(fetched("https", "plain"), "plain body");
  EXPECT_EQ(fetched("http", "empty"), "");
  EXPECT_EQ(fetched("http", "a%20b"), "escaped");
}

TEST_F(Web, CompressedBodyIsOpened) { EXPECT_EQ(fetched("http", "compressed"), "plain body"); }

TEST_F(Web, ErrorStatusIsAFailure) {
  EXPECT_EQ(fetched("http", "404"), std::nullopt);
  EXPECT_EQ(fetched("http", "500"), std::nullopt);
}

TEST_F(Web, FiveRedirectsAreFollowedAndNotASixth) {
  EXPECT_EQ(fetched("http", "redirect/5"), "arrived");
  EXPECT_EQ(fetched("http", "redirect/6"), std::nullopt);
  EXPECT_EQ(fetched("http", "loop"), std::nullopt);
}

TEST_F(Web, RedirectMayTurnEncryptionOnAndNeverOff) {
  const std::string plain = server.address("http", "plain");
  const std::string encrypted = server.address("https", "plain");
  EXPECT_EQ(fetched(redirectTo("http", encrypted)), "plain body");
  EXPECT_EQ(fetched(redirectTo("https", encrypted)), "plain body");
  EXPECT_EQ(fetched(redirectTo("http", plain)), "plain body");
  EXPECT_EQ(fetched(redirectTo("https", plain)), std::nullopt);
}

TEST_F(Web, EncryptionThatARedirectTurnedOnStaysOn) {
  const std::string back = redirectTo("https", server.address("http", "plain"));
  EXPECT_EQ(fetched(redirectTo("http", back)), std::nullopt);
}

TEST_F(Web, RedirectToAnotherSchemeIsRefused) {
  TempFolder temp;
  writeFile(temp / "secret", "secret");
  for (const std::string scheme : {"file://", "ftp://127.0.0.1", "dict://127.0.0.1", "gopher://127.0.0.1"}) {
    EXPECT_EQ(fetched(redirectTo("http", scheme + (temp / "secret"))), std::nullopt) << scheme;
    EXPECT_EQ(fetched(redirectTo("https", scheme + (temp / "secret"))), std::nullopt) << scheme;
  }
}

TEST_F(Web, WhatIsNoWebAddressIsRefused) {
  TempFolder temp;
  writeFile(temp / "secret", "secret");
  const std::string known = server.address("http", "plain");
  for (const std::string& address :
       {"file://" + (temp / "secret"), std::string("httpd.conf"), std::string("http:"), std::string("http://"),
        std::string(""), known.substr(7), server.address("http", "a b"), known + std::string("\0x", 2),
        std::string("https//127.0.0.1/"), std::string("http://[::")}) {
    EXPECT_EQ(fetched(address), std::nullopt) << address;
  }
}

TEST_F(Web, SchemeMayBeInCapitals) {
  EXPECT_EQ(fetched("HTTP" + server.address("http", "plain").substr(4)), "plain body");
}

TEST_F(Web, CertificateOfAnotherHostIsRefused) { EXPECT_EQ(fetched("wrong_host", "plain"), std::nullopt); }

TEST_F(Web, CertificateOfAnUnknownAuthorityIsRefused) { EXPECT_EQ(fetched("unknown", "plain"), std::nullopt); }

TEST_F(Web, TheSystemsAuthoritiesDoNotKnowTheTests) {
  platform::linux_::LinuxWeb strict(library);
  EXPECT_FALSE(strict.fetch(server.address("https", "plain"), kUsual, [](std::span<const std::byte>) {}));
}

TEST_F(Web, ProtocolsBeforeTls12AreRefused) { EXPECT_EQ(fetched("old", "plain"), std::nullopt); }

TEST_F(Web, NobodyThereIsAFailure) { EXPECT_EQ(fetched("closed", "plain"), std::nullopt); }

TEST_F(Web, SilentPeerIsGivenUpAtTheConnectLimit) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(fetched(server.address("mute", ""), {.connect = 200ms, .total = std::nullopt}), std::nullopt);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
}

TEST_F(Web, SilentServerIsGivenUpAtTheTotalLimit) {
  EXPECT_EQ(fetched(server.address("http", "silent"), {.total = 200ms}), std::nullopt);
}

TEST_F(Web, OneByteASecondIsGivenUpAtTheTotalLimit) {
  EXPECT_EQ(fetched(server.address("http", "slow"), {.total = 1500ms}), std::nullopt);
}

TEST_F(Web, OneByteASecondIsGivenUpAtTheLeastSpeed) {
  const platform::FetchLimits limits{.total = std::nullopt, .leastBytesPerSecond = 100, .leastOver = 1s};
  EXPECT_EQ(fetched(server.address("http", "slow"), limits), std::nullopt);
}

TEST_F(Web, ShortBodyIsAFailure) { EXPECT_EQ(fetched("http", "short"), std::nullopt); }

TEST_F(Web, BodyOfTheLargestSizeIsTakenAndOneByteMoreIsNot) {
  EXPECT_EQ(fetched(server.address("http", "plain"), {.largest = 10}), "plain body");
  EXPECT_EQ(fetched(server.address("http", "plain"), {.largest = 9}), std::nullopt);
  EXPECT_EQ(fetched(server.address("http", "compressed"), {.largest = 10}), "plain body");
  EXPECT_EQ(fetched(server.address("http", "compressed"), {.largest = 9}), std::nullopt);
}

TEST_F(Web, CookiesAreNotKept) { EXPECT_EQ(fetched("http", "cookie"), "neither"); }

TEST_F(Web, NamesAndPasswordsOfTheUserAreNotSent) {
  TempFolder home;
  writeFile(home / ".netrc", "machine 127.0.0.1 login me password secret\n");
  const Variable variable("HOME", home.path());
  EXPECT_EQ(fetched("http", "headers-sent"), "neither");
}

/// Each in a process of its own, whose memory is looked at.
class HostileBody : public Web {
 protected:
  struct Outcome {
    std::string end;
    std::size_t taken = 0;
    long grownKib = 0;
    long milliseconds = 0;
  };
  [[nodiscard]] Outcome probe(const std::string& name, const std::string& path, const std::string& largest,
                              int limit = 60000) const {
    const Ended ended = runShell(quoted(ZELVO_SERVICE_PROBE) + " fetch " + quoted(server.address(name, path)) + " " +
                                 quoted(server.authority()) + " " + largest + " " + std::to_string(limit));
    EXPECT_EQ(ended.status, 0) << ended.output;
    Outcome outcome;
    std::istringstream(ended.output) >> outcome.end >> outcome.taken >> outcome.grownKib >> outcome.milliseconds;
    return outcome;
  }
  static constexpr long kMaxKib = 16L * 1024;
};

TEST_F(HostileBody, IsRefusedBeyondTheLargestSizeInLittleMemory) {
  for (const char* name : {"http", "https"}) {
    for (const char* path : {"huge", "huge-chunks", "bomb"}) {
      const Outcome outcome = probe(name, path, "65536");
      EXPECT_EQ(outcome.end, "failed") << path;
      EXPECT_LE(outcome.taken, kLargest) << path;
      EXPECT_LT(outcome.grownKib, kMaxKib) << name << ' ' << path;
    }
  }
}

TEST_F(HostileBody, OfOneGibIsTakenWholeInLittleMemoryWhenThereIsNoLargestSize) {
  const Outcome outcome = probe("http", "huge", "-", 240000);
  EXPECT_EQ(outcome.end, "whole");
  EXPECT_EQ(outcome.taken, std::size_t{1} << 30U);
  EXPECT_LT(outcome.grownKib, kMaxKib);
}

TEST_F(HostileBody, OfSixtyFourMibInSixtyFourKibIsOpenedInLittleMemory) {
  const Outcome outcome = probe("https", "bomb", "-");
  EXPECT_EQ(outcome.end, "whole");
  EXPECT_EQ(outcome.taken, std::size_t{64} << 20U);
  EXPECT_LT(outcome.grownKib, kMaxKib);
}

TEST_F(HostileBody, HeadersWithoutEndAreGivenUpInLittleMemory) {
  for (const char* path : {"headers", "long-header"}) {
    const Outcome outcome = probe("http", path, "65536", 20000);
    EXPECT_EQ(outcome.end, "failed") << path;
    EXPECT_LT(outcome.grownKib, kMaxKib) << path;
  }
}

TEST_F(HostileBody, OfARedirectIsPassedOverInLittleMemory) {
  EXPECT_LT(probe("http", "huge-redirect", "65536", 20000).grownKib, kMaxKib);
}

TEST_F(Web, DeadNameServerIsNotWaitedForBeyondTheLimit) {
  const std::string reason = whyNoNamespaces("-Urnm");
  if (!reason.empty()) GTEST_SKIP() << reason;
  TempFolder temp;
  writeFile(temp / "resolv.conf", "nameserver 127.0.0.1\noptions timeout:10 attempts:1\n");
  writeFile(temp / "nsswitch.conf", "hosts: files dns\n");
  // It takes the questions and answers none.
  writeFile(temp / "mute.py",
            "import socket, subprocess, sys\n"
            "taker = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)\n"
            "taker.bind(('127.0.0.1', 53))\n"
            "sys.exit(subprocess.call(sys.argv[1:]))\n");
  const std::string commands =
      "ip link set lo up; cd " + quoted(temp.path()) +
      "; mount --bind resolv.conf /etc/resolv.conf; mount --bind nsswitch.conf /etc/nsswitch.conf; python3 mute.py " +
      quoted(ZELVO_SERVICE_PROBE) + " fetch http://nobody.example/ - 65536 1000";
  const Ended ended = runShell("unshare -Urnm sh -ec " + quoted(commands));
  ASSERT_EQ(ended.status, 0) << ended.output;
  std::string end;
  long taken = 0;
  long grown = 0;
  long milliseconds = 0;
  std::istringstream(ended.output) >> end >> taken >> grown >> milliseconds;
  EXPECT_EQ(end, "failed");
  EXPECT_GE(milliseconds, 900);
  EXPECT_LT(milliseconds, 8000);
}

/// The check itself over a real connection.
class VersionCheckOverTheWeb : public Web {
 protected:
  [[nodiscard]] bool findsAnother(const std::string& address) {
    UpdateBench bench;
    bench.putOwnList(UpdateBench::listOf({{"cloudPlistUrl", address}, {"CFBundleShortVersionString", "2.0"}}));
    update::VersionCheck check(bench.reachability, bench.bundle, bench.files, web, bench.lists);
    return check.checkForUpdate();
  }
};

TEST_F(VersionCheckOverTheWeb, PublishedListIsFetchedAndRead) {
  EXPECT_TRUE(findsAnother(server.address("http", "list")));
  EXPECT_TRUE(findsAnother(server.address("https", "list")));
}

TEST_F(VersionCheckOverTheWeb, WhateverElseComesIsNoUpdate) {
  for (const char* path : {"404", "loop", "short", "huge", "huge-chunks", "bomb", "plain", "empty", "deep-list"}) {
    EXPECT_FALSE(findsAnother(server.address("http", path))) << path;
  }
  for (const char* name : {"wrong_host", "unknown", "old", "closed"}) {
    EXPECT_FALSE(findsAnother(server.address(name, "list"))) << name;
  }
}

TEST_F(Web, ResourceIsHashedAsItComes) {
  platform::linux_::LinuxDigest digest;
  platform::linux_::LinuxFiles files;
  update::Hashes hashes(digest, files, web);
  EXPECT_EQ(hashes.hashString(server.address("https", "bomb")), "7f614da9329cd3aebf59b91aadc30bf0");
  EXPECT_EQ(hashes.hashString(server.address("http", "a b")), hashes.md5(bytesOf("escaped")));
  EXPECT_EQ(hashes.hashString(server.address("http", "404")), std::nullopt);
  EXPECT_EQ(hashes.hashString(server.address("http", "short")), std::nullopt);
}

}  // namespace
}  // namespace zelvo::tests
