#include "widgets/ValueLabel.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include "widgets/QtVersions.h"

namespace vlclientui::widgets {

namespace {

constexpr QChar chance(0x200B);  ///< zero width space
constexpr QtSize longestRun = 16;

QString withoutChances(QString text) { return text.remove(chance); }

bool endsPart(QChar sign) {
  return !sign.isLetterOrNumber() && !sign.isSpace() && !sign.isSurrogate() && !sign.isMark();
}

/// Keeps characters together that a reader sees as one.
bool mayBreakBefore(QChar sign) { return !sign.isLowSurrogate() && !sign.isMark(); }

QString brokenAnywhere(const QString& part) {
  QString broken;
  for (const QChar sign : part) {
    if (!broken.isEmpty() && mayBreakBefore(sign)) broken += chance;
    broken += sign;
  }
  return broken;
}

QString brokenRun(const QString& run) {
  if (run.size() <= longestRun) return run;
  QString broken;
  QString part;
  const auto take = [&] {
    broken += part.size() > longestRun ? brokenAnywhere(part) : part;
    part.clear();
  };
  for (const QChar sign : run) {
    part += sign;
    if (!endsPart(sign)) continue;
    take();
    broken += chance;
  }
  take();
  return broken;
}

}  // namespace

QString withLineBreakChances(const QString& text) {
  QString broken;
  QString run;
  for (const QChar sign : text) {
    if (!sign.isSpace()) {
      run += sign;
      continue;
    }
    broken += brokenRun(run) + sign;
    run.clear();
  }
  return broken + brokenRun(run);
}

ValueLabel::ValueLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setCursor(Qt::IBeamCursor);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void ValueLabel::setValue(const QString& value) {
  const QString shown = withLineBreakChances(value);
  if (shown != text()) setText(shown);
}

QString ValueLabel::value() const { return withoutChances(text()); }

void ValueLabel::copySelection(int clipboardMode) const {
  if (!hasSelectedText()) return;
  QApplication::clipboard()->setText(withoutChances(selectedText()),
                                     static_cast<QClipboard::Mode>(clipboardMode));
}

void ValueLabel::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copySelection(QClipboard::Clipboard);
  QLabel::keyPressEvent(event);
}

/// Where the window system has a selection clipboard, a selection can be pasted at once.
void ValueLabel::mouseReleaseEvent(QMouseEvent* event) {
  QLabel::mouseReleaseEvent(event);
  if (QApplication::clipboard()->supportsSelection()) copySelection(QClipboard::Selection);
}

void ValueLabel::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  QAction* const copy = menu.addAction(tr("&Copy"));
  copy->setShortcut(QKeySequence::Copy);
  copy->setEnabled(hasSelectedText());
  connect(copy, &QAction::triggered, this, [this] { copySelection(QClipboard::Clipboard); });
  QAction* const all = menu.addAction(tr("Select &All"));
  all->setShortcut(QKeySequence::SelectAll);
  connect(all, &QAction::triggered, this, [this] { setSelection(0, static_cast<int>(text().size())); });
  menu.exec(event->globalPos());
}

}  // namespace vlclientui::widgets
