#pragma once

#include <QAbstractItemModel>
#include <memory>

#include "engine/TreeModel.h"

namespace vlclientui::widgets {

/// Presents an engine's tree to Qt in two columns, name and value; makes nodes only when they become visible.
class TreeItemModel : public QAbstractItemModel {
 public:
  using Node = engine::TreeModel::Node;

  explicit TreeItemModel(std::shared_ptr<engine::TreeModel> tree, QObject* parent);

  [[nodiscard]] engine::TreeModel& tree() const { return *tree_; }
  [[nodiscard]] QModelIndex indexOf(Node node, int column = 0) const;
  /// @pre the index is valid.
  [[nodiscard]] static Node nodeOf(const QModelIndex& index) { return static_cast<Node>(index.internalId()); }

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] QString textOf(const QModelIndex& index) const;

  std::shared_ptr<engine::TreeModel> tree_;
};

}  // namespace vlclientui::widgets
