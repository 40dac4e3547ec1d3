#pragma once

#include <QObject>
#include <filesystem>

class QLineEdit;

namespace vlclientui::viewer {

/// While it lives, the export window that opens proposes its file in this folder in place of the library's
/// own. A name that a person has typed stays.
class FolderProposal : public QObject {
 public:
  /// @param folder native; an empty one, or one that is gone, proposes nothing.
  explicit FolderProposal(std::filesystem::path folder);
  ~FolderProposal() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void propose(QLineEdit& line) const;

  std::filesystem::path folder_;
};

}  // namespace vlclientui::viewer
