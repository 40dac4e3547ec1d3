#include <algorithm>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/PageControls.h"
#include "scenarios/HeadlessPropertiesPerson.h"
#include "scenarios/MetadataPerson.h"

namespace vlclientui::test {

namespace {

constexpr std::int32_t keyC = 'C';
constexpr std::int32_t keyX = 'X';

class HeadlessMetadataPerson : public HeadlessPropertiesPerson, public MetadataPerson {
 public:
  void clickNode(const std::string& node) override {
    auto& tree = find<TreeView>("uiTreeView");
    const auto found = std::ranges::find(tree.nodes(), node, &TreeView::Node::text);
    if (found == tree.nodes().end()) throw RuntimeFailure("no node " + node);
    tree.userFocuses();
    tree.userSelects(found->key);
  }
  void pickRaster(const std::string& caption) override {
    auto& list = find<DropDown>("RasterList");
    const auto found = std::ranges::find(list.entries(), caption);
    if (found == list.entries().end()) throw RuntimeFailure("no raster " + caption);
    list.userFocuses();
    list.userSelects(static_cast<std::size_t>(found - list.entries().begin()));
  }
  void clickAttribute(const std::string& name) override {
    auto& list = find<ReportList>("ListView1");
    const auto found = std::ranges::find(list.rows(), name, [](const auto& row) { return row.front(); });
    if (found == list.rows().end()) throw RuntimeFailure("no attribute " + name);
    list.userFocuses();
    list.userSelects(static_cast<std::size_t>(found - list.rows().begin()));
  }
  void pressInAttributes(ListKey key) override {
    auto& list = find<ReportList>("ListView1");
    list.userFocuses();
    if (key == ListKey::X) {
      list.userPresses(keyX);
    } else {
      list.userPresses(key == ListKey::CtrlC ? keyC : keyCode::f1, keyModifier::control);
    }
  }
  void copyElsewhere(const std::string& text) override { toolkit().setClipboardText(text); }

  std::vector<std::string> nodes() const override {
    std::vector<std::string> texts;
    for (const TreeView::Node& node : find<TreeView>("uiTreeView").nodes()) texts.push_back(node.text);
    return texts;
  }
  std::string markedNode() const override {
    const auto& tree = find<TreeView>("uiTreeView");
    const auto found = std::ranges::find(tree.nodes(), tree.selectedKey(), &TreeView::Node::key);
    return found == tree.nodes().end() ? std::string() : found->text;
  }
  std::vector<std::string> tabs(const std::string& strip) const override {
    return isVisible(strip) ? find<TabStrip>(strip).captions() : std::vector<std::string>();
  }
  std::string tabOnTop(const std::string& strip) const override {
    return find<TabStrip>(strip).selectedCaption();
  }
  std::vector<std::string> rasters() const override {
    return isVisible("RasterList") ? find<DropDown>("RasterList").entries() : std::vector<std::string>();
  }
  std::string raster() const override { return find<DropDown>("RasterList").text(); }
  std::vector<std::string> treeRows() const override {
    std::vector<std::string> rows;
    for (const headless::HeadlessSurface* const surface : shownSurfaces()) {
      if (surface->tree()) addRows(*surface->tree(), engine::TreeModel::root, "", rows);
    }
    return rows;
  }
  std::vector<std::string> attributes() const override {
    std::vector<std::string> seen;
    if (!isVisible("ListView1")) return seen;
    for (const auto& row : find<ReportList>("ListView1").rows()) seen.push_back(row.at(0) + "|" + row.at(1));
    return seen;
  }
  std::string clipboard() const override { return toolkit().clipboardText(); }

 private:
  static void addRows(engine::TreeModel& tree, engine::TreeModel::Node node, const std::string& indent,
                      std::vector<std::string>& rows) {
    rows.push_back(indent + tree.name(node) + "|" + tree.value(node));
    for (std::size_t child = 0; child < tree.childCount(node); ++child) {
      addRows(tree, tree.child(node, child), indent + "  ", rows);
    }
  }
};

}  // namespace

std::unique_ptr<MetadataPerson> makeMetadataPerson() { return std::make_unique<HeadlessMetadataPerson>(); }

}  // namespace vlclientui::test
