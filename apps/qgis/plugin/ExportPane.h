#pragma once

#include <QDockWidget>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "export/ExportDialog.h"
#include "qgis/provider/LayerSource.h"
#include "viewer/export/ExportServices.h"
#include "viewer/waiting/Errand.h"

class QLabel;
class QPushButton;
class QStackedWidget;

namespace vlclientui::qgis {

/// The content of the export window as a pane beside the map, for the layer that is picked. The service is
/// opened on another thread while the pane is open, and closed with it.
class ExportPane : public QDockWidget {
  Q_OBJECT

 public:
  struct Subject {
    LayerSource source;
    QString title;
    bool operator==(const Subject&) const = default;
  };
  /// Offered beside the service's own extents; the last one is proposed.
  using Places = std::function<std::vector<host::NamedPlace>()>;

  ExportPane(host::ComposedHost host, Places places, QWidget* parent);
  ~ExportPane() override;

  /// @param subject nothing: the pane tells that a layer is to be picked.
  void showFor(const std::optional<Subject>& subject);
  /// The layer has other properties from now on: a page that stands exports by them, and keeps what was typed
  /// there.
  void follow(const std::string& properties);
  /// Whether the page stands, or tells why it does not.
  [[nodiscard]] bool isAtRest() const { return errand_ == nullptr && following_ == nullptr; }

 signals:
  /// An image was written, or failed.
  void exported(const vlclientui::viewer::ExportOutcome& outcome);

 private:
  void fill();
  void followNow();
  void leavePage();
  void takeService(viewer::Errand::End end, const QString& problem);
  void showPage();
  void takeEnd();
  void tell(const QString& text);
  [[nodiscard]] QPushButton* makeAnew();
  void addAnew(const QWidget& page);

  host::ComposedHost host_;
  Places places_;
  std::optional<Subject> subject_;
  std::unique_ptr<viewer::Errand> errand_;     ///< null while nothing is being opened
  std::unique_ptr<viewer::Errand> following_;  ///< of other properties; null for none
  std::shared_ptr<viewer::PreparedExport> prepared_;
  std::shared_ptr<ExportDialog> dialog_;  ///< null without a page
  QStackedWidget* stack_;                 ///< of a hint and the place
  QLabel* hint_;
  QWidget* place_;
  QPushButton* anew_;  ///< while there is no page, which has one of its own
};

}  // namespace vlclientui::qgis
