#include "platform/headless/recording_canvas.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::TextAttributes;

class RecordingCanvas : public ::testing::Test {
 protected:
  platform::headless::Events events;
  platform::headless::RecordingCanvas canvas{events};

  static TextAttributes tenPoints(platform::LineBreakMode mode) {
    TextAttributes attributes;
    attributes.font = platform::Font{"system", 10.0};
    attributes.paragraph = platform::ParagraphStyle{mode, platform::TextAlignment::left};
    return attributes;
  }
  std::string drawn(std::string_view text, double width) {
    events.clear();
    canvas.drawInRect(text, {0, 0, width, 12.5}, tenPoints(platform::LineBreakMode::truncatingTail));
    const std::string line = events.lines().at(0);
    return line.substr(0, line.find(';'));
  }
};

TEST_F(RecordingCanvas, MeasuresLettersAndNotBytes) {
  const TextAttributes attributes = tenPoints(platform::LineBreakMode::truncatingTail);

  EXPECT_EQ(canvas.sizeWithAttributes("Stück", attributes), (platform::Size{25, 12.5}));
  EXPECT_EQ(canvas.sizeWithAttributes("", attributes), (platform::Size{0, 12.5}));
}

TEST_F(RecordingCanvas, TextThatJustFitsIsWhole) { EXPECT_EQ(drawn("Repair", 30), "drawInRect(\"Repair\""); }

TEST_F(RecordingCanvas, TextThatDoesNotFitEndsInAnEllipsis) {
  EXPECT_EQ(drawn("Repair", 29), "drawInRect(\"Repa\u2026\"");
  EXPECT_EQ(drawn("äöüäöü", 29), "drawInRect(\"äöüä\u2026\"");
}

TEST_F(RecordingCanvas, WithoutRoomForTheEllipsisNothingCanBeRead) { EXPECT_EQ(drawn("Repair", 4), "drawInRect(\"\""); }

TEST_F(RecordingCanvas, OnlyATruncatingParagraphIsCut) {
  canvas.drawInRect("Repair", {0, 0, 4, 12.5}, tenPoints(platform::LineBreakMode::byWordWrapping));

  EXPECT_EQ(events.lines(), Lines{"drawInRect(\"Repair\"; 0, 0, 4, 12.5; system 10; wrapping; left)"});
}

TEST_F(RecordingCanvas, CountsTheStatesPutAside) {
  canvas.saveState();
  EXPECT_EQ(canvas.savedStates(), 1);

  canvas.restoreState();
  canvas.restoreState();
  EXPECT_EQ(canvas.savedStates(), -1);
}

TEST_F(RecordingCanvas, APartOfAnImageIsWrittenAsItsRectangle) {
  platform::headless::RecordingImage image("home-1");
  image.setSize({18, 18});

  canvas.drawImage(image, {0, 0, 9, 9}, {9, 0, 9, 9}, platform::CompositeOperation::sourceOver, 0.5);

  EXPECT_EQ(events.lines(),
            Lines{"drawImage(home-1 of 18 x 18; 0, 0, 9, 9; from 9, 0, 9, 9; operation 2; fraction 0.5)"});
}

}  // namespace
}  // namespace zelvo::tests
