#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <memory>

#include "engine/ListModel.h"

namespace vlclientui::widgets {

/// Presents an engine's list to Qt cell by cell; makes nothing in advance.
class RowTableModel : public QAbstractTableModel {
 public:
  explicit RowTableModel(std::shared_ptr<const engine::ListModel> list, QObject* parent);

  void setList(std::shared_ptr<const engine::ListModel> list);
  [[nodiscard]] const engine::ListModel& list() const { return *list_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] QVariant icon(const QModelIndex& index) const;
  [[nodiscard]] bool isMessage(const QModelIndex& index) const;

  std::shared_ptr<const engine::ListModel> list_;
  QIcon folder_;
  QIcon service_;
};

}  // namespace vlclientui::widgets
