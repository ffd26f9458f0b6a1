/// Points, sizes and rectangles. Units are points, which are logical pixels: a display of a higher scale shows one with
/// several of its own. x grows to the right and y downward, from the upper left corner of what is spoken of.
#pragma once

namespace zelvo::platform {

struct Point {
  double x = 0;
  double y = 0;
  [[nodiscard]] bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  [[nodiscard]] bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  [[nodiscard]] bool operator==(const Rect&) const = default;
};

/// `rect` made smaller by `dx` on its left and right and by `dy` above and below. One that is too small for that gets a
/// negative width or height.
[[nodiscard]] constexpr Rect insetRect(const Rect& rect, double dx, double dy) {
  return {rect.x + dx, rect.y + dy, rect.width - 2 * dx, rect.height - 2 * dy};
}

/// Whether `point` lies inside. The left and upper edges belong to the rectangle, the right and lower ones do not.
[[nodiscard]] constexpr bool pointInRect(const Point& point, const Rect& rect) {
  return point.x >= rect.x && point.x < rect.x + rect.width && point.y >= rect.y && point.y < rect.y + rect.height;
}

}  // namespace zelvo::platform
