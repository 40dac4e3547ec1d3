#pragma once

#include <libxml/tree.h>

#include "platform/XmlWalk.h"

namespace vlclientui::platform {

/// The document of a node. A tree without one gets one for the lifetime of this object.
class XmlRoot {
 public:
  explicit XmlRoot(xmlNode* node) : top_(topOf(node)) {
    if (top_->type == XML_DOCUMENT_NODE) return;
    stand_.type = XML_DOCUMENT_NODE;
    stand_.doc = &stand_;
    stand_.children = stand_.last = top_;
    top_->parent = asNode();
  }
  ~XmlRoot() {
    if (stand_.children != nullptr) top_->parent = nullptr;
  }
  XmlRoot(const XmlRoot&) = delete;
  XmlRoot& operator=(const XmlRoot&) = delete;

  [[nodiscard]] xmlDoc* document() {
    return stand_.children != nullptr ? &stand_ : reinterpret_cast<xmlDoc*>(top_);
  }
  [[nodiscard]] xmlNode* node() { return reinterpret_cast<xmlNode*>(document()); }
  [[nodiscard]] bool isStandIn(const xmlNode* node) { return node == asNode(); }

 private:
  xmlNode* asNode() { return reinterpret_cast<xmlNode*>(&stand_); }

  xmlNode* top_;
  xmlDoc stand_{};
};

}  // namespace vlclientui::platform
