#!/usr/bin/env python3
"""Writes descriptions of storage devices for umockdev, one file per piece of hardware.

Usage: make_devices.py FOLDER

No two files share an ancestor, so that any of them can be plugged into one machine: umockdev ends the program when the
same device is described twice.
"""
import os
import sys

written = set()


class Hardware:
    """One file: devices with the ancestors above them, each described once."""

    def __init__(self, name):
        self.name = name
        self.parts = []
        self.paths = set()

    def device(self, path, subsystem, kind=None, node=None, properties=None, attributes=None, driver=None):
        assert path not in self.paths, path
        self.paths.add(path)
        lines = [f"P: {path}"]
        if node:
            lines.append(f"N: {node}")
            lines.append(f"E: DEVNAME=/dev/{node}")
        lines.append(f"E: SUBSYSTEM={subsystem}")
        if kind:
            lines.append(f"E: DEVTYPE={kind}")
        lines += [f"E: {key}={value}" for key, value in (properties or {}).items()]
        lines += [f"A: {name}={value}\\n" for name, value in (attributes or {}).items()]
        if driver:
            lines.append(f"L: driver=../../../bus/{subsystem}/drivers/{driver}")
        self.parts.append("\n".join(lines) + "\n")
        return path

    def disk(self, parent, node, number, sectors, properties=None, attributes=None):
        values = {"dev": "%d:%d" % number, "size": sectors, "ro": 0, "removable": 0, "hidden": 0}
        values["queue/logical_block_size"] = 512
        values.update(attributes or {})
        values = {name: value for name, value in values.items() if value is not None}
        known = {"MAJOR": number[0], "MINOR": number[1], **(properties or {})}
        return self.device(f"{parent}/block/{node}", "block", "disk", node, known, values)

    def partition(self, disk, node, number, place, sectors, scheme=None, kind=None, properties=None, attributes=None):
        known = {"MAJOR": number[0], "MINOR": number[1], "PARTN": place}
        if scheme:
            known.update({"ID_PART_ENTRY_SCHEME": scheme, "ID_PART_ENTRY_TYPE": kind, "ID_PART_ENTRY_NUMBER": place})
        known.update(properties or {})
        values = {"dev": "%d:%d" % number, "size": sectors, "ro": 0, "partition": place, **(attributes or {})}
        return self.device(f"{disk}/{node}", "block", "partition", node, known, values)

    def controller(self, slot, driver):
        bus = self.device(f"/devices/pci0000:{slot}", "pci_bus")
        return self.device(f"{bus}/0000:{slot}:00.0", "pci", properties={"DRIVER": driver}, driver=driver)

    def scsi(self, parent, place, vendor, model, revision, kind=0, **more):
        host = self.device(f"{parent}/host{place}", "scsi", "scsi_host")
        target = self.device(f"{host}/target{place}:0:0", "scsi", "scsi_target")
        attributes = {"vendor": vendor, "model": model, "rev": revision, "type": kind, **more}
        return self.device(f"{target}/{place}:0:0:0", "scsi", "scsi_device", attributes=attributes)

    def usb(self, controller, place):
        hub = self.device(f"{controller}/usb{place}", "usb", "usb_device")
        stick = self.device(f"{hub}/{place}-1", "usb", "usb_device")
        return self.device(f"{stick}/{place}-1:1.0", "usb", "usb_interface")

    def mmc(self, controller, place, kind, **attributes):
        host = self.device(f"{controller}/mmc_host/mmc{place}", "mmc_host")
        return self.device(f"{host}/mmc{place}:0001", "mmc", attributes={"type": kind, **attributes})

    def write(self, folder):
        assert not self.paths & written, self.paths & written
        written.update(self.paths)
        with open(os.path.join(folder, self.name + ".umockdev"), "w", encoding="utf-8") as out:
            out.write("\n".join(self.parts))


EFI = "c12a7328-f81f-11d2-ba4b-00c93ec93b00"
LINUX = "0fc63daf-8483-4772-8e79-3d69d8477de4"
HFS = "48465300-0000-11aa-aa11-00306543ecac"
BASIC = "ebd0a0a2-b9e5-4433-87c0-68b6b72699c7"


def sata():
    """A SATA disk with 4096-byte blocks, a GUID table and the root file system."""
    it = Hardware("sata")
    unit = it.scsi(
        it.device(it.controller("10", "ahci") + "/ata1", "ata_port"), 0, "ATA     ", "Field Disk 5000 ", "1A01"
    )
    disk = it.disk(
        unit,
        "sda",
        (8, 0),
        976773168,
        {
            "ID_BUS": "ata",
            "ID_ATA": 1,
            "ID_ATA_SATA": 1,
            "ID_MODEL": "Field_Disk_5000_500GB",
            "ID_MODEL_ENC": "Field\\x20Disk\\x205000\\x20500GB\\x20\\x20\\x20\\x20",
            "ID_REVISION": "1A01",
            "ID_SERIAL_SHORT": "FD5-000123",
            "ID_PART_TABLE_TYPE": "gpt",
        },
        {"diskseq": 1, "queue/logical_block_size": 4096},
    )
    it.partition(disk, "sda1", (8, 1), 1, 1048576, "gpt", EFI)
    it.partition(disk, "sda2", (8, 2), 2, 800000000, "gpt", LINUX, {"ID_FS_LABEL_ENC": "Root\\x20Disk"})
    it.partition(disk, "sda3", (8, 3), 3, 100000000, "gpt", HFS)
    it.partition(disk, "sda4", (8, 4), 4, 70000000, "gpt", BASIC)
    return it


def stick():
    """A USB stick with a DOS table."""
    it = Hardware("stick")
    unit = it.scsi(it.usb(it.controller("11", "xhci_hcd"), 1), 6, "Pocket  ", "Pen Drive 3.0   ", "PMAP")
    disk = it.disk(
        unit,
        "sdb",
        (8, 16),
        30277632,
        {
            "ID_BUS": "usb",
            "ID_MODEL": "Pen_Drive_3.0",
            "ID_MODEL_ENC": "Pen\\x20Drive\\x203.0\\x20\\x20\\x20",
            "ID_VENDOR": "Pocket",
            "ID_VENDOR_ENC": "Pocket\\x20\\x20",
            "ID_REVISION": "PMAP",
            "ID_SERIAL_SHORT": "60A44C3FAC04",
            "ID_PART_TABLE_TYPE": "dos",
        },
        {"diskseq": 5, "removable": 1},
    )
    it.partition(disk, "sdb1", (8, 17), 1, 30275584, "dos", "0xc")
    return it


def enclosure():
    """A SATA disk in a USB enclosure: described as an ATA disk, too."""
    it = Hardware("enclosure")
    unit = it.scsi(it.usb(it.controller("12", "xhci_hcd"), 2), 7, "Shell   ", "Case SATA       ", "0")
    it.disk(
        unit,
        "sdc",
        (8, 32),
        1953525168,
        {
            "ID_BUS": "ata",
            "ID_ATA": 1,
            "ID_ATA_SATA": 1,
            "ID_MODEL": "Field_Disk_1T",
            "ID_MODEL_ENC": "Field\\x20Disk\\x201T\\x20\\x20",
            "ID_SERIAL_SHORT": "FD1T-9",
        },
        {"diskseq": 6},
    )
    return it


def reader():
    """A USB card reader without a card."""
    it = Hardware("reader")
    unit = it.scsi(it.usb(it.controller("13", "xhci_hcd"), 3), 8, "Generic-", "SD/MMC          ", "1.00")
    it.disk(unit, "sdd", (8, 48), 0, {"ID_BUS": "usb", "ID_MODEL": "SD_MMC"}, {"diskseq": 7, "removable": 1})
    return it


def card_whole():
    """An SD card without partitions."""
    it = Hardware("card_whole")
    unit = it.mmc(
        it.controller("14", "sdhci-pci"),
        0,
        "SD",
        name="SU08G",
        serial="0x1a2b3c4d",
        manfid="0x000003",
        hwrev="0x8",
        fwrev="0x0",
    )
    it.disk(unit, "mmcblk0", (179, 0), 15523840, {"ID_NAME": "SU08G", "ID_SERIAL": "0x1a2b3c4d"}, {"diskseq": 8})
    return it


def card_partitioned():
    """An SD card with one partition."""
    it = Hardware("card_partitioned")
    unit = it.mmc(
        it.controller("15", "sdhci-pci"),
        1,
        "SD",
        name="SC16G",
        serial="0x55555555",
        manfid="0x000003",
        hwrev="0x8",
        fwrev="0x0",
    )
    disk = it.disk(unit, "mmcblk1", (179, 32), 31116288, {"ID_NAME": "SC16G"}, {"diskseq": 9})
    it.partition(disk, "mmcblk1p1", (179, 33), 1, 31108096, "dos", "0x0b")
    return it


def emmc():
    """Soldered flash with its two boot areas, which are read-only."""
    it = Hardware("emmc")
    unit = it.mmc(it.controller("16", "sdhci-pci"), 2, "MMC", name="DF4032", serial="0x01020304", manfid="0x000045")
    disk = it.disk(unit, "mmcblk2", (179, 64), 61071360, {"ID_NAME": "DF4032"}, {"diskseq": 10})
    it.partition(disk, "mmcblk2p1", (179, 65), 1, 61069312, "gpt", LINUX)
    it.disk(unit, "mmcblk2boot0", (179, 96), 8192, {}, {"diskseq": 11, "ro": 1})
    it.disk(unit, "mmcblk2boot1", (179, 128), 8192, {}, {"diskseq": 12, "ro": 1})
    return it


def nvme():
    """An NVMe disk, and a path to it that the kernel hides."""
    it = Hardware("nvme")
    unit = it.device(
        it.controller("17", "nvme") + "/nvme/nvme0",
        "nvme",
        attributes={
            "model": "Rapid SSD 1TB                           ",
            "serial": "RS1-777             ",
            "firmware_rev": "5B2Q    ",
        },
    )
    disk = it.device(
        f"{unit}/nvme0n1",
        "block",
        "disk",
        "nvme0n1",
        {"MAJOR": 259, "MINOR": 0},
        {
            "dev": "259:0",
            "size": 2000409264,
            "ro": 0,
            "removable": 0,
            "hidden": 0,
            "diskseq": 2,
            "queue/logical_block_size": 512,
        },
    )
    it.partition(disk, "nvme0n1p1", (259, 1), 1, 2000407216, "gpt", BASIC)
    it.device(f"{unit}/nvme0c0n1", "block", "disk", None, {}, {"size": 2000409264, "ro": 0, "hidden": 1})
    return it


def firewire():
    """A FireWire disk with an Apple partition map."""
    it = Hardware("firewire")
    node = it.device(it.controller("18", "firewire_ohci") + "/fw1", "firewire")
    unit = it.scsi(it.device(node + "/fw1.0", "firewire"), 9, "Wire    ", "Fire Disk       ", "0100")
    disk = it.disk(unit, "sde", (8, 64), 312581808, {"ID_PART_TABLE_TYPE": "mac"}, {"diskseq": 13})
    it.partition(disk, "sde3", (8, 67), 3, 312319568, "mac", "Apple_HFSX")
    it.partition(disk, "sde4", (8, 68), 4, 4096, "mac", "Apple_HFS")
    return it


def disc():
    """A data CD in a SATA drive."""
    it = Hardware("disc")
    unit = it.scsi(
        it.device(it.controller("19", "ahci") + "/ata2", "ata_port"), 1, "Round   ", "DVD-RW 24       ", "1.0", kind=5
    )
    it.disk(
        unit,
        "sr0",
        (11, 0),
        1435648,
        {"ID_CDROM": 1, "ID_CDROM_MEDIA": 1, "ID_CDROM_MEDIA_CD": 1},
        {"diskseq": 3, "removable": 1, "queue/logical_block_size": 512},
    )
    return it


def dvd_ram():
    """A DVD-RAM in a SATA drive."""
    it = Hardware("dvd_ram")
    unit = it.scsi(
        it.device(it.controller("1a", "ahci") + "/ata3", "ata_port"), 2, "Round   ", "DVD-RAM 24      ", "1.0", kind=5
    )
    it.disk(unit, "sr1", (11, 1), 8946816, {"ID_CDROM": 1, "ID_CDROM_MEDIA_DVD_RAM": 1}, {"diskseq": 4, "removable": 1})
    return it


def plain_scsi():
    """A SCSI disk that no daemon has described."""
    it = Hardware("plain_scsi")
    unit = it.scsi(it.controller("1b", "aic7xxx"), 3, "Array   ", "Volume 1        ", "2.0")
    it.disk(unit, "sdf", (8, 80), 143374744, {}, {"diskseq": 14})
    return it


def undescribed_ata():
    """A SATA disk that no daemon has described, on a kernel that does not count disks."""
    it = Hardware("undescribed_ata")
    unit = it.scsi(
        it.device(it.controller("1c", "ahci") + "/ata4", "ata_port"), 4, "ATA     ", "Field Disk 5000 ", "1A01"
    )
    disk = it.disk(unit, "sdg", (8, 96), 976773168)
    it.partition(disk, "sdg1", (8, 97), 1, 976771120)
    return it


def pata():
    """A disk on parallel ATA."""
    it = Hardware("pata")
    unit = it.scsi(
        it.device(it.controller("1d", "ata_piix") + "/ata5", "ata_port"), 5, "ATA     ", "Old Disk        ", "1"
    )
    it.disk(unit, "sdh", (8, 112), 78165360, {"ID_ATA": 1, "ID_BUS": "ata"}, {"diskseq": 15})
    return it


def mapper():
    """A device-mapper volume."""
    it = Hardware("mapper")
    it.disk("/devices/virtual", "dm-0", (254, 0), 2097152, {"DM_NAME": "vault"}, {"diskseq": 16, "dm/name": "vault"})
    return it


def memory():
    """What counts as no device: compressed memory, memory disks, and a loop that holds nothing."""
    it = Hardware("memory")
    it.disk("/devices/virtual", "zram0", (253, 0), 8388608, {}, {"diskseq": 17})
    it.disk("/devices/virtual", "ram0", (1, 0), 8192, {}, {"diskseq": 18})
    it.disk("/devices/virtual", "loop7", (7, 7), 0, {}, {"diskseq": 19})
    return it


def loop():
    """A loop that holds an image."""
    it = Hardware("loop")
    it.disk(
        "/devices/virtual", "loop0", (7, 0), 204800, {}, {"diskseq": 20, "loop/backing_file": "/home/user/disk.img"}
    )
    return it


def virtio():
    """The disk of a virtual machine."""
    it = Hardware("virtio")
    unit = it.device(it.controller("1e", "virtio-pci") + "/virtio1", "virtio")
    disk = it.disk(unit, "vda", (252, 0), 41943040, {}, {"diskseq": 21, "serial": "vm-disk-1"})
    it.partition(disk, "vda1", (252, 1), 1, 41940992, "dos", "0x83")
    return it


def nvme_shared():
    """An NVMe disk that is reached over several controllers: it stands below none of them."""
    it = Hardware("nvme_shared")
    unit = it.device(
        "/devices/virtual/nvme-subsystem/nvme-subsys5",
        "nvme-subsystem",
        attributes={"model": "Shared SSD 2TB", "serial": "SH2-1", "firmware_rev": "9Z"},
    )
    it.device(
        f"{unit}/nvme5n1",
        "block",
        "disk",
        "nvme5n1",
        {"MAJOR": 259, "MINOR": 50},
        {
            "dev": "259:50",
            "size": 4000797360,
            "ro": 0,
            "removable": 0,
            "hidden": 0,
            "diskseq": 22,
            "queue/logical_block_size": 512,
        },
    )
    return it


def firewire_by_number():
    """A FireWire disk that is known by the number that the bus gave its unit."""
    it = Hardware("firewire_by_number")
    unit = it.scsi(
        it.controller("22", "firewire_ohci"),
        10,
        "Wire    ",
        "Fire Disk 2     ",
        "0200",
        ieee1394_id="0011223344556677:000001:0000",
    )
    it.disk(unit, "sdi", (8, 128), 312581808, {}, {"diskseq": 23})
    return it


def virtio_scsi():
    """The disk of a virtual machine after a SCSI layer."""
    it = Hardware("virtio_scsi")
    bus = it.device(it.controller("23", "virtio-pci") + "/virtio2", "virtio")
    it.disk(it.scsi(bus, 11, "QEMU    ", "QEMU HARDDISK   ", "2.5+"), "sdj", (8, 144), 41943040, {}, {"diskseq": 24})
    return it


def going():
    """Disks that have gone away but for what was read of them first: each lacks another attribute."""
    it = Hardware("going")
    controller = it.controller("20", "mpt3sas")
    for place, missing in enumerate(("queue/logical_block_size", "ro", "removable", "size")):
        unit = it.scsi(controller, 200 + place, "Array   ", "Volume          ", "2.0")
        disk = it.disk(
            unit, f"sdy{place}", (65, 200 + place * 8), 143374744, {}, {"diskseq": 200 + place, missing: None}
        )
        it.partition(disk, f"sdy{place}p1", (65, 201 + place * 8), 1, 143372696, "gpt", LINUX)
    return it


def going_partitions():
    """A disk whose partitions have gone away but for what was read of them first."""
    it = Hardware("going_partitions")
    unit = it.scsi(it.controller("21", "mpt3sas"), 300, "Array   ", "Volume          ", "2.0")
    disk = it.disk(unit, "sdx", (66, 0), 143374744, {}, {"diskseq": 300})
    for place, missing in enumerate(("partition", "ro", "size")):
        values = {"dev": "66:%d" % (place + 1), "size": 4096, "ro": 0, "partition": place + 1}
        del values[missing]
        it.device(
            f"{disk}/sdx{place + 1}", "block", "partition", f"sdx{place + 1}", {"MAJOR": 66, "MINOR": place + 1}, values
        )
    return it


def twenty():
    """Twenty more disks."""
    it = Hardware("twenty")
    controller = it.controller("1f", "mpt3sas")
    for place in range(20):
        unit = it.scsi(controller, 100 + place, "Array   ", "Volume          ", "2.0")
        disk = it.disk(unit, f"sdz{place}", (65, place * 8), 143374744, {}, {"diskseq": 100 + place})
        it.partition(disk, f"sdz{place}p1", (65, place * 8 + 1), 1, 143372696, "gpt", LINUX)
    return it


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    for make in (
        sata,
        stick,
        enclosure,
        reader,
        card_whole,
        card_partitioned,
        emmc,
        nvme,
        firewire,
        disc,
        dvd_ram,
        plain_scsi,
        undescribed_ata,
        pata,
        mapper,
        memory,
        loop,
        virtio,
        nvme_shared,
        firewire_by_number,
        virtio_scsi,
        going,
        going_partitions,
        twenty,
    ):
        make().write(folder)


if __name__ == "__main__":
    main()
