#include "app/desktop_results.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tolvane {

void DesktopResults::copyText(const std::string& text) {
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

}  // namespace tolvane
