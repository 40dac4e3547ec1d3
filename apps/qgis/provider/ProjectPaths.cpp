#include "qgis/provider/ProjectPaths.h"

#include <QDir>
#include <string>

#include <qgspathresolver.h>
#include <qgsproject.h>

#include "qgis/provider/LayerSource.h"

namespace vlclientui::qgis {
namespace {

const auto scheme = QStringLiteral("VLDef://");

/// The file of a reference, apart from what stands before it.
struct ReferredFile {
  explicit ReferredFile(const std::string& reference) : path(QString::fromStdString(reference)) {
    if (!path.startsWith(scheme, Qt::CaseInsensitive)) return;
    before = path.left(scheme.size());
    path.remove(0, scheme.size());
  }
  [[nodiscard]] bool isRelative() const {
    return path.startsWith(QLatin1String("./")) || path.startsWith(QLatin1String("../"));
  }
  [[nodiscard]] std::string reference() const { return (before + path).toStdString(); }

  QString before;
  QString path;
};

bool isOurs(const QString& text) { return text.startsWith(QLatin1String("reference=")); }

QString withFile(LayerSource source, const ReferredFile& file) {
  source.reference = file.reference();
  return sourceText(source);
}

}  // namespace

QString sourceSeenFrom(const QString& folder, const QString& text) {
  if (!isOurs(text) || folder.isEmpty()) return text;
  const LayerSource source = layerSourceOf(text);
  ReferredFile file(source.reference);
  if (!file.path.startsWith(QLatin1Char('/'))) return text;
  file.path = QDir(folder).relativeFilePath(file.path);
  if (!file.isRelative()) file.path.prepend(QLatin1String("./"));
  return withFile(source, file);
}

QString sourceFoundFrom(const QString& folder, const QString& text) {
  if (!isOurs(text) || folder.isEmpty()) return text;
  const LayerSource source = layerSourceOf(text);
  ReferredFile file(source.reference);
  if (!file.isRelative()) return text;
  file.path = QDir::cleanPath(QDir(folder).filePath(file.path));
  return withFile(source, file);
}

// The project has the name of its file before it reads or writes its layers.
ProjectPaths::ProjectPaths()
    : writer_(QgsPathResolver::setPathWriter([](const QString& text) {
        const QgsProject& project = *QgsProject::instance();
        const bool isRelative = project.filePathStorage() == Qgis::FilePathType::Relative;
        return isRelative ? sourceSeenFrom(project.absolutePath(), text) : text;
      })),
      reader_(QgsPathResolver::setPathPreprocessor([](const QString& text) {
        return sourceFoundFrom(QgsProject::instance()->absolutePath(), text);
      })) {}

ProjectPaths::~ProjectPaths() {
  QgsPathResolver::removePathWriter(writer_);
  QgsPathResolver::removePathPreprocessor(reader_);
}

}  // namespace vlclientui::qgis
