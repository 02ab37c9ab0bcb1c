#include "app/desktop_panels.h"

#include <utility>

#include <QFile>
#include <QFileDialog>
#include <QWindow>

#include "platform/desktop/qt/window_focus.h"

namespace tolvane {

namespace {

/// The mode in which existing files, or one folder, are chosen.
QFileDialog* dialogFor(QFileDialog::FileMode mode, const char* title) {
  auto* const dialog = new QFileDialog(nullptr, title);
  dialog->setFileMode(mode);
  dialog->setOption(QFileDialog::ShowDirsOnly, mode == QFileDialog::Directory);
  dialog->setWindowFlag(Qt::WindowStaysOnTopHint);
  return dialog;
}

std::vector<Panels::Path> chosenIn(const QFileDialog& dialog) {
  std::vector<Panels::Path> paths;
  for (const QString& file : dialog.selectedFiles()) {
    paths.emplace_back(QFile::encodeName(file).toStdString());
  }
  return paths;
}

}  // namespace

void DesktopPanels::DeleteLater::operator()(QFileDialog* dialog) const {
  dialog->deleteLater();
}

DesktopPanels::DesktopPanels(QWindow& palette, XServer& server)
    : palette_(palette), server_(server) {}

DesktopPanels::~DesktopPanels() {
  if (open_) {
    open_->disconnect();
  }
}

void DesktopPanels::chooseFiles(std::function<void(std::optional<std::vector<Path>>)> closed) {
  show(Dialog(dialogFor(QFileDialog::ExistingFiles, "Choose Files")), std::move(closed));
}

void DesktopPanels::chooseFolder(std::function<void(std::optional<Path>)> closed) {
  show(Dialog(dialogFor(QFileDialog::Directory, "Choose Folder")),
       [closed = std::move(closed)](const std::optional<std::vector<Path>>& folders) {
         closed(folders && !folders->empty() ? std::optional(folders->front()) : std::nullopt);
       });
}

void DesktopPanels::show(Dialog dialog, Closed closed) {
  waiting_.push_back(std::move(closed));
  if (!open_) {
    open_ = std::move(dialog);
    QObject::connect(open_.get(), &QFileDialog::finished, [this](int result) { finished(result); });
    open_->winId();  // makes its window, which is to stand above the palette
    open_->windowHandle()->setTransientParent(&palette_);
    open_->show();
  }
  WindowFocus::showInFront(*open_->windowHandle(), server_, WindowFocus::Workspaces::current);
}

void DesktopPanels::finished(int result) {
  const Dialog panel = std::move(open_);
  std::optional<std::vector<Path>> chosen;
  if (result == QFileDialog::Accepted) {
    chosen = chosenIn(*panel);
  }
  for (const Closed& closed : std::exchange(waiting_, {})) {
    closed(std::exchange(chosen, std::nullopt));
  }
}

}  // namespace tolvane
