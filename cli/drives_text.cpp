#include "cli/drives_text.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "cli/json_writer.h"
#include "cli/shown_text.h"
#include "storage/device_name.h"

namespace zelvo::cli {

namespace {

using platform::PropertyDictionary;
using platform::PropertyValue;

enum Column : std::size_t { device, kind, model, serial, size, free, volume, mountedAt, columns };
using Row = std::array<std::string, columns>;

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string orDash(const std::string& text) { return text.empty() ? "-" : printable(text); }

/// As `shownSize`, and "1.00 TB" where that would count thousands of GB.
std::string shownDiskSize(std::uint64_t bytes) {
  constexpr std::uint64_t kFirstOfTheTerabytes = 999'995'000'000;  // below it rounding stays below 1000.00 GB
  if (bytes < kFirstOfTheTerabytes) return shownSize(bytes);
  return fixedPoint(static_cast<double>(bytes) / 1e12, 2) + " TB";
}

std::string shownFree(const platform::VolumeSpace& space) {
  return space.error ? shownSpaceError(space.error) : shownDiskSize(space.free);
}

void fillVolume(Row& row, const VolumeView& view) {
  row[free] = shownFree(view.space);
  row[volume] = orDash(view.name);
  row[mountedAt] = printable(view.mountPoint) + (view.readOnly ? "  (read-only)" : "");
}

void addDrive(std::vector<Row>& rows, const DriveView& drive, bool belowItsDisk) {
  Row row;
  row[device] = (belowItsDisk ? "  " : "") + orDash(drive.device);
  if (!belowItsDisk) {
    row[kind] = orDash(drive.kind);
    row[model] = orDash(drive.model);
    row[serial] = orDash(drive.serial);
  }
  row[size] = drive.size ? shownDiskSize(*drive.size) : "-";
  for (const VolumeView& view : drive.volumes) {
    fillVolume(row, view);
    rows.push_back(std::move(row));
    row = {};
  }
  if (drive.volumes.empty()) rows.push_back(std::move(row));
  for (const DriveView& partition : drive.partitions) addDrive(rows, partition, true);
}

std::string laidOut(const std::vector<Row>& rows) {
  std::array<std::size_t, columns> widths{};
  for (const Row& row : rows) {
    for (std::size_t at = 0; at < columns; ++at) widths[at] = std::max(widths[at], characters(row[at]));
  }
  std::string text;
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t at = 0; at < columns; ++at) {
      const std::string padding(widths[at] - characters(row[at]), ' ');
      const bool toTheRight = at == size || at == free;
      line += toTheRight ? padding + row[at] : row[at] + padding;
      line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

std::string treeVolume(const VolumeView& view) {
  const std::string space = view.space.error ? shownFree(view.space) : shownFree(view.space) + " free";
  const std::string name = view.name.empty() ? "" : "\"" + printable(view.name) + "\" ";
  return name + "at " + printable(view.mountPoint) + (view.readOnly ? ", read-only, " : ", ") + space;
}

std::string treeDrive(const DriveView& drive, bool disk) {
  std::string line = orDash(drive.device);
  if (drive.size) line += "  " + shownDiskSize(*drive.size);
  if (!disk) return line;
  for (const std::string& text : {drive.kind, drive.model}) {
    if (!text.empty() && text != "-") line += "  " + printable(text);
  }
  if (!drive.serial.empty() && drive.serial != "-") line += "  (serial " + printable(drive.serial) + ")";
  return line;
}

void appendChildren(std::string& text, const std::string& indent, const DriveView& drive) {
  std::size_t left = drive.volumes.size() + drive.partitions.size();
  const auto branch = [&](const std::string& line) {
    text += indent + (--left == 0 ? "└─ " : "├─ ") + line + "\n";
    return indent + (left == 0 ? "   " : "│  ");
  };
  for (const VolumeView& view : drive.volumes) branch(treeVolume(view));
  for (const DriveView& partition : drive.partitions) {
    const std::string below = branch(treeDrive(partition, false));
    appendChildren(text, below, partition);
  }
}

void writeDictionary(JsonWriter& json, const PropertyDictionary& dictionary);

void writeValue(JsonWriter& json, const PropertyValue& tree) {
  std::visit(
      [&json](const auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, bool>) {
          json.boolean(value);
        } else if constexpr (std::is_same_v<Value, std::int32_t>) {
          json.integer(value);
        } else if constexpr (std::is_same_v<Value, std::uint64_t>) {
          json.number(value);
        } else if constexpr (std::is_same_v<Value, double>) {
          json.seconds(value);
        } else if constexpr (std::is_same_v<Value, std::string>) {
          json.text(value);
        } else if constexpr (std::is_same_v<Value, platform::PropertyArray>) {
          json.beginArray();
          for (const PropertyValue& item : value) writeValue(json, item);
          json.endArray();
        } else if constexpr (std::is_same_v<Value, PropertyDictionary>) {
          json.beginObject();
          writeDictionary(json, value);
          json.endObject();
        } else {
          json.null();  // data and dates, which no key of an entry has
        }
      },
      tree.value);
}

void writeDictionary(JsonWriter& json, const PropertyDictionary& dictionary) {
  for (const platform::PropertyMember& member : dictionary) {
    json.key(member.key);
    writeValue(json, member.value);
  }
}

void writeVolumeFacts(JsonWriter& json, const storage::Entry& volume, platform::VolumeSource& source) {
  const std::string* path = volume.text(storage::volume_key::kMountedPath);
  const std::string mountPoint = path ? *path : "";
  if (!storage::isUtf8(mountPoint)) json.member("path_hex", storage::hexOf(mountPoint));
  json.member("read only", source.mountFacts(mountPoint).readOnly);
  const platform::VolumeSpace space = source.space(mountPoint);
  if (!space.error) {
    json.member("free space", space.free);
    json.member("capacity", space.capacity);
    return;
  }
  json.key("free space");
  json.null();
  json.key("capacity");
  json.null();
  json.member("space error", shownSpaceError(space.error));
}

}  // namespace

std::string shownSpaceError(const std::error_code& error) {
  if (error == std::errc::permission_denied) return "needs root";
  return error == std::errc::timed_out ? "not answering" : "unknown";
}

std::string drivesTable(const InventoryView& view) {
  if (view.drives.empty() && view.others.empty()) return "No writable disks were found.\n";
  std::vector<Row> rows{{"DEVICE", "KIND", "MODEL", "SERIAL", "SIZE", "FREE", "VOLUME", "MOUNTED AT"}};
  for (const DriveView& drive : view.drives) addDrive(rows, drive, false);
  for (const OtherVolumeView& other : view.others) {
    Row row;
    row[device] = orDash(other.device);
    fillVolume(row, other.volume);
    rows.push_back(std::move(row));
  }
  return laidOut(rows);
}

std::string drivesTree(const InventoryView& view) {
  if (view.drives.empty() && view.others.empty()) return "No writable disks were found.\n";
  std::string text;
  for (const DriveView& drive : view.drives) {
    text += treeDrive(drive, true) + "\n";
    appendChildren(text, "", drive);
  }
  for (const OtherVolumeView& other : view.others) {
    text += orDash(other.device) + "\n└─ " + treeVolume(other.volume) + "\n";
  }
  return text;
}

std::string drivesJson(const storage::Entries& responseFindMedia, const storage::Entries& finalArrayForVolumes,
                       platform::MediaRegistry& registry, platform::VolumeSource& source) {
  const auto connections = connectionsOf(registry);
  JsonWriter json;
  json.beginObject();
  json.member("version", 1U);
  json.member("command", "drives");
  const auto writeEntries = [&](std::string_view name, const storage::Entries& entries, const auto& writeMore) {
    json.key(name);
    json.beginArray();
    for (const storage::Entry& entry : entries) {
      json.beginObject();
      writeDictionary(json, entry);
      if (const auto node = nativeNodeOf(entry, registry, source)) json.member("native node", *node);
      writeMore(entry);
      json.endObject();
    }
    json.endArray();
  };
  writeEntries("responseFindMedia", responseFindMedia, [&](const storage::Entry& medium) {
    const auto found = connections.find(bsdNameOf(medium, source));
    const std::string connection = kindOf(medium, found == connections.end() ? "" : found->second);
    json.key("connection");
    connection.empty() ? json.null() : json.text(connection);
  });
  writeEntries("finalArrayForVolumes", finalArrayForVolumes,
               [&](const storage::Entry& volume) { writeVolumeFacts(json, volume, source); });
  json.endObject();
  return json.take() + "\n";
}

}  // namespace zelvo::cli
