#include "tests/update/fakes.h"

#include <algorithm>

namespace zelvo::tests {

namespace {

class FakeReference final : public platform::ReachabilityReference {
 public:
  explicit FakeReference(FakeReachability& owner) : owner_(owner) { ++owner_.liveReferences; }
  ~FakeReference() override { --owner_.liveReferences; }
  FakeReference(const FakeReference&) = delete;
  FakeReference& operator=(const FakeReference&) = delete;
  std::optional<std::uint32_t> flags() override { return owner_.flags; }

 private:
  FakeReachability& owner_;
};

}  // namespace

std::unique_ptr<platform::ReachabilityReference> FakeReachability::createWithAddress(
    const platform::SocketAddress& address) {
  ++asked;
  lastAddress = address;
  if (!makesReferences) return nullptr;
  return std::make_unique<FakeReference>(*this);
}

bool FakeWeb::fetch(const std::string& address, const platform::FetchLimits& limits, const platform::BodySink& sink) {
  asked.push_back(address);
  lastLimits = limits;
  const auto found = bodies.find(address);
  if (found == bodies.end()) return false;
  std::string_view rest = found->second;
  while (!rest.empty()) {
    const std::string_view piece = rest.substr(0, 3);
    sink(std::as_bytes(std::span(piece)));
    rest.remove_prefix(piece.size());
  }
  return !comesShort;
}

std::error_code RecordingTrees::copy(const std::string& from, const std::string& to) {
  events_.add("copy(" + from + " -> " + to + ")");
  if (fails) return std::make_error_code(std::errc::io_error);
  files_.put(to, files_.content(from));
  return {};
}

std::error_code RecordingTrees::remove(const std::string& path) {
  events_.add("remove(" + path + ")");
  if (fails) return std::make_error_code(std::errc::io_error);
  return files_.remove(path);
}

UpdateBench::UpdateBench()
    : updates({.reachability = reachability,
               .web = web,
               .propertyLists = lists,
               .digest = digest,
               .launcher = launcher,
               .alertPanels = alerts,
               .files = files,
               .fileManager = files,
               .folderTrees = trees,
               .workers = workers,
               .clock = clock,
               .bundle = bundle,
               .paths = paths}) {
  putOwnList(listOf({{"cloudPlistUrl", kListAddress}, {"CFBundleShortVersionString", "2.0"}}));
  web.bodies[kListAddress] = listOf({{"CFBundleShortVersionString", "2.0"}});
}

void UpdateBench::putOwnList(const std::string& content) {
  files.put(bundle.path + "/Contents/Info.plist", bytesOf(content));
}

std::string UpdateBench::listOf(const std::map<std::string, std::string>& members) {
  std::string list = "<plist version=\"1.0\"><dict>";
  for (const auto& [key, text] : members) list += "<key>" + key + "</key><string>" + text + "</string>";
  return list + "</dict></plist>";
}

}  // namespace zelvo::tests
