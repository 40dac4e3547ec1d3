#pragma once

class QPainter;

namespace vlclientui::viewer {

class MapFrame;
struct MapColors;

/// Meridians and parallels at round degrees, with their names at the left and below. In systems other than
/// degrees they are bent.
void drawGraticule(QPainter& painter, const MapFrame& frame, const MapColors& colors);

}  // namespace vlclientui::viewer
