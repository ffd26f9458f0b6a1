/// The window's part of the deep repair without a display: every element under its outlet's name.
#pragma once

#include "platform/headless/deep_elements.h"
#include "platform/headless/elements.h"

namespace zelvo::platform::headless {

class DeepScreen {
 public:
  DeepScreen() = default;
  DeepScreen(const DeepScreen&) = delete;
  DeepScreen& operator=(const DeepScreen&) = delete;

  HeadlessDeepPages pages;
  HeadlessButton deeprepairbutton{"deeprepairbutton", nullptr};
  HeadlessButton addfilmsbutton{"addfilmsbutton", nullptr};
  HeadlessDeepOffer refusedoffer;
  HeadlessButton refusedofferbutton{"refusedofferbutton", nullptr};
  HeadlessDeepOffer partlyoffer;
  HeadlessButton partlyofferbutton{"partlyofferbutton", nullptr};
  HeadlessTextField runpathlabel{"runpathlabel", nullptr};
  HeadlessDeepProgress runprogress;
  HeadlessButton runstopbutton{"runstopbutton", nullptr};
  HeadlessButton runhome{"runhome", nullptr};
  HeadlessDeepResult result;
  HeadlessMovieView movieview{"movieview", nullptr};
  HeadlessButton savebutton{"savebutton", nullptr};
  HeadlessButton copyreportbutton{"copyreportbutton", nullptr};
  HeadlessButton comparebutton{"comparebutton", nullptr};
  HeadlessButton donorbutton{"donorbutton", nullptr};
  HeadlessButton resulthome{"resulthome", nullptr};
  HeadlessQueue queue;
  HeadlessTextField queuefoldertext{"queuefoldertext", nullptr};
  HeadlessButton queuefolderbutton{"queuefolderbutton", nullptr};
  HeadlessButton queueaddbutton{"queueaddbutton", nullptr};
  HeadlessButton queuestartbutton{"queuestartbutton", nullptr};
  HeadlessButton queuestopbutton{"queuestopbutton", nullptr};
  HeadlessButton queuehome{"queuehome", nullptr};
  HeadlessWindow mainWindow{"mainWindow", nullptr};
  HeadlessWindow savepanel{"savepanel", nullptr};
  HeadlessProgressBar saveprogressbar{"saveprogressbar", nullptr};
  HeadlessTextField savebytestext{"savebytestext", nullptr};
  HeadlessButton savestopbutton{"savestopbutton", nullptr};

  DeepOutlets outlets{
      .pages = pages,
      .deeprepairbutton = deeprepairbutton,
      .addfilmsbutton = addfilmsbutton,
      .refusedoffer = refusedoffer,
      .refusedofferbutton = refusedofferbutton,
      .partlyoffer = partlyoffer,
      .partlyofferbutton = partlyofferbutton,
      .runpathlabel = runpathlabel,
      .runprogress = runprogress,
      .runstopbutton = runstopbutton,
      .runhome = runhome,
      .result = result,
      .movieview = movieview,
      .savebutton = savebutton,
      .copyreportbutton = copyreportbutton,
      .comparebutton = comparebutton,
      .donorbutton = donorbutton,
      .resulthome = resulthome,
      .queue = queue,
      .queuefoldertext = queuefoldertext,
      .queuefolderbutton = queuefolderbutton,
      .queueaddbutton = queueaddbutton,
      .queuestartbutton = queuestartbutton,
      .queuestopbutton = queuestopbutton,
      .queuehome = queuehome,
      .mainWindow = mainWindow,
      .savepanel = savepanel,
      .saveprogressbar = saveprogressbar,
      .savebytestext = savebytestext,
      .savestopbutton = savestopbutton,
  };
};

}  // namespace zelvo::platform::headless
