#pragma once

#include <QScrollArea>
#include <memory>

#include "engine/FormModel.h"
#include "widgets/PathTexts.h"

namespace vlclientui::widgets {

/// A page to read: groups of labels and values. Values can be marked and copied; what does not fit scrolls.
class PageView : public QScrollArea {
 public:
  PageView(const engine::FormModel& page, PathTexts paths, QWidget* parent = nullptr);

  /// Keeps the place to which a person has scrolled.
  void setPage(const engine::FormModel& page);

 private:
  [[nodiscard]] QWidget* makeGroup(const engine::FormGroup& group) const;
  void addField(const engine::FormField& field, QWidget& group) const;

  PathTexts paths_;
};

}  // namespace vlclientui::widgets
