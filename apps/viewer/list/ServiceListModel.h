#pragma once

#include <QAbstractListModel>
#include <vector>

#include "viewer/services/ServiceLoader.h"

namespace vlclientui::viewer {

/// The services of the map, in the order in which they were picked.
class ServiceListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum class State { Loading, Ready, Unreadable };

  struct Row {
    QString reference;
    State state = State::Loading;
    LoadedService service;
    int load = 0;            ///< what a row that is gone waited for is none of the next one's
    QString shownReference;  ///< with paths of this system
    int edition = 0;         ///< another one whenever it is to be drawn anew
    bool isChanged = false;  ///< drawn by other properties than those that it was opened with

    /// Shown name: the title, or the last step of the reference until the title is known.
    [[nodiscard]] QString name() const;
  };

  explicit ServiceListModel(const host::ComposedHost& host, QObject* parent = nullptr);

  /// Skips references that are in the list already. @returns how many were new.
  int add(const std::vector<std::string>& references);
  void remove(int row);
  /// Draws a service by other properties from now on; does nothing for one that is not listed.
  void draw(const QString& reference, const client::ServiceDrawing& drawing);
  /// It was opened anew: if it was drawn by other properties, it is drawn so again.
  void drawAsOpened(const QString& reference, const client::ServiceDrawing& drawing);

  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  [[nodiscard]] bool isLoading() const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  void setDrawing(int number, const client::ServiceDrawing& drawing, bool isChanged);
  void takeLoaded(int load, const LoadedService& service);

  host::ComposedHost host_;
  std::vector<Row> rows_;
  int editions_ = 0;
  ServiceLoader loader_;
};

}  // namespace vlclientui::viewer
