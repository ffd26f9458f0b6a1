#include "cli/drives_command.h"

#include "cli/commands.h"

#include <span>

#include "cli/drives_text.h"
#include "cli/environment.h"
#include "cli/output_place.h"
#include "cli/shown_text.h"
#include "platform/paths.h"
#include "storage/drive_inventory.h"
#include "storage/system_record.h"

namespace zelvo::cli {

namespace {

/// Keeps what is printed, unless nobody wants it.
class Details final : public platform::PrintSink {
 public:
  Details(std::string& kept, bool wanted) : kept_(kept), wanted_(wanted) {}
  void print(std::string_view text) override {
    if (wanted_) kept_ += text;
  }
  [[nodiscard]] bool isRead() const override { return wanted_; }

 private:
  std::string& kept_;
  bool wanted_;
};

/// Sentences about what could not be read at all. The walk itself goes on without a word, with an empty list.
/// Decision: inventory, No list is an error, an empty one is not
void reportFailures(platform::MediaRegistry& registry, platform::VolumeSource& volumes, DrivesAnswer& answer) {
  const auto matching = registry.serviceMatching("IOMedia");
  std::unique_ptr<platform::RegistryIterator> media;
  const auto status = registry.matchingServices(matching ? &*matching : nullptr, media);
  if (status != platform::kRegistrySuccess) {
    answer.errors.push_back("the system's disks could not be listed (status " + shownHex(status, 8) +
                            "); is /sys mounted?");
  }
  if (const std::error_code error = volumes.mountTableError()) {
    answer.errors.push_back("the mounted volumes could not be listed: " + error.message() + ".");
  }
  if (!answer.errors.empty()) answer.exit = Exit::ioFailed;
}

void noteFreeSpace(const VolumeView& volume, DrivesAnswer& answer) {
  const std::error_code error = volume.space.error;
  if (!error) return;
  if (error == std::errc::timed_out) {
    answer.notes.push_back("what is mounted at " + printable(volume.mountPoint) + " is not answering.");
    return;
  }
  const std::string where = "the free space at " + printable(volume.mountPoint);
  answer.notes.push_back(error == std::errc::permission_denied
                             ? where + " can be told to root only."
                             : where + " could not be read: " + error.message() + ".");
}

// NOLINTNEXTLINE(misc-no-recursion): disks and their partitions
void noteFreeSpaces(const std::vector<DriveView>& drives, DrivesAnswer& answer) {
  for (const DriveView& drive : drives) {
    for (const VolumeView& volume : drive.volumes) noteFreeSpace(volume, answer);
    noteFreeSpaces(drive.partitions, answer);
  }
}

class DrivesCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"--json", "print one JSON object instead of a table", &options_.json},
        {"--tree", "show disks over their partitions and volumes", &options_.tree},
        {"--verbose", "show on standard error what the system tells about each device", &options_.verbose},
        {"--record", "write down what the system tells into FILE, serial numbers included (- for standard output)",
         &record_, "FILE"},
    };
  }

  std::optional<std::string> misuse() const override {
    if (options_.json && options_.tree) return "--json and --tree do not go together.";
    if (record_ && (options_.json || options_.tree)) return "--record goes with neither --json nor --tree.";
    return std::nullopt;
  }

  Exit run(Environment& environment) override {
    const StorageView storage = environment.lookAtStorage();
    if (record_) return record(environment, storage);
    const DrivesAnswer answer = listDrives(options_, *storage.media, *storage.volumes);
    print(environment.console, answer);
    environment.console.result(answer.result);
    for (const std::string& sentence : answer.notes) environment.console.note("Note: " + sentence);
    return answer.exit;
  }

 private:
  static void print(Console& console, const DrivesAnswer& answer) {
    noteLines(console, answer.details);
    for (const std::string& sentence : answer.errors) console.error(sentence);
  }

  static void noteLines(Console& console, std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      console.note(text.substr(0, end));
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
  }

  /// What could not be listed is an error here, too; the record says the same.
  [[nodiscard]] Exit record(Environment& environment, const StorageView& storage) const {
    const DrivesAnswer answer = listDrives(options_, *storage.media, *storage.volumes);
    print(environment.console, answer);
    return worse(answer.exit, writeRecord(environment, storage));
  }

  [[nodiscard]] Exit writeRecord(Environment& environment, const StorageView& storage) const {
    const std::string text =
        environment.propertyLists.format(storage::recordedSystem(*storage.media, *storage.volumes));
    if (*record_ == "-") return environment.console.result(text) ? Exit::done : Exit::ioFailed;
    platform::Relaxed<std::uint64_t> written;
    HiddenFile hidden(environment.fileManager, environment.newFiles, written);
    std::error_code error = hidden.create(platform::folderOf(*record_));
    if (!error) error = hidden.file()->writeAt(0, std::as_bytes(std::span(text))).error;
    if (!error) error = hidden.flushAndClose();
    if (error) {
      environment.console.error(printable(*record_) + " could not be written: " + error.message() + ".");
      return Exit::ioFailed;
    }
    error = hidden.renameTo(OutputChoice{*record_});
    if (!error) return Exit::done;
    environment.console.error(error == std::errc::file_exists
                                  ? printable(*record_) + " exists already and was left as it is; name another file."
                                  : printable(*record_) + " cannot be given its name: " + error.message() + ".");
    return Exit::ioFailed;
  }

  DrivesOptions options_;
  std::optional<std::string> record_;
};

}  // namespace

DrivesAnswer listDrives(const DrivesOptions& options, platform::MediaRegistry& registry,
                        platform::VolumeSource& volumes) {
  DrivesAnswer answer;
  reportFailures(registry, volumes, answer);
  storage::Entries responseFindMedia;
  storage::Entries finalArrayForVolumes;
  Details details(answer.details, options.verbose);
  storage::initialDriveList(registry, volumes, responseFindMedia, finalArrayForVolumes, details);
  if (options.json) {
    answer.result = drivesJson(responseFindMedia, finalArrayForVolumes, registry, volumes);
    return answer;
  }
  const InventoryView view = inventoryView(responseFindMedia, finalArrayForVolumes, registry, volumes);
  answer.result = options.tree ? drivesTree(view) : drivesTable(view);
  noteFreeSpaces(view.drives, answer);
  for (const OtherVolumeView& other : view.others) noteFreeSpace(other.volume, answer);
  if (view.readOnlyVolumes > 0) {
    answer.notes.push_back(counted(view.readOnlyVolumes, "read-only volume") +
                           (view.readOnlyVolumes == 1 ? " is" : " are") + " not shown; --json lists all volumes.");
  }
  return answer;
}

std::unique_ptr<Command> makeDrivesCommand() { return std::make_unique<DrivesCommand>(); }

}  // namespace zelvo::cli
