#include "tests/platform/qt/deep_samples.h"

namespace zelvo::tests {

using platform::DamageMark;
using platform::DamagePaint;
using platform::DeepVerdict;
using platform::QueuedFilm;

platform::DeepResult partialResult() {
  platform::DeepResult result{.film = "MVI_0042.AVI",
                              .verdict = DeepVerdict::partial,
                              .sentence = "Most of the film is back; 14 seconds of it are lost.",
                              .lines = {},
                              .picture = {}};
  result.lines = {{"Video", "Motion JPEG, 640x360, 25 pictures a second: 14,650 of 15,000 pictures"},
                  {"Sound", "MP3, 44.1 kHz, stereo: 9 min 51 s of 10 min"},
                  {"Header", "the film's own"},
                  {"Index", "made anew"}};
  platform::DamagePicture& picture = result.picture;
  picture.losses = {{"0:41 to 0:43: 50 pictures lost, the sound goes on", 41},
                    {"2:13 to 2:15: 50 pictures and 2 s of sound lost", 133},
                    {"3:02: a piece of another film, left out", 182},
                    {"5:10 to 5:19: 225 pictures and 9 s of sound lost: the file could not be read there", 310},
                    {"7:30: 12 pictures put right", 450},
                    {"9:58 to 10:00: 25 pictures lost at the end, where the file is cut off", 598}};
  const auto mark = [](double begin, double end, DamagePaint paint, std::size_t loss = DamageMark::kNoLoss) {
    return DamageMark{begin, end, paint, loss};
  };
  picture.bars = {
      {"The damaged file",
       "734.0 MB",
       734,
       false,
       {mark(0, 6, DamagePaint::header), mark(50, 53, DamagePaint::lost, 0), mark(160, 164, DamagePaint::lost, 1),
        mark(220, 231, DamagePaint::foreign, 2), mark(290, 296, DamagePaint::doubled),
        mark(378, 390, DamagePaint::lost, 3), mark(545, 552, DamagePaint::mended, 4), mark(600, 606, DamagePaint::hurt),
        mark(722, 728, DamagePaint::lost, 5), mark(728, 734, DamagePaint::index)}},
      {"Video",
       "10:00.00",
       600,
       true,
       {mark(41, 43, DamagePaint::lost, 0), mark(133, 135, DamagePaint::lost, 1), mark(310, 319, DamagePaint::lost, 3),
        mark(450, 450.5, DamagePaint::mended, 4), mark(598, 600, DamagePaint::lost, 5)}},
      {"Sound", "10:00.00", 600, true, {mark(133, 135, DamagePaint::lost, 1), mark(310, 319, DamagePaint::lost, 3)}}};
  return result;
}

platform::DeepResult hopelessResult() {
  return {.film = "holiday at the lake (copy from the old card, second try).avi",
          .verdict = DeepVerdict::hopeless,
          .sentence = "Nothing could be brought back: the file holds no pictures and no sound.",
          .lines = {{"Header", "lost"}},
          .picture = {}};
}

platform::DeepResult cleanResult() {
  platform::DeepResult result = partialResult();
  result.verdict = DeepVerdict::clean;
  result.sentence = "Nothing was wrong with this film.";
  result.lines[0].words = "Motion JPEG, 640x360, 25 pictures a second: all 15,000 pictures";
  result.lines[1].words = "MP3, 44.1 kHz, stereo: all 10 min";
  result.lines[3].words = "the film's own";
  result.picture.losses.clear();
  for (platform::DamageBar& bar : result.picture.bars) bar.marks.clear();
  return result;
}

platform::DeepComparison sampleComparison() {
  return {.sentence = "The deep repair keeps 1,350 pictures more than the normal one.",
          .rows = {{"Pictures", "13,300", "14,650"},
                   {"Sound", "8 min 58 s", "9 min 51 s"},
                   {"Pictures and sound in step", "no", "yes"}}};
}

std::vector<QueuedFilm> sampleQueue() {
  const auto film = [](const char* path, QueuedFilm::State state) {
    return QueuedFilm{.path = path, .state = state, .verdict = {}, .words = {}, .share = {}};
  };
  std::vector<QueuedFilm> films = {
      film("/media/card/DCIM/MVI_0040.AVI", QueuedFilm::State::done),
      film("/media/card/DCIM/MVI_0041.AVI", QueuedFilm::State::done),
      film("/media/card/DCIM/2019-06-22 wedding of Anna and Paul, second part, dance and cake.avi",
           QueuedFilm::State::done),
      film("/media/card/DCIM/MVI_0043.AVI", QueuedFilm::State::done),
      film("/media/card/DCIM/MVI_0044.AVI", QueuedFilm::State::failed),
      film("/media/card/DCIM/MVI_0045.AVI", QueuedFilm::State::working),
      film("/media/card/DCIM/MVI_0046.AVI", QueuedFilm::State::stopped),
      film("/media/card/DCIM/MVI_0047.AVI", QueuedFilm::State::waiting)};
  films[0].verdict = DeepVerdict::clean;
  films[1].verdict = DeepVerdict::repaired;
  films[2].verdict = DeepVerdict::partial;
  films[2].words = "14 seconds are lost";
  films[3].verdict = DeepVerdict::hopeless;
  films[4].words = "The file could not be read: Input/output error";
  films[5].words = "Looking at every byte";
  films[5].share = 0.38;
  return films;
}

}  // namespace zelvo::tests
