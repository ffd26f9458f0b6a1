/// The kinds of partitions that the inventory tells apart.
#pragma once

#include <string_view>

namespace zelvo::storage {

/// The name under which a partition's "Content" is stored; compared exactly, the case of letters included. Whatever the
/// table does not list is "Volume Content NIL".
[[nodiscard]] std::string_view normalisedContent(std::string_view content);

}  // namespace zelvo::storage
