// Links of pages one by one: those that lead to a file or folder right below, and all others.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/ranges/WebListing.h"

namespace vlclientui::client::ranges {
namespace {

using Names = std::vector<std::string>;

constexpr auto page = "http://h:8080/data/list/";

Names namesOf(const std::vector<WebEntry>& entries) {
  Names names;
  for (const WebEntry& entry : entries)
    names.push_back(entry.name + (entry.kind == WebEntryKind::Folder ? "/" : ""));
  return names;
}

Names listed(const std::string& text, const std::string& address = page) {
  return namesOf(readWebListing(text, address));
}

std::string linkTo(const std::string& reference) { return "<a href=\"" + reference + "\">x</a>"; }

struct Link {
  std::string label;
  std::string reference;  ///< as the page writes it
  std::string name;       ///< a folder with "/"
  std::string address;    ///< behind the page's own
};

void PrintTo(const Link& link, std::ostream* out) { *out << link.reference; }

class WebLink : public testing::TestWithParam<Link> {};

TEST_P(WebLink, LeadsToAnEntryRightBelow) {
  const auto entries = readWebListing(linkTo(GetParam().reference), page);
  ASSERT_EQ(namesOf(entries), Names{GetParam().name});
  EXPECT_EQ(entries.front().address, page + GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(
    Each, WebLink,
    testing::Values(Link{"Step", "a.tif", "a.tif", "a.tif"}, Link{"Folder", "sub/", "sub/", "sub/"},
                    Link{"DotStep", "./a.tif", "a.tif", "a.tif"}, Link{"DotFolder", "./sub/", "sub/", "sub/"},
                    Link{"RootedPath", "/data/list/a.tif", "a.tif", "a.tif"},
                    Link{"WholeAddress", "http://h:8080/data/list/a.tif", "a.tif", "a.tif"},
                    Link{"HostInCapitals", "http://H:8080/data/list/a.tif", "a.tif", "a.tif"},
                    Link{"WithoutScheme", "//h:8080/data/list/sub/", "sub/", "sub/"},
                    Link{"UpAndDownAgain", "../list/a.tif", "a.tif", "a.tif"},
                    Link{"WithFragment", "a.tif#top", "a.tif", "a.tif"},
                    Link{"EncodedBlank", "a%20b.tif", "a b.tif", "a%20b.tif"},
                    Link{"PlainBlank", "a b.tif", "a b.tif", "a%20b.tif"},
                    Link{"BrokenLine", "a\r\n.tif", "a.tif", "a.tif"},
                    Link{"EncodedLetter", "%C3%A9.tif", "\xC3\xA9.tif", "%C3%A9.tif"},
                    Link{"EncodedByte", "%E9.tif", "\xE9.tif", "%E9.tif"},
                    Link{"PercentSign", "50%25.tif", "50%.tif", "50%25.tif"},
                    Link{"EncodedTwice", "a%2520b.tif", "a%20b.tif", "a%2520b.tif"},
                    Link{"EncodedQuestion", "what%3F.tif", "what?.tif", "what%3F.tif"},
                    Link{"Ampersand", "a&amp;b.tif", "a&b.tif", "a&b.tif"},
                    Link{"UnknownEntity", "a&b;.tif", "a&b;.tif", "a&b;.tif"},
                    Link{"DecimalEntity", "&#97;.tif", "a.tif", "a.tif"},
                    Link{"HexEntity", "&#X61;.tif", "a.tif", "a.tif"},
                    Link{"HiddenFile", ".a.tif", ".a.tif", ".a.tif"},
                    Link{"ThreeDots", ".../", ".../", ".../"}),
    [](const auto& each) { return each.param.label; });

class WebLinkElsewhere : public testing::TestWithParam<std::string> {};

TEST_P(WebLinkElsewhere, IsPassedOver) { EXPECT_EQ(listed(linkTo(GetParam())), Names{}); }

INSTANTIATE_TEST_SUITE_P(
    Each, WebLinkElsewhere,
    testing::Values("..", "../", ".", "./", "/", "//", "/data", "/data/", "/data/list", "/data/list/",
                    "/data/listing/a.tif", "/data/list2/a.tif", "../list/", "../../etc/passwd",
                    "sub/../../a.tif", "sub/a.tif", "sub//", "%2e", "%2E%2E/", "..%2fa.tif", "a%2Fb.tif",
                    "sub%2F", "?C=M;O=A", "a.tif?download=1", "?", "#", "#a.tif", "javascript:open('a.tif')",
                    "mailto:a@h", "data:image/tiff;base64,AAAA", "file:///data/list/a.tif",
                    "ftp://h:8080/data/list/a.tif", "https://h:8080/data/list/a.tif",
                    "http://h/data/list/a.tif", "http://h:8081/data/list/a.tif",
                    "http://h.evil:8080/data/list/a.tif", "http://h%2eevil:8080/data/list/a.tif",
                    "//other/data/list/a.tif", "/DATA/list/a.tif", "http://", "http:///data/list/a.tif"));

TEST(WebListingLinks, AreReadFromTagsInAnySpelling) {
  for (const std::string tag :
       {"<a href=a.tif>", "<A HREF=a.tif>", "<a\nhref\n=\n'a.tif'>", "<a\thref=\"a.tif\"\tclass=x>",
        "<a class=\"icon file\" href=\"a.tif\">", "<a href='a.tif' title=\"a.tif\">", "<a HrEf = a.tif >",
        "<tr><td><a href=\"a.tif\"><img src=\"b.png\"></a>",
        "<a href=\"a.tif"
        "\"\n>"})
    EXPECT_EQ(listed(tag), Names{"a.tif"}) << tag;
}

TEST(WebListingLinks, AreFoundBehindOtherWordsThatHoldTheirName) {
  for (const std::string tag : {"<a data-href=\"b.tif\" href=\"a.tif\">", "<a title=\"href\" href=\"a.tif\">",
                                "<a hreflang=\"de\" href=\"a.tif\">", "<a class=\"x\"href=\"a.tif\">"})
    EXPECT_EQ(listed(tag), Names{"a.tif"}) << tag;
}

TEST(WebListingLinks, MayFollowAValueThatHoldsTheEndOfATag) {
  EXPECT_EQ(listed(R"(<a title="a > b" href="a.tif">x</a><a title='>' href='b.tif'>y</a>)"),
            (Names{"a.tif", "b.tif"}));
  EXPECT_EQ(listed(R"(<a title = "1>0"
      href = "c.tif" >z</a>)"),
            Names{"c.tif"});
  EXPECT_EQ(listed(R"(<a href="d>e.tif">x</a>)"), Names{"d>e.tif"});
  EXPECT_EQ(listed(R"(<a title=don't href=f.tif>it's</a>)"), Names{"f.tif"}) << "no quote without a =";
  EXPECT_EQ(listed(R"(<a href="g.tif>x</a> and more)"), Names{"g.tif"}) << "a quote that nobody ends";
}

TEST(WebListingLinks, MayBeWrittenInLettersThatNobodyEncoded) {
  EXPECT_EQ(listed(linkTo("\xC3\xA9.tif") + linkTo("\xE5\x9C\xB0/")),
            (Names{"\xC3\xA9.tif", "\xE5\x9C\xB0/"}));
}

TEST(WebListingLinks, AreThoseOfAnchorsAlone) {
  for (const std::string tag :
       {"<link href=\"a.tif\">", "<area href=\"a.tif\">", "<img src=\"a.tif\">", "<abbr href=\"a.tif\">",
        "<ahref=\"a.tif\">", "href=\"a.tif\"", "<a>a.tif</a>", "<a name=\"a.tif\">", "<p>a href=a.tif</p>"})
    EXPECT_EQ(listed(tag), Names{}) << tag;
}

TEST(WebListingLinks, ThatComeTwiceInDifferentSpellingsAreOneEntry) {
  const auto entries = readWebListing(
      linkTo("%61.tif") + linkTo("a.tif") + linkTo("./a.tif") + linkTo("/data/list/a.tif"), page);
  ASSERT_EQ(namesOf(entries), Names{"a.tif"});
  EXPECT_EQ(entries.front().address, std::string(page) + "%61.tif") << "as it was first written";
}

TEST(WebListingLinks, ComeInByteOrderWhateverTheOrderOfThePage) {
  EXPECT_EQ(listed(linkTo("b.tif") + linkTo("A.tif") + linkTo("a.tif") + linkTo("10.tif") + linkTo("9.tif") +
                   linkTo("%C3%A9.tif")),
            (Names{"10.tif", "9.tif", "A.tif", "a.tif", "b.tif", "\xC3\xA9.tif"}));
}

TEST(WebListingLinks, AreSeenFromThePageWithoutItsQueryAndName) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"http://h/d/", "http://h/d/a.tif"},
      {"http://h/d/index.html", "http://h/d/a.tif"},
      {"http://h/d/?C=M;O=A", "http://h/d/a.tif"},
      {"http://h/d/list.php?dir=/x/", "http://h/d/a.tif"},
      {"http://h", "http://h/a.tif"},
      {"http://h/d%20e/", "http://h/d%20e/a.tif"},
      {"http://[::1]:81/d/", "http://[::1]:81/d/a.tif"}};
  for (const auto& [address, expected] : cases) {
    const auto entries = readWebListing(linkTo("a.tif"), address);
    ASSERT_EQ(entries.size(), 1U) << address;
    EXPECT_EQ(entries.front().address, expected);
  }
}

TEST(WebListingLinks, OfAnAddressThatIsNoneGiveNothing) {
  for (const std::string address : {"", "h/d/", "ftp://h/d/", "/data/list/", "http://", "http:///d/"})
    EXPECT_EQ(listed(linkTo("a.tif"), address), Names{}) << address;
}

TEST(WebListsInJson, TellFoldersInTwoWaysAndNamesAsTheyAre) {
  EXPECT_EQ(
      listed(R"( [{"name":"d","type":"directory"},{"name":"e","is_dir":true},{"name":"f/","is_dir":true},
                       {"name":"g.tif"},{"name":"50%.tif"},{"name":"a%20b.tif"},{"name":"\u00e9.tif"}])"),
      (Names{"50%.tif", "a%20b.tif", "d/", "e/", "f/", "g.tif", "\xC3\xA9.tif"}));
}

TEST(WebListsInJson, EncodeNamesInTheirAddresses) {
  const auto entries = readWebListing(R"([{"name":"50% #1?.tif"}])", page);
  ASSERT_EQ(namesOf(entries), Names{"50% #1?.tif"});
  EXPECT_EQ(entries.front().address, std::string(page) + "50%25%20%231%3F.tif");
}

TEST(WebListsInJson, PassOverNamesThatLeadAwayAndRowsThatAreNone) {
  EXPECT_EQ(listed(R"([{"name":".."},{"name":"../"},{"name":"."},{"name":"/etc/passwd"},{"name":"a/b.tif"},
                       {"name":""},{"name":"/"},{"name":"../a.tif"},{"name":null},{"type":"directory"},
                       7,null,"x.tif",["y.tif"],{"NAME":"z.tif"},{"name":"good.tif","size":"?"}])"),
            Names{"good.tif"});
}

TEST(WebListsInJson, ThatAreDamagedOrNoListsGiveNothing) {
  for (const std::string text : {"[{\"name\":\"a.tif\"}", "[{\"name\":\"a.tif\"", "{\"name\":\"a.tif\"}",
                                 "[\"a.tif\"]", "[1,2,3]", "[{\"name\":\"a.tif\"},", "[null]"})
    EXPECT_EQ(listed(text), Names{}) << text;
}

}  // namespace
}  // namespace vlclientui::client::ranges
