/// Compares the version of this application with the published one.
#pragma once

#include <cstddef>
#include <optional>

#include "platform/bundle.h"
#include "platform/files.h"
#include "platform/property_lists.h"
#include "platform/property_value.h"
#include "platform/reachability.h"
#include "platform/web.h"

namespace zelvo::update {

/// Thread: any.
class VersionCheck {
 public:
  /// The application's own list is read up to this size, in bytes.
  static constexpr std::size_t kLargestOwnList = std::size_t{1024} * 1024;

  VersionCheck(platform::Reachability& reachability, const platform::Bundle& bundle, platform::Files& files,
               platform::Web& web, platform::PropertyLists& lists);

  /// True when a published version was found and is not the same text as that of this application.
  /// Deliberate: no ordering; an older published version counts as newer too.
  /// Blocks until the published list is there or given up. Failure: false, whatever failed, and nothing is told.
  [[nodiscard]] bool checkForUpdate();
  /// True when the zero address is reachable and needs no connection first. Failure: false.
  [[nodiscard]] bool isInternetAvailable();
  /// True when the application's own list names an address to ask.
  [[nodiscard]] bool hasAddress();

 private:
  [[nodiscard]] std::optional<platform::PropertyDictionary> ownList();
  [[nodiscard]] std::optional<platform::PropertyDictionary> publishedList(const std::string& address);

  platform::Reachability& reachability_;
  const platform::Bundle& bundle_;
  platform::Files& files_;
  platform::Web& web_;
  platform::PropertyLists& lists_;
};

}  // namespace zelvo::update
