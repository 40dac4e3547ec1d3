#pragma once

#include <QString>

namespace vlclientui::qgis {

/// While this lives, projects that keep paths relative do so with services that are local files, too.
class ProjectPaths {
 public:
  ProjectPaths();
  ProjectPaths(const ProjectPaths&) = delete;
  ProjectPaths& operator=(const ProjectPaths&) = delete;
  ~ProjectPaths();

 private:
  QString writer_;
  QString reader_;
};

/// The text of a layer's source with its file as seen from a folder, "./" or "../" and more; one without a
/// local file comes back as it is. @param folder absolute.
[[nodiscard]] QString sourceSeenFrom(const QString& folder, const QString& text);
/// The way back.
[[nodiscard]] QString sourceFoundFrom(const QString& folder, const QString& text);

}  // namespace vlclientui::qgis
