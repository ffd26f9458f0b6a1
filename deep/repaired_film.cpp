#include "deep/repaired_film.h"

#include <algorithm>
#include <span>

#include "deep/result_words.h"
#include "deep/texts.h"
#include "platform/paths.h"
#include "platform/shown_text.h"
#include "salvage/report_json.h"

namespace zelvo::deep {

namespace {

constexpr std::string_view kReport = "report.json";
constexpr std::string_view kReportPage = "report.html";
/// A report of as many stretches of damage as are told is a tenth of that.
constexpr std::uint64_t kMaxText = std::uint64_t{64} << 20U;

bool lacksHeader(const salvage::SalvageReport& report) {
  return report.streamsWithoutHeader > 0 || std::ranges::any_of(report.streams, [](const auto& stream) {
           return stream.origin == salvage::HeaderOrigin::synthesised;
         });
}

/// Why a repair failed. Where a look tells it, in the user's language: the program's own sentence is English.
std::string causeOfFailure(const DeepServices& services, const RepairOrder& order, const std::string& told) {
  const platform::Translator& translator = services.translator;
  const std::string folder = platform::folderOf(order.output);
  if (!services.pathProbe.answers({order.input, folder})) return translator.translated(texts::kNotAnswering);
  const auto input = services.fileManager.attributesFollowingLinks(order.input);
  if (!input) {
    return platform::filled(translator.translated(texts::kFilmGone), {platform::nameOf(order.input)});
  }
  const auto free = services.fileManager.freeSpace(folder);
  if (free && *free < input->size) {
    return platform::filled(translator.translated(texts::kNoRoom), {platform::shownSize(input->size, translator),
                                                                    platform::shownSize(*free, translator), folder});
  }
  return told.empty() ? told : platform::filled(translator.translated(texts::kReason), {told});
}

}  // namespace

std::vector<std::string> repairArguments(const RepairOrder& order) {
  std::vector<std::string> arguments = {"salvage",
                                        "-o",
                                        order.output,
                                        "--report",
                                        platform::pathIn(order.folder, kReport),
                                        "--report",
                                        reportPage(order.folder)};
  if (order.donor) arguments.insert(arguments.end(), {"--donor", *order.donor});
  arguments.insert(arguments.end(), {"--", order.input});
  return arguments;
}

std::string reportPage(const std::string& folder) { return platform::pathIn(folder, kReportPage); }

std::optional<std::string> wholeText(platform::Files& files, const std::string& path) {
  const auto opened = files.openForReading(path);
  if (!opened.file) return std::nullopt;
  const std::uint64_t size = opened.file->size();
  if (size > kMaxText) return std::nullopt;
  std::string text(static_cast<std::size_t>(size), '\0');
  const platform::IoResult read = opened.file->readAt(0, std::as_writable_bytes(std::span(text)));
  if (read.error || read.count != text.size()) return std::nullopt;
  return text;
}

std::shared_ptr<const RepairedFilm> repairedFilm(const DeepServices& services, const RepairOrder& order,
                                                 const FilmEnd& end) {
  const auto film = std::make_shared<RepairedFilm>();
  film->order = order;
  film->end = end;
  if (end.kind == FilmEnd::Kind::failed) film->end.reason = causeOfFailure(services, order, end.reason);
  if (!end.isJudged()) return film;
  if (const auto text = wholeText(services.files, platform::pathIn(order.folder, kReport))) {
    film->report = salvage::readReport(*text);
  }
  if (end.kind == FilmEnd::Kind::done) {
    const auto there = services.fileManager.attributes(order.output);
    if (!film->report || !there || there->kind != platform::FileAttributes::Kind::regularFile) {
      film->end.kind = FilmEnd::Kind::failed;
      film->end.reason = services.translator.translated(texts::kResultGone);
      return film;
    }
    film->path = order.output;
    film->size = there->size;
  }
  const std::string name = platform::nameOf(order.input);
  if (film->report) {
    film->lacksHeader = lacksHeader(*film->report);
    film->result = resultOf(*film->report, name, services.translator);
  } else {
    film->result = hopelessResult(name, end.reason, services.translator);
  }
  return film;
}

}  // namespace zelvo::deep
