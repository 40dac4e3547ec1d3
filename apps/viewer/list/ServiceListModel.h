#pragma once

#include <QAbstractListModel>
#include <QIcon>
#include <vector>

#include "viewer/project/Project.h"
#include "viewer/services/ServiceLoader.h"

namespace vlclientui::viewer {

/// The services of the map, the top one first, each with its state for as long as it is listed.
class ServiceListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  /// One that is ready can be drawn, though not all of it need be there.
  enum class State { Loading, Ready, Unreadable };

  struct Row {
    QString reference;
    State state = State::Loading;
    LoadedService service;
    QIcon icon;              ///< its picture, small
    int load = 0;            ///< number of the reading that it waits for; others are ignored
    QString shownReference;  ///< with paths of this system
    QString mapProblem;      ///< why something of it is not on the map
    int edition = 0;         ///< another one whenever it is to be drawn anew
    bool isChanged = false;  ///< drawn by other properties than those that it was opened with
    ServiceState shown;      ///< how it is shown

    /// Shown name: a person's own, else the title, or the last step of the reference until that is known.
    [[nodiscard]] QString name() const;
  };

  explicit ServiceListModel(const host::ComposedHost& host, QObject* parent = nullptr);

  /// Lays them on top, one after another. Skips references that are in the list already.
  /// @returns how many were new.
  int add(const std::vector<std::string>& references);
  /// Lays it below all others. One that is listed already is skipped.
  void addBelow(const ProjectService& service);
  /// @param rows in any order.
  void remove(const std::vector<int>& rows);
  void clear();

  /// Moves them together, in their order, to stand before the row `before`; the number of rows for the end.
  /// @returns the row of the first one.
  int move(std::vector<int> rows, int before);
  void setVisible(int row, bool isVisible);
  /// @param opacity 0 to 1.
  void setOpacity(int row, double opacity);
  /// @param name empty for the service's own title.
  void rename(int row, const QString& name);
  /// What was applied to it.
  void keepProperties(int row, const std::string& properties);
  void keepStretch(int row, const std::string& stretch);
  /// Draws a service by other properties from now on; does nothing for one that is not listed.
  void draw(const QString& reference, const client::ServiceDrawing& drawing);
  /// Reads anew what could not be read, and makes the small pictures anew, from files that may have changed.
  void readAgain();
  /// Why something of it is not on the map; empty when all is.
  void noteProblem(const QString& reference, const QString& problem);
  /// It was opened anew: if it was drawn by other properties, it is drawn so again.
  void drawAsOpened(const QString& reference, const client::ServiceDrawing& drawing);

  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  /// -1 for one that is not listed.
  [[nodiscard]] int rowOf(const QString& reference) const;
  /// As add() takes it.
  [[nodiscard]] int rowOf(const std::string& reference) const { return rowOf(known(reference)); }
  [[nodiscard]] std::vector<ProjectService> services() const;
  [[nodiscard]] bool isLoading() const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }

 signals:
  /// What a project keeps is other than before.
  void changed();

 private:
  void loadPicture(Row& row);
  void setDrawing(int number, const client::ServiceDrawing& drawing, bool isChanged);
  [[nodiscard]] QString known(const std::string& reference) const;
  [[nodiscard]] Row newRow(const QString& reference, const ServiceState& state);
  Row& at(int row) { return rows_[static_cast<std::size_t>(row)]; }
  void shift(int row, int before);
  void tellOf(int row);
  void takeKnown(int load, const LoadedService& service);
  void takeLoaded(int load, const LoadedService& service);
  [[nodiscard]] int rowWaitingFor(int load) const;

  host::ComposedHost host_;
  std::vector<Row> rows_;
  int editions_ = 0;
  ServiceLoader loader_;
};

}  // namespace vlclientui::viewer
