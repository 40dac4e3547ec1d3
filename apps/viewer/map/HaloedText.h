#pragma once

#include <QPointF>

class QPainter;
class QString;

namespace vlclientui::viewer {

struct MapColors;

/// A text that is readable on any picture. It is remembered as a picture, since its outline takes long to
/// paint.
/// @param at where its line begins, in pixels of the widget.
void drawWithHalo(QPainter& painter, QPointF at, const QString& text, const MapColors& colors);

}  // namespace vlclientui::viewer
