#include "controls/image_button.h"

namespace zelvo::controls {

namespace {

constexpr platform::Size kImageSize{18, 18};

}  // namespace

void ImageButton::awakeFromNib() { base().setHighlightsBy(platform::kHighlightNone); }

void ImageButton::setImageNormal(platform::Image* imageNormal, platform::Image* Hover) {
  imageNormal_ = imageNormal;
  imageHover_ = Hover;
  host().setNeedsDisplay();
}

void ImageButton::drawLook(platform::Canvas& canvas) {
  platform::Image* const image = hovering() ? imageHover_ : imageNormal_;
  if (image == nullptr) return;
  image->setSize(kImageSize);
  canvas.drawImage(*image, host().bounds(), platform::kWholeImage, platform::CompositeOperation::sourceOver, 1.0);
}

}  // namespace zelvo::controls
