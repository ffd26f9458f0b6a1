/// Where the application's fixed paths lie on this system. The logic keeps its paths and addresses below
/// "/Applications" as they are written; whoever uses one maps it first, to the same place below a prefix. Only
/// constants of the program can be mapped, never a path of the user's: the types see to that while compiling.
/// Decision: install, Fixed paths are typed and mapped
#pragma once

#include <string>
#include <string_view>

namespace zelvo::platform {

namespace fixed_path {
inline constexpr std::string_view kRoot = "/Applications";
inline constexpr std::string_view kFileScheme = "file://";
constexpr bool liesBelowRoot(std::string_view path) {
  return path.starts_with(kRoot) && (path.size() == kRoot.size() || path[kRoot.size()] == '/');
}
void notBelowRoot();  // never defined: calling it while compiling is the error message
}  // namespace fixed_path

/// A path of ours: "/Applications" or one below it.
class FixedPath {
 public:
  consteval FixedPath(const char* text) : text_(text) {  // NOLINT: stands for a literal
    if (!fixed_path::liesBelowRoot(text_)) fixed_path::notBelowRoot();
  }
  [[nodiscard]] constexpr std::string_view text() const { return text_; }
  [[nodiscard]] bool operator==(const FixedPath&) const = default;

 private:
  std::string_view text_;
};

/// An address of ours: "file:///Applications" or one below it, percent-encoded.
class FixedUrl {
 public:
  consteval FixedUrl(const char* text) : text_(text) {  // NOLINT: stands for a literal
    if (!text_.starts_with(fixed_path::kFileScheme) ||
        !fixed_path::liesBelowRoot(text_.substr(fixed_path::kFileScheme.size()))) {
      fixed_path::notBelowRoot();
    }
  }
  [[nodiscard]] constexpr std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

/// Thread: any.
class PathMapper {
 public:
  /// Leaves everything as it is.
  PathMapper() = default;
  /// Maps "/Applications" to PREFIX/zelvo/avi-repair/Applications.
  explicit PathMapper(std::string_view prefix);

  [[nodiscard]] std::string mapped(FixedPath path) const;
  [[nodiscard]] std::string mapped(FixedUrl url) const;

 private:
  std::string above_;  ///< what comes before "/Applications"
};

}  // namespace zelvo::platform
