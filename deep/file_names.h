/// Names and addresses of files. Thread: any.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::deep {

/// "clip.avi" gives "clip-salvaged.avi". Only the endings of AVI films are taken off; a name that would be too long for
/// a folder is cut short.
[[nodiscard]] std::string salvagedName(std::string_view filmName);

/// The same name with ".html" in the place of its ending.
[[nodiscard]] std::string reportName(std::string_view filmName);

/// "clip.avi" gives "clip-2.avi".
[[nodiscard]] std::string numberedName(std::string_view name, int number);

/// A whole path as an address: "file:///films/a%20b.avi".
[[nodiscard]] std::string fileUrl(std::string_view path);

}  // namespace zelvo::deep
