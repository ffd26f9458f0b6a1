#include "storage/partition_content.h"

#include <array>

namespace zelvo::storage {

namespace {

struct Row {
  std::string_view content;
  std::string_view storedAs;
};

// The first row that matches counts.
constexpr std::array<Row, 10> kRows{{
    {"Apple_HFS", "Apple_HFS"},
    {"48465300-0000-11AA-AA11-00306543ECAC", "Apple_HFS"},  // HFS+ in a GUID partition table
    {"Apple_HFSX", "Apple_HFSX"},
    {"FAT32", "FAT32"},
    {"Windows_FAT_32", "FAT32"},
    {"DOS_FAT_32", "DOS_FAT_32"},
    {"FAT16", "FAT16"},
    {"Windows_FAT_16", "FAT16"},
    {"DOS_FAT_16", "DOS_FAT_16"},
    {"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7", "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"},  // basic data
}};

}  // namespace

std::string_view normalisedContent(std::string_view content) {
  for (const Row& row : kRows) {
    if (row.content == content) return row.storedAs;
  }
  return "Volume Content NIL";
}

}  // namespace zelvo::storage
