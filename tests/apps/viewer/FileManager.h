#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

namespace vlclientui::test {

/// A fake in place of the desktop's file manager: remembers what it was asked to open.
class FileManager : public QObject {
  Q_OBJECT

 public:
  FileManager() { QDesktopServices::setUrlHandler("file", this, "open"); }
  ~FileManager() override { QDesktopServices::unsetUrlHandler("file"); }

  QUrl opened;

 public slots:
  void open(const QUrl& url) { opened = url; }
};

}  // namespace vlclientui::test
