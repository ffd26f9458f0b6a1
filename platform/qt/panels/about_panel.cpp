#include "platform/qt/panels/about_panel.h"

#include <QFileInfo>
#include <array>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr QSize kAboutRoom(620, 480);

struct Library {
  const char* name;
  const char* licence;  ///< its name, which no language changes
};

/// In the order of the alphabet.
constexpr std::array kLibraries = {Library{"CLI11", "BSD 3-Clause"},
                                   Library{"FFmpeg (libavcodec, libavformat, libavutil)", "GNU LGPL 2.1+, GNU GPL 2+"},
                                   Library{"libcurl", "curl"},
                                   Library{"libmnl", "GNU LGPL 2.1"},
                                   Library{"libmount", "GNU LGPL 2.1+"},
                                   Library{"libmpv", "GNU GPL 2+"},
                                   Library{"libplist", "GNU LGPL 2.1+"},
                                   Library{"libseccomp", "GNU LGPL 2.1"},
                                   Library{"libudev", "GNU LGPL 2.1+"},
                                   Library{"OpenSSL (libcrypto)", "Apache 2.0"},
                                   Library{"Qt", "GNU LGPL 3"}};

/// Where the system keeps the text of our licence.
constexpr const char* kLicenceFile = "/usr/share/common-licenses/GPL-3";

QString paragraph(const QString& text) { return QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()); }

QString licenceText() {
  QString text = paragraph(texts::aboutLicence());
  const QString file = QString::fromLatin1(kLicenceFile);
  if (QFileInfo::exists(file)) text += paragraph(texts::aboutLicenceIsIn(file));
  text += paragraph(texts::aboutLibraries());
  text += QStringLiteral("<table cellspacing='0' cellpadding='3'>");
  for (const Library& one : kLibraries) {
    text += QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
                .arg(QLatin1String(one.name), QLatin1String(one.licence));
  }
  return text + QStringLiteral("</table>");
}

}  // namespace

void AboutPanel::show() {
  if (isShown()) return;
  close();
  const QString what = texts::aboutWhat();
  const QString message = version_.isEmpty() ? what : texts::aboutVersion(version_) + QLatin1Char('\n') + what;
  auto& frame = *new PanelFrame(stack_, {QStringLiteral("zelvo-avi-repair"), texts::productName(), message});
  frame_ = &frame;
  frame.setStaysOnTop();
  licences_ = new QTextBrowser;
  licences_->setAccessibleName(texts::aboutLicences());
  licences_->setOpenLinks(false);
  licences_->setFont(textFont(kSmallPixels));
  frame.addContent(licences_);
  frame.addButton(texts::close(), PanelFrame::Role::defaultAndCancels).setAction([this](Button&) { close(); });
  frame.setRoom(kAboutRoom, *licences_);
  stack_.begin(frame);
  licences_->setHtml(licenceText());  // only now is there the width by which its lines are broken
}

void AboutPanel::close() {
  PanelFrame* const frame = frame_;
  frame_ = nullptr;
  licences_ = nullptr;
  if (frame == nullptr) return;
  stack_.orderOut(*frame);
  frame->deleteLater();  // a button of it may be what closed it
}

}  // namespace zelvo::platform::qt
