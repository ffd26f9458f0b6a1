/// Pictures of few colours in a folder of the test's own, whose pixels can be told beforehand. They are 16 points wide
/// and high: "halves" has two colours beside each other, each of the others one.
#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <QtGlobal>
#include <memory>
#include <string>

#include "platform/qt/drawing/pictures.h"

namespace zelvo::tests {

class DrawnPictures {
 public:
  static constexpr QRgb kLeft = 0xffc83200;
  static constexpr QRgb kRight = 0xff0032c8;
  static constexpr QRgb kHome1 = 0xff102030;
  static constexpr QRgb kHelp1 = 0xff405060;
  static constexpr QRgb kHelp2 = 0xff708090;

  DrawnPictures() {
    write("halves", "<rect width='8' height='16' fill='#c83200'/><rect x='8' width='8' height='16' fill='#0032c8'/>");
    write("home-1", "<rect width='16' height='16' fill='#102030'/>");
    write("help-1", "<rect width='16' height='16' fill='#405060'/>");
    write("help-2", "<rect width='16' height='16' fill='#708090'/>");
  }

  [[nodiscard]] platform::qt::Pictures& all() const { return pictures_; }
  [[nodiscard]] std::unique_ptr<platform::qt::QtImage> image(const char* name) const { return pictures_.image(name); }

 private:
  void write(const char* name, const char* shapes) const {
    QFile file(folder_.filePath(QString::fromLatin1(name) + QStringLiteral(".svg")));
    if (!file.open(QIODevice::WriteOnly)) return;
    file.write("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16' width='16' height='16'>");
    file.write(shapes);
    file.write("</svg>");
  }

  QTemporaryDir folder_;
  mutable platform::qt::Pictures pictures_{folder_.path().toStdString()};
};

}  // namespace zelvo::tests
