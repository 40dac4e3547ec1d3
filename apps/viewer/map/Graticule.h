#pragma once

#include <QPointF>
#include <QString>
#include <string>
#include <vector>

#include "client/mapping/MapPoint.h"
#include "client/mapping/PointWay.h"

class QPainter;

namespace vlclientui::viewer {

class MapFrame;
struct MapColors;

/// Meridians and parallels at round degrees, with their names at the left and below. In systems other than
/// degrees they are bent, and remembered for what lies around the view: to bring them there takes longer than
/// to paint them.
class Graticule {
 public:
  void draw(QPainter& painter, const MapFrame& frame, const MapColors& colors);

 private:
  /// Where a line is named: where it comes next to that edge of the view.
  enum class Edge { Bottom, Left };

  struct Line {
    std::vector<client::MapPoint> places;  ///< of the map
    QString name;
    Edge edge = Edge::Bottom;
  };

  void follow(const MapFrame& frame);
  void learn(const MapFrame& frame);
  static void drawLine(QPainter& painter, const MapFrame& frame, const MapColors& colors, const Line& line);

  std::string wkt_;  ///< of the map that the lines are known for
  double step_ = 0;  ///< in degrees
  client::Bounds covered_;
  std::vector<Line> lines_;
};

}  // namespace vlclientui::viewer
