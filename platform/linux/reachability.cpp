// One question of flags:
// 1. Ask the kernel for the route to the address; for the zero address, to one that stands for "somewhere outside".
// 2. No way there: no flag is set. A way: the address is reachable.
// 3. Ask for the state of the interface that the way leaves by; without a carrier it must be connected first.
#include "platform/linux/reachability.h"

#include <arpa/inet.h>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace zelvo::platform::linux_ {

namespace {

/// An address of documentation: no network of anyone's has it, so the way to it is the way to the outside. The kernel
/// answers for the zero address itself as if it were this machine's own.
constexpr std::array<std::uint8_t, 4> kSomewhereOutside = {203, 0, 113, 1};

struct Close {
  void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
};
using Socket = std::unique_ptr<mnl_socket, Close>;

Socket openSocket() {
  Socket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
  if (!socket || mnl_socket_bind(socket.get(), 0, MNL_SOCKET_AUTOPID) < 0) return nullptr;
  // The kernel answers at once; whatever keeps it from that must not keep the application.
  constexpr timeval kPatience{.tv_sec = 1, .tv_usec = 0};
  ::setsockopt(mnl_socket_get_fd(socket.get()), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  return socket;
}

/// What came back on one request.
struct Answer {
  enum class Kind { message, refused, none };
  Kind kind = Kind::none;
  std::vector<char> bytes;  ///< begins with the message
  [[nodiscard]] const nlmsghdr* message() const {
    return static_cast<const nlmsghdr*>(static_cast<const void*>(bytes.data()));
  }
};

Answer ask(mnl_socket* socket, nlmsghdr* request) {
  request->nlmsg_seq = 1;
  if (mnl_socket_sendto(socket, request, request->nlmsg_len) < 0) return {};
  Answer answer;
  answer.bytes.resize(static_cast<std::size_t>(MNL_SOCKET_BUFFER_SIZE));
  const ssize_t received = mnl_socket_recvfrom(socket, answer.bytes.data(), answer.bytes.size());
  if (received < 0 || mnl_nlmsg_ok(answer.message(), static_cast<int>(received)) == 0) return {};
  if (answer.message()->nlmsg_type != NLMSG_ERROR) {
    answer.kind = Answer::Kind::message;
    return answer;
  }
  const auto* error = static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(answer.message()));
  const bool noWay = error->error == -ENETUNREACH || error->error == -EHOSTUNREACH || error->error == -EINVAL ||
                     error->error == -EACCES;
  answer.kind = noWay ? Answer::Kind::refused : Answer::Kind::none;
  return answer;
}

int takeInterface(const nlattr* attribute, void* interface) {
  if (mnl_attr_get_type(attribute) == RTA_OIF) *static_cast<std::uint32_t*>(interface) = mnl_attr_get_u32(attribute);
  return MNL_CB_OK;
}

Answer askForRoute(mnl_socket* socket, const std::array<std::uint8_t, 4>& address) {
  std::array<char, 256> buffer{};
  nlmsghdr* request = mnl_nlmsg_put_header(buffer.data());
  request->nlmsg_type = RTM_GETROUTE;
  request->nlmsg_flags = NLM_F_REQUEST;
  auto* route = static_cast<rtmsg*>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)));
  route->rtm_family = AF_INET;
  route->rtm_dst_len = 32;
  mnl_attr_put(request, RTA_DST, address.size(), address.data());
  return ask(socket, request);
}

/// True when the interface is up and has its carrier; also when it cannot be told, since the kernel gave the route.
bool isRunning(mnl_socket* socket, std::uint32_t interface) {
  std::array<char, 256> buffer{};
  nlmsghdr* request = mnl_nlmsg_put_header(buffer.data());
  request->nlmsg_type = RTM_GETLINK;
  request->nlmsg_flags = NLM_F_REQUEST;
  auto* link = static_cast<ifinfomsg*>(mnl_nlmsg_put_extra_header(request, sizeof(ifinfomsg)));
  link->ifi_family = AF_UNSPEC;
  link->ifi_index = static_cast<int>(interface);
  const Answer answer = ask(socket, request);
  if (answer.kind != Answer::Kind::message || answer.message()->nlmsg_type != RTM_NEWLINK) return true;
  constexpr unsigned kRunning = IFF_RUNNING | IFF_LOWER_UP;
  return (static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(answer.message()))->ifi_flags & kRunning) == kRunning;
}

class RouteReference final : public ReachabilityReference {
 public:
  explicit RouteReference(const std::array<std::uint8_t, 4>& address) : address_(address) {}

  std::optional<std::uint32_t> flags() override {
    const Socket socket = openSocket();
    if (!socket) return std::nullopt;
    const Answer answer = askForRoute(socket.get(), address_);
    if (answer.kind == Answer::Kind::none) return std::nullopt;
    if (answer.kind == Answer::Kind::refused) return 0;
    if (answer.message()->nlmsg_type != RTM_NEWROUTE) return std::nullopt;
    const auto* route = static_cast<const rtmsg*>(mnl_nlmsg_get_payload(answer.message()));
    if (route->rtm_type != RTN_UNICAST && route->rtm_type != RTN_LOCAL) return 0;
    std::uint32_t interface = 0;
    mnl_attr_parse(answer.message(), sizeof(rtmsg), &takeInterface, &interface);
    if (interface != 0 && !isRunning(socket.get(), interface)) return kReachable | kConnectionRequired;
    return kReachable;
  }

 private:
  std::array<std::uint8_t, 4> address_;
};

}  // namespace

std::unique_ptr<ReachabilityReference> LinuxReachability::createWithAddress(const SocketAddress& address) {
  if (address.length != kSocketAddressLength || address.family != kFamilyInternet) return nullptr;
  constexpr std::array<std::uint8_t, 4> kZero{};
  return std::make_unique<RouteReference>(address.address == kZero ? kSomewhereOutside : address.address);
}

}  // namespace zelvo::platform::linux_
