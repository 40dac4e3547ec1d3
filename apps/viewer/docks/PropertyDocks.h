#pragma once

#include <QAction>
#include <QDockWidget>
#include <QList>
#include <QMainWindow>
#include <QObject>
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "properties/ServicePropertiesInterfaces.h"
#include "viewer/docks/ViewPointSteps.h"
#include "viewer/services/PickedService.h"

class QPushButton;
class QStackedWidget;

namespace vlclientui::viewer {

/// The docks with the properties dialog's pages for the picked service: properties, viewpoint, metadata.
/// A page exists while its dock is open.
class PropertyDocks : public QObject {
  Q_OBJECT

 public:
  /// Draws the picked service with a service properties document. @returns false when that cannot be.
  using Follow = std::function<bool(const std::string& properties)>;
  /// When a step of the viewpoint is drawn.
  enum class Steps { WithApply, AtOnce };

  /// Makes the docks, closed, at the right of the window.
  PropertyDocks(host::ComposedHost host, QMainWindow& window, Follow follow, Steps steps = Steps::WithApply);
  /// Takes the pages out of their docks before the docks go.
  ~PropertyDocks() override;

  /// Closes the pages of the former service and shows those of this one; null for none.
  void showPagesOf(const std::shared_ptr<PickedService>& service);
  /// The service was drawn: the pages tell of it. While they hold edits that nobody has applied yet, the
  /// metadata page alone does.
  void followImage();

  /// Whether the pages hold what nobody has applied yet: edits, or a viewpoint that was moved.
  [[nodiscard]] bool waits() const;

  /// The actions that open and close the docks, in their order.
  [[nodiscard]] QList<QAction*> toggles() const;

  /// Draws the service with the pages' content.
  void apply();
  /// Puts the service's own values back into the pages.
  void revert();

 signals:
  /// A page cannot be shown. @param problem for a person.
  void complained(const QString& problem);

 private:
  struct Dock {
    PropertyPageId page;
    QDockWidget* dock = nullptr;
    QStackedWidget* stack = nullptr;  ///< of a hint, shown while there is no page, and the place
    QWidget* place = nullptr;
    QWidget* row = nullptr;  ///< of buttons; null for none
    bool isShown = false;
  };
  class Listener;

  [[nodiscard]] Dock makeDock(QMainWindow& window, PropertyPageId page, const QString& title,
                              const QString& name);
  [[nodiscard]] QWidget* buttonRow(PropertyPageId page);
  [[nodiscard]] const std::shared_ptr<IOVLServicePropertiesDialog>& dialogOf(const Dock& dock) const;
  void showOrClose(Dock& dock);
  void showPage(Dock& dock);
  void leadTab() const;
  void closePage(Dock& dock);
  void closeAll();
  [[nodiscard]] bool hasEdits() const;
  [[nodiscard]] bool isMoved() const;
  void rememberPlace() const;
  void step();
  void refreshMetadata();
  void enableButtons();
  void lockTo(const std::string& properties);

  host::ComposedHost host_;
  Follow follow_;
  std::unique_ptr<ViewPointSteps> steps_;  ///< null where they wait for Apply
  std::shared_ptr<PickedService> service_;
  std::shared_ptr<IOVLServicePropertiesDialog> dialog_;  ///< null without a service
  /// Of the metadata alone, so that it can follow each image while the other pages keep their edits.
  std::shared_ptr<IOVLServicePropertiesDialog> metadata_;
  std::array<Dock, 3> docks_;
  QList<QPushButton*> buttons_;
};

/// A dialog object for the service, through the class factory. @param callback told of a lock; may be null.
/// @throws RuntimeFailure when it cannot be made or initialized, with the text of its Status.
[[nodiscard]] std::shared_ptr<IOVLServicePropertiesDialog> openPropertiesDialog(
    const std::shared_ptr<PickedService>& service, const ObjectPtr& callback = nullptr);

}  // namespace vlclientui::viewer
