#include "platform/linux/storage_mounts.h"

#include <libmount/libmount.h>

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <string_view>

#include "platform/linux/c_text.h"

namespace zelvo::platform::linux_ {

namespace {

struct MountUnref {
  void operator()(libmnt_table* table) const { mnt_unref_table(table); }
  void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};

bool isReadOnly(const char* options) { return options && mnt_optstr_get_option(options, "ro", nullptr, nullptr) == 0; }

/// Btrfs tells, as the last option, in which sub-volume the mounted part lies. It is a whole sub-volume when it is that
/// one itself, and a folder or a file of it, mounted once more, when it is not.
bool isWholePart(const Mount& mount, const std::string& options) {
  if (mount.type != "btrfs" || ("," + options).find(",subvol=") == std::string::npos) {
    // What a system calls its root or its home is often a sub-volume; a system that does not tell is believed.
    return mount.root == "/" || mount.type == "btrfs";
  }
  return ("," + options).ends_with(",subvol=" + mount.root);
}

Mount mountFrom(libmnt_fs* line) {
  Mount mount;
  mount.target = textOrEmpty(mnt_fs_get_target(line));
  mount.source = textOrEmpty(mnt_fs_get_source(line));
  mount.type = textOrEmpty(mnt_fs_get_fstype(line));
  mount.root = textOrEmpty(mnt_fs_get_root(line));
  mount.number = mnt_fs_get_devno(line);
  mount.pseudo = mnt_fs_is_pseudofs(line) != 0;
  mount.network = mnt_fs_is_netfs(line) != 0;
  mount.swap = mnt_fs_is_swaparea(line) != 0;
  mount.readOnly = isReadOnly(mnt_fs_get_vfs_options(line)) || isReadOnly(mnt_fs_get_fs_options(line));
  mount.wholePart = isWholePart(mount, textOrEmpty(mnt_fs_get_fs_options(line)));
  return mount;
}

}  // namespace

std::vector<Mount> readMountTable(const std::string& path, std::error_code& error) {
  const std::unique_ptr<libmnt_table, MountUnref> table(mnt_new_table());
  const std::unique_ptr<libmnt_iter, MountUnref> lastFirst(mnt_new_iter(MNT_ITER_BACKWARD));
  if (!table || !lastFirst) {
    error = std::make_error_code(std::errc::not_enough_memory);
    return {};
  }
  if (const int answer = mnt_table_parse_file(table.get(), path.c_str()); answer != 0) {
    error = {answer < 0 ? -answer : EINVAL, std::generic_category()};
    return {};
  }
  std::vector<Mount> mounts;
  std::set<std::string> targets;
  libmnt_fs* line = nullptr;
  while (mnt_table_next_fs(table.get(), lastFirst.get(), &line) == 0) {
    Mount mount = mountFrom(line);
    if (targets.insert(mount.target).second) mounts.push_back(std::move(mount));
  }
  std::ranges::reverse(mounts);
  return mounts;
}

bool mayBeLocalVolume(const Mount& mount) { return !mount.pseudo && !mount.network && !mount.swap && mount.wholePart; }

bool isLocalVolume(const Mount& mount, bool onBlockDevice) {
  // File systems over several devices, to which the kernel gives a made-up number.
  constexpr std::array<std::string_view, 3> kSpanning{"zfs", "btrfs", "bcachefs"};
  if (!mayBeLocalVolume(mount)) return false;
  return onBlockDevice || std::ranges::find(kSpanning, mount.type) != kSpanning.end();
}

}  // namespace zelvo::platform::linux_
