#include "platform/qt/chooser/places.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <array>

#include "platform/paths.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

std::string bytesOf(const QString& path) { return QFile::encodeName(path).toStdString(); }

/// The table writes blanks and the like as a backslash and three octal digits.
std::string withoutEscapes(std::string_view text) {
  constexpr std::size_t kDigits = 3;
  const auto isOctal = [](char one) { return one >= '0' && one <= '7'; };
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view digits = text.substr(std::min(at + 1, text.size()), kDigits);
    if (text[at] == '\\' && digits.size() == kDigits && std::all_of(digits.begin(), digits.end(), isOctal)) {
      plain += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
      at += kDigits;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

std::string_view field(std::string_view line, int number) {
  for (int skipped = 0; skipped < number; ++skipped) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) return {};
    line.remove_prefix(blank + 1);
  }
  return line.substr(0, line.find(' '));
}

}  // namespace

std::vector<std::string> attachedDisks(std::string_view mountTable) {
  constexpr std::array<std::string_view, 3> kRoots = {"/media/", "/run/media/", "/mnt/"};
  std::vector<std::string> all;
  while (!mountTable.empty()) {
    const std::size_t end = std::min(mountTable.find('\n'), mountTable.size());
    std::string point = withoutEscapes(field(mountTable.substr(0, end), 1));
    mountTable.remove_prefix(std::min(end + 1, mountTable.size()));
    const bool isAttached =
        std::any_of(kRoots.begin(), kRoots.end(), [&](auto root) { return point.starts_with(root); });
    if (isAttached && std::find(all.begin(), all.end(), point) == all.end()) all.push_back(std::move(point));
  }
  return all;
}

std::vector<Place> places() {
  using Kind = QStandardPaths::StandardLocation;
  const std::string home = bytesOf(QDir::homePath());
  std::vector<Place> all = {{texts::placeHome(), home}};
  const std::array<std::pair<Kind, QString>, 4> usual = {{{Kind::MoviesLocation, texts::placeVideos()},
                                                          {Kind::DownloadLocation, texts::placeDownloads()},
                                                          {Kind::DesktopLocation, texts::placeDesktop()},
                                                          {Kind::DocumentsLocation, texts::placeDocuments()}}};
  for (const auto& [kind, name] : usual) {
    const QString folder = QStandardPaths::writableLocation(kind);
    if (!folder.isEmpty() && bytesOf(folder) != home && QDir(folder).exists()) all.push_back({name, bytesOf(folder)});
  }
  QFile table(QStringLiteral("/proc/self/mounts"));
  if (table.open(QIODevice::ReadOnly)) {
    for (const std::string& disk : attachedDisks(table.readAll().toStdString())) {
      all.push_back({QFile::decodeName(QByteArray::fromStdString(nameOf(disk))), disk, true});
    }
  }
  all.push_back({texts::placeComputer(), "/", true});
  return all;
}

std::string videosOrHome() {
  const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
  if (!videos.isEmpty() && QDir(videos).exists()) return bytesOf(videos);
  return bytesOf(QDir::homePath());
}

}  // namespace zelvo::platform::qt
