/// The block devices of this machine as libudev tells about them. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform::linux_ {

/// How a disk is connected, by what stands above it.
enum class Connection { sata, ata, usb, fireWire, card, embeddedCard, nvme, scsi, virtualDevice };

/// What a whole disk tells about itself; a text that it does not tell is empty. Padding is kept.
struct DiskTexts {
  std::string model;
  std::string serial;
  std::string revision;
  std::string vendor;           ///< with the next two: what a SCSI, USB or FireWire device answers to an inquiry,
  std::string product;          ///< or a card's register holds
  std::string productRevision;  ///< of a card: its hardware revision
};

/// A whole disk or a partition.
struct BlockDevice {
  std::string systemName;          ///< "sda2"
  std::string node;                ///< "/dev/sda2"
  std::vector<std::string> links;  ///< other nodes that lead to it
  std::uint64_t number = 0;        ///< the kernel's device number (major and minor)
  std::uint64_t size = 0;
  std::uint64_t blockSize = 512;
  bool writable = false;
  bool removable = false;
  std::string fileSystemLabel;

  std::string wholeDisk;        ///< system name of the disk of a partition; empty for a whole disk
  std::uint64_t partition = 0;  ///< its number, from 1; 0 for a whole disk
  std::string scheme;           ///< of the partition table that the partition stands in: "gpt", "dos", "mac"
  std::string partitionType;    ///< as that table has it

  std::uint64_t sequence = 0;  ///< of a whole disk: the kernel's count of disks when it came; 0 when not known
  Connection connection = Connection::virtualDevice;
  DiskTexts texts;
  std::string busPath;    ///< the controller, within the system's tree of devices; may be empty
  std::string busDriver;  ///< that controller's driver; may be empty

  std::string bsdName;  ///< given by `giveBsdNames`
};

/// Reads all block devices that hold something: no memory disks, no empty drives, no hidden paths. No root is needed.
/// A device that goes away while it is read is left out.
/// \param folder where the system lists its block devices; that it can be listed is all that is looked at there
/// Failure: `error` says why, and no device is answered.
/// Thread: any.
[[nodiscard]] std::vector<BlockDevice> readBlockDevices(const std::string& folder, std::error_code& error);

/// Numbers the whole disks "disk0", "disk1", ... in the order in which they came (by device number where the kernel
/// does not count them), and names partition 2 of disk 1 "disk1s2". A partition whose disk is not among them is
/// dropped.
void giveBsdNames(std::vector<BlockDevice>& devices);  // Decision: inventory, Disks are named disk0, disk0s1

/// Text with each \xNN as the byte that it stands for.
[[nodiscard]] std::string decodedUdevText(const std::string& encoded);

}  // namespace zelvo::platform::linux_
