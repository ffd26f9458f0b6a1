// The damage picture of a real run, held against the report as JSON of the same run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>

#include "platform/json_reader.h"
#include "platform/qt/damage/damage_view.h"
#include "salvage/damage_picture.h"
#include "salvage/report_json.h"
#include "tests/support/avi_builder.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using platform::JsonValue;

constexpr std::uint32_t kPictureSize = 9000;
constexpr std::uint32_t kSoundSize = 320;

/// A film with three stretches of zeros, one of foreign bytes, and a wrong size.
std::string damagedFilm() {
  AviBuilder film;
  film.audioRate = 25;  // chunks a second, as of sound of a variable rate
  film.audioBytesPerSecond = 8000;
  platform::Bytes bytes = film.interleaved(60, kPictureSize, kSoundSize).build();
  const auto zero = [&](std::size_t from, std::size_t size) { std::fill_n(&bytes[from], size, std::byte{0}); };
  zero(60'000, 4'000);
  zero(200'000, 30'000);
  zero(420'000, 500);
  for (std::size_t i = 500'000; i < 512'000; ++i) bytes[i] = static_cast<std::byte>(i * i >> 3U);
  overwrite(bytes, AviBuilder().headers().size() + 12 + 4, "M");  // of the size of the first picture
  std::string text;
  for (const std::byte byte : bytes) text += static_cast<char>(byte);
  return text;
}

double numberOf(const JsonValue& object, std::string_view name) {
  const JsonValue* const member = object.member(name);
  return member == nullptr ? -1 : member->number().value_or(-1);
}

std::vector<JsonValue> itemsOf(const JsonValue& object, std::string_view name) {
  const JsonValue* const member = object.member(name);
  return member == nullptr ? std::vector<JsonValue>() : member->items();
}

class ReportedDamage : public testing::Test {
 protected:
  ReportedDamage() {
    const std::string film = folder.put("in.avi", damagedFilm());
    const std::string report = folder / "r.json";
    const int exit =
        QProcess::execute(QStringLiteral(ZELVO_AVI),
                          {QStringLiteral("salvage"), QStringLiteral("--quiet"), QStringLiteral("--dry-run"),
                           QString::fromStdString(film), QStringLiteral("--report"), QString::fromStdString(report)});
    EXPECT_EQ(exit, 0);
    const std::string text = folder.content("r.json");
    if (const auto json = platform::readJson(text)) told = *json->member("report");
    if (const auto read = salvage::readReport(text)) view.show(salvage::damagePicture(*read));
    view.resize(800, view.heightForWidth(800));
  }

  [[nodiscard]] std::vector<std::size_t> lossesAt(std::size_t bar, double share) const {
    const QRectF area = view.barArea(bar);
    return view.lossesAt({area.left() + share * area.width(), area.center().y()});
  }

  TempFolder folder;
  JsonValue told;
  platform::qt::DamageView view;
};

TEST_F(ReportedDamage, EveryLossOfTheReportIsFoundByPointingAtIt) {
  const std::vector<JsonValue> spans = itemsOf(told, "spans");
  const std::vector<JsonValue> streams = itemsOf(told, "streams");
  ASSERT_GE(spans.size(), 4U);
  ASSERT_EQ(view.picture().losses.size(), spans.size());
  ASSERT_EQ(view.picture().bars.size(), streams.size() + 1);
  std::size_t touched = 0;
  for (std::size_t i = 0; i < spans.size(); ++i) {
    const double place = (numberOf(spans[i], "begin") + numberOf(spans[i], "end")) / 2;
    EXPECT_THAT(lossesAt(0, place / numberOf(told, "size")), testing::Contains(i)) << "loss " << i;
    const double time = (numberOf(spans[i], "time_begin") + numberOf(spans[i], "time_end")) / 2;
    EXPECT_NEAR(view.picture().losses[i].seconds, numberOf(spans[i], "time_begin"), 1e-6);
    for (const JsonValue& share : itemsOf(spans[i], "streams")) {
      if (numberOf(share, "gone") + numberOf(share, "hurt") == 0) continue;
      ++touched;
      const auto stream = static_cast<std::size_t>(numberOf(share, "stream"));
      const double seconds = numberOf(*streams.at(stream).member("all"), "seconds");
      EXPECT_THAT(lossesAt(stream + 1, time / seconds), testing::Contains(i)) << "loss " << i << ", stream " << stream;
    }
  }
  EXPECT_GE(touched, 4U);
}

TEST_F(ReportedDamage, WherePointedAtNothingIsLostThereIsNoLoss) {
  const std::vector<JsonValue> spans = itemsOf(told, "spans");
  const double size = numberOf(told, "size");
  constexpr int kPlaces = 200;
  constexpr double kMarkWidth = 8;  // points, around which a narrow mark is met
  int whole = 0;
  for (int i = 0; i < kPlaces; ++i) {
    const double place = size * (i + 0.5) / kPlaces;
    const double reach = kMarkWidth * size / view.barArea(0).width();
    const auto isNear = [&](const JsonValue& span) {
      return numberOf(span, "begin") - reach <= place && place <= numberOf(span, "end") + reach;
    };
    if (std::any_of(spans.begin(), spans.end(), isNear)) continue;
    ++whole;
    EXPECT_THAT(lossesAt(0, place / size), testing::IsEmpty()) << place;
  }
  EXPECT_GT(whole, kPlaces / 2);
}

}  // namespace
}  // namespace zelvo::tests
