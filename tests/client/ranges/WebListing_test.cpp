#include "client/ranges/WebListing.h"

#include <gtest/gtest.h>

#include "client/ranges/WebFolders.h"

namespace vlclientui::client::ranges {
namespace {

using Entries = std::vector<WebEntry>;

constexpr auto page = "http://h:8080/data/list/";

WebEntry file(const std::string& name, const std::string& step) {
  return {WebEntryKind::File, name, page + step};
}

WebEntry folder(const std::string& name, const std::string& step) {
  return {WebEntryKind::Folder, name, page + step + '/'};
}

TEST(WebListing, OfNginxIsRead) {
  EXPECT_EQ(
      readWebListing("<html><head><title>Index of /data/list/</title></head><body><h1>Index of /data/list/"
                     "</h1><hr><pre><a href=\"../\">../</a>\r\n"
                     "<a href=\"North/\">North/</a>          22-Nov-2026 06:21        -\r\n"
                     "<a href=\"a%20b.tif\">a b.tif</a>      22-Nov-2026 06:21   706365\r\n"
                     "</pre><hr></body></html>",
                     page),
      (Entries{folder("North", "North"), file("a b.tif", "a%20b.tif")}));
}

TEST(WebListing, OfApacheIsReadWithoutItsOrders) {
  EXPECT_EQ(readWebListing("<table><tr><th><a href=\"?C=N;O=D\">Name</a></th></tr>"
                           "<tr><td><a href=\"/data/\">Parent Directory</a></td></tr>"
                           "<tr><td><A HREF='b.tif'>b.tif</A></td></tr>"
                           "<tr><td><a class=x href = c&amp;d.tif >c&amp;d.tif</a></td></tr>"
                           "<tr><td><a href=\"/data/list/e.tif\">e.tif</a></td></tr></table>",
                           page),
            (Entries{file("b.tif", "b.tif"), file("c&d.tif", "c&d.tif"), file("e.tif", "e.tif")}));
}

TEST(WebListing, OfPythonAndOthersIsRead) {
  EXPECT_EQ(
      readWebListing(
          "<!DOCTYPE HTML><title>Directory listing for /data/list/</title><ul>\n"
          "<li><a href=\"%C3%A9t%C3%A9.tif\">\xC3\xA9t\xC3\xA9.tif</a></li>\n"
          "<li><a href=\"./sub/\">sub/</a></li>\n<li><a href=\"x&#39;y&#x2e;tif\">x'y.tif</a></li></ul>",
          page),
      (Entries{folder("sub", "sub"), file("x'y.tif", "x'y.tif"),
               file("\xC3\xA9t\xC3\xA9.tif", "%C3%A9t%C3%A9.tif")}));
}

TEST(WebListing, OfLighttpdIsRead) {
  EXPECT_EQ(
      readWebListing(
          "<div class=\"list\"><table summary=\"Directory Listing\"><thead><tr><th class=\"n\">Name</th></tr>"
          "</thead><tbody><tr class=\"d\"><td class=\"n\"><a href=\"../\">..</a>/</td><td class=\"m\">&nbsp;"
          "</td></tr><tr class=\"d\"><td class=\"n\"><a href=\"North/\">North</a>/</td></tr>\n"
          "<tr><td class=\"n\"><a href=\"a%20b.tif\">a b.tif</a></td><td class=\"s\">0.7M</td></tr></tbody>"
          "</table></div><div class=\"foot\">lighttpd/1.4.69</div>",
          page),
      (Entries{folder("North", "North"), file("a b.tif", "a%20b.tif")}));
}

TEST(WebListing, OfCaddyIsReadAsPageAndInJson) {
  EXPECT_EQ(
      readWebListing(
          "<h1><a href=\"../../\">/</a><a href=\"../\">data</a><a href=\"\">list</a></h1>"
          "<a id=\"layout-list\" class='layout' title=\"List\" onclick=\"queryParam('layout', '')\"></a>"
          "<th><a href=\"?sort=name&order=desc\" class=\"icon\"><svg width=\"1em\"></svg></a></th>"
          "<tr class=\"file\"><td></td><td><a href=\"./North/\"><svg><use xlink:href=\"#folder\"></use></svg>"
          "<span class=\"name\">North</span></a></td></tr><tr class=\"file\"><td><a href=\"./a%20b.tif\">"
          "<svg><use xlink:href=\"#file\"></use></svg></a></td></tr>"
          "<footer><a rel=\"noopener\" href=\"https://caddyserver.com\">Caddy</a></footer>",
          page),
      (Entries{folder("North", "North"), file("a b.tif", "a%20b.tif")}));
  EXPECT_EQ(readWebListing(R"([{"name":"North/","size":96,"url":"./North/","mod_time":"x","mode":2147484141,
                              "is_dir":true,"is_symlink":false},{"name":"a.tif","size":4,"url":"./a.tif",
                              "mode":420,"is_dir":false,"is_symlink":true}])",
                           page),
            (Entries{folder("North", "North"), file("a.tif", "a.tif")}));
}

TEST(WebListing, InJsonIsRead) {
  EXPECT_EQ(readWebListing(R"([{"name":"North","type":"directory","mtime":"x"},
                               {"name":"a b#.tif","type":"file","size":3}, 5, {"type":"file"}])",
                           page),
            (Entries{folder("North", "North"), file("a b#.tif", "a%20b%23.tif")}));
  EXPECT_EQ(readWebListing(R"([{"name":"North/","is_dir":true},{"name":"a.tif","is_dir":false}])", page),
            (Entries{folder("North", "North"), file("a.tif", "a.tif")}));
}

TEST(WebListing, LeadsNowhereElse) {
  EXPECT_TRUE(
      readWebListing("<a href=\"http://other/data/list/a.tif\">1</a><a href=\"../b.tif\">2</a>"
                     "<a href=\"/c.tif\">3</a><a href=\"d/e.tif\">4</a><a href=\"f.tif?x=1\">5</a>"
                     "<a href=\"https://h:8080/data/list/g.tif\">6</a><a href=\"mailto:a@b\">7</a>"
                     "<a href=\"..%2Fh.tif\">8</a><a href=\"%2e%2e/i.tif\">9</a><a href=\"\">10</a>"
                     "<a href=\"./\">11</a><a href=\"#top\">12</a><a name=\"x\">13</a><abbr href=\"j.tif\">"
                     "<a href=\"http://u:p@h:8080/data/list/../../k.tif\">15</a><a href=//other/l.tif>16</a>",
                     page)
          .empty());
}

TEST(WebListing, LeavesReferencesOutThatNoServerTakes) {
  const auto link = [](const std::string& name) { return "<a href=\"" + name + "\">x</a>"; };
  const std::string blanks(8000, ' ');
  EXPECT_EQ(readWebListing(link(std::string(300000, ' ') + "a.tif") + link("b.tif"), page),
            Entries{file("b.tif", "b.tif")});
  EXPECT_EQ(readWebListing(link("a" + blanks + ".tif"), page).size(), 1U);
}

TEST(WebListing, LooksAtEachTagOnce) {
  constexpr std::size_t count = 400000;
  for (const std::string tag : {"<a ", "<ab"}) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += tag;
    EXPECT_EQ(readWebListing(text + "><a href=\"b.tif\">", page), Entries{file("b.tif", "b.tif")});
  }
}

TEST(WebListing, ThatIsBrokenGivesWhatIsThere) {
  EXPECT_EQ(readWebListing("<a href=\"a.tif\">a</a><a href=\"b.tif", page), Entries{file("a.tif", "a.tif")});
  EXPECT_EQ(readWebListing("<a href=\"a.tif\">1</a><a href=\"a.tif\">2</a>", page),
            Entries{file("a.tif", "a.tif")});
  for (const std::string text :
       {"", "<", "<a", "<a href", "<a href=", "<a href=\"", "[", "[[[", "[{}]", "[{\"name\":5}]",
        "<a href=\"&#9999999;\">", "<a href=\"&#0;\">", "<a href=\"&;\">"})
    EXPECT_LE(readWebListing(text, page).size(), 1U) << text;
  EXPECT_TRUE(readWebListing("<a href=\"a.tif\">a</a>", "no address").empty());
}

TEST(WebListing, OfAPageIsThatOfItsFolder) {
  EXPECT_EQ(readWebListing("<a href=\"a.tif\">a</a>", "http://h:8080/data/list/index.html"),
            Entries{file("a.tif", "a.tif")});
}

TEST(WebListing, HasABound) {
  std::string text;
  for (std::size_t i = 0; i < mostWebEntries + 10; ++i)
    text += "<a href=\"" + std::to_string(i) + ".tif\">x</a>";
  EXPECT_EQ(readWebListing(text, page).size(), mostWebEntries);
}

WebFolder shown(const std::vector<std::string>& names) {
  Entries entries;
  for (const std::string& name : names) {
    const bool isFolder = name.ends_with('/');
    const std::string bare = isFolder ? name.substr(0, name.size() - 1) : name;
    entries.push_back({isFolder ? WebEntryKind::Folder : WebEntryKind::File, bare, page + name});
  }
  return folderOfEntries(entries);
}

std::vector<std::string> shownNames(const std::vector<WebNode>& nodes) {
  std::vector<std::string> names;
  for (const WebNode& node : nodes) names.push_back(node.name.shown);
  return names;
}

TEST(WebFolderNames, AreMadeAsForFilesOfThisMachine) {
  const WebFolder folder = shown({"a.tif", "a.png", "b.vrt", "b/", "x+(1)?.jp2", "c.TIFF"});
  EXPECT_EQ(shownNames(folder.images), (std::vector<std::string>{"a.tif", "a.png", "b.vrt", "x+(1)_", "c"}));
  EXPECT_EQ(shownNames(folder.folders), std::vector<std::string>{"b"});
  EXPECT_EQ(folder.images.at(3).name.real, "x+(1)?");
  EXPECT_TRUE(folder.problems.empty());
}

TEST(WebFolderNames, PassOverWhatIsHiddenOrNoRasterAndTellWhatIsLeftOut) {
  const WebFolder folder =
      shown({".git/", ".a.tif", "readme.txt", "a.tif.aux.xml", "a.tif", "b.nc", "m.VLDef", "c\x01.tif"});
  EXPECT_EQ(shownNames(folder.images), (std::vector<std::string>{"a", "m"}));
  EXPECT_TRUE(folder.folders.empty());
  ASSERT_EQ(folder.problems.size(), 2U);
  EXPECT_EQ(folder.problems.at(0).path, std::string(page) + "b.nc");
  EXPECT_EQ(folder.problems.at(0).reason, "files of this kind are not read from the web");
  EXPECT_NE(folder.problems.at(1).reason.find("the name is no text"), std::string::npos);
}

}  // namespace
}  // namespace vlclientui::client::ranges
