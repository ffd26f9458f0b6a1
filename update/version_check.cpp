// The check:
// 1. Without a network nothing is read.
// 2. The application's own list says where the published one is.
// 3. The published list is fetched, and both versions are compared.
// Decision: update, The own list is read from its file
#include "update/version_check.h"

#include <string>

#include "platform/bytes.h"
#include "update/places.h"
#include "update/update_paths.h"

namespace zelvo::update {

namespace {

std::optional<platform::PropertyDictionary> dictionaryOf(std::optional<platform::PropertyValue> list) {
  if (!list || list->dictionary() == nullptr) return std::nullopt;
  return *list->dictionary();
}

}  // namespace

VersionCheck::VersionCheck(platform::Reachability& reachability, const platform::Bundle& bundle, platform::Files& files,
                           platform::Web& web, platform::PropertyLists& lists)
    : reachability_(reachability), bundle_(bundle), files_(files), web_(web), lists_(lists) {}

bool VersionCheck::isInternetAvailable() {
  const auto reference =
      reachability_.createWithAddress({.length = platform::kSocketAddressLength, .family = platform::kFamilyInternet});
  if (!reference) return false;
  const auto flags = reference->flags();
  if (!flags) return false;
  return (*flags & platform::kReachable) != 0 && (*flags & platform::kConnectionRequired) == 0;
}

std::optional<platform::PropertyDictionary> VersionCheck::ownList() {
  const auto opened = files_.openForReading(bundle_.bundlePath() + std::string(paths::kOwnList));
  if (!opened.file) return std::nullopt;
  const std::uint64_t size = opened.file->size();
  if (size > kLargestOwnList) return std::nullopt;
  platform::Bytes bytes(static_cast<std::size_t>(size));
  if (opened.file->readAt(0, bytes).count != bytes.size()) return std::nullopt;
  return dictionaryOf(lists_.parse(bytes, kLargestOwnList));
}

std::optional<platform::PropertyDictionary> VersionCheck::publishedList(const std::string& address) {
  constexpr std::size_t kLargest = platform::PropertyLists::kLargestFromOutside;
  platform::Bytes bytes;
  const bool fetched =
      web_.fetch(withSpacesEscaped(address), {.largest = kLargest}, [&bytes](std::span<const std::byte> piece) {
        if (bytes.size() + piece.size() <= kLargest) bytes.insert(bytes.end(), piece.begin(), piece.end());
      });
  if (!fetched) return std::nullopt;
  return dictionaryOf(lists_.parse(bytes, kLargest));
}

bool VersionCheck::hasAddress() {
  const auto own = ownList();
  const std::string* const address = own ? own->text(paths::kCloudPlistUrlKey) : nullptr;
  return address != nullptr && !address->empty();
}

bool VersionCheck::checkForUpdate() {
  if (!isInternetAvailable()) return false;
  const auto own = ownList();
  if (!own) return false;
  const std::string* address = own->text(paths::kCloudPlistUrlKey);
  if (address == nullptr) return false;
  const auto published = publishedList(*address);
  if (!published) return false;
  const std::string* publishedVersion = published->text(paths::kVersionKey);
  const std::string* ownVersion = own->text(paths::kVersionKey);
  return publishedVersion != nullptr && ownVersion != nullptr && *publishedVersion != *ownVersion;
}

}  // namespace zelvo::update
