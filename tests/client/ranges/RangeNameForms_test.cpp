// Names of files of the web, form by form: what stands plainly, what is encoded, what is kept to itself.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/ranges/RangeFiles.h"
#include "client/ranges/RangeNames.h"
#include "client/ranges/RemoteSecrets.h"

namespace vlclientui::client::ranges {
namespace {

struct Form {
  std::string label;
  std::string address;
  std::string name;  ///< behind the prefix
};

void PrintTo(const Form& form, std::ostream* out) { *out << form.address; }

class RangeNameForm : public testing::TestWithParam<Form> {};

TEST_P(RangeNameForm, IsSpelledAsAPathThatLeadsBack) {
  const std::string name = nameOfAddress(GetParam().address);
  EXPECT_EQ(name, std::string(rangePrefix) + GetParam().name);
  EXPECT_EQ(addressOfName(name), GetParam().address);
  EXPECT_EQ(nameOfAddress(*addressOfName(name)), name) << "the same file has one name";
}

INSTANTIATE_TEST_SUITE_P(
    Each, RangeNameForm,
    testing::Values(Form{"Plain", "http://h/a.tif", "http/h/a.tif"},
                    Form{"Secured", "https://h/a.tif", "https/h/a.tif"}, Form{"Root", "http://h/", "http/h/"},
                    Form{"WithoutPath", "http://h", "http/h"},
                    Form{"Port", "http://h:81/a.tif", "http/h%3A81/a.tif"},
                    Form{"BracketedHost", "http://[::1]:81/a.tif", "http/%5B%3A%3A1%5D%3A81/a.tif"},
                    Form{"Folder", "http://h/a/b/", "http/h/a/b/"},
                    Form{"DoubledSlash", "http://h/a//b.tif", "http/h/a//b.tif"},
                    Form{"SeveralBlanks", "http://h/a%20%20b.tif", "http/h/a  b.tif"},
                    Form{"PercentSign", "http://h/50%25.tif", "http/h/50%2525.tif"},
                    Form{"PercentSignBeforeDigits", "http://h/50%2520.tif", "http/h/50%252520.tif"},
                    Form{"TwoLetters", "http://h/%C3%A9%C3%BC.tif", "http/h/\xC3\xA9\xC3\xBC.tif"},
                    Form{"ThreeBytes", "http://h/%E5%9C%B0.tif", "http/h/\xE5\x9C\xB0.tif"},
                    Form{"FourBytes", "http://h/%F0%9F%97%BA.tif", "http/h/\xF0\x9F\x97\xBA.tif"},
                    Form{"NoText", "http://h/%E9t%E9.tif", "http/h/%25E9t%25E9.tif"},
                    Form{"CutLetter", "http://h/%C3.tif", "http/h/%25C3.tif"},
                    Form{"ControlCharacter", "http://h/a%0Ab.tif", "http/h/a%250Ab.tif"},
                    Form{"NothingCharacter", "http://h/a%00b.tif", "http/h/a%2500b.tif"},
                    Form{"EncodedSlash", "http://h/a%2Fb.tif", "http/h/a%252Fb.tif"},
                    Form{"EncodedQuestion", "http://h/a%3Fb.tif", "http/h/a%253Fb.tif"},
                    Form{"Backslash", "http://h/a%5Cb.tif", "http/h/a%255Cb.tif"},
                    Form{"DoubleQuote", "http://h/a%22b.tif", "http/h/a%2522b.tif"},
                    Form{"Braces", "http://h/a%7B1%7D.tif", "http/h/a{1}.tif"},
                    Form{"DotsInCode", "http://h/%2E%2E/b.tif", "http/h/%252E%252E/b.tif"},
                    Form{"Query", "http://h/a.tif?v=1", "http/h/a.tif%3Fv%3D1"},
                    Form{"QueryWithSlashes", "http://h/g?file=/a/b.tif", "http/h/g%3Ffile%3D%2Fa%2Fb.tif"},
                    Form{"QueryWithCodes", "http://h/g?f=a%20b", "http/h/g%3Ff%3Da%2520b"},
                    Form{"QueryOfTheServer", "http://h?a=1", "http/h%3Fa%3D1"},
                    Form{"LibraryWords", "http://h/a.tif,vrt,(x)", "http/h/a.tif,vrt,(x)"}),
    [](const auto& each) { return each.param.label; });

TEST(RangeNameForms, SpellOneFileAlikeHoweverItsCodesAreWritten) {
  EXPECT_EQ(nameOfAddress("http://h/%c3%a9.tif"), nameOfAddress("http://h/%C3%A9.tif"));
  EXPECT_EQ(addressOfName(nameOfAddress("http://h/%c3%a9.tif")), "http://h/%C3%A9.tif");
}

TEST(RangeNameForms, KeepFilesApartThatOnlyDifferInAnEncodedSign) {
  const std::vector<std::string> addresses = {"http://h/a/b.tif",     "http://h/a%2Fb.tif",
                                              "http://h/a%252Fb.tif", "http://h/a?b.tif",
                                              "http://h/a%3Fb.tif",   "https://h/a/b.tif"};
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NE(nameOfAddress(addresses[i]), nameOfAddress(addresses[j])) << addresses[i];
  }
}

TEST(RangeNameForms, OfFilesBesideEachOtherShareTheirFolder) {
  const auto folderOf = [](const std::string& address) {
    const std::string name = nameOfAddress(address);
    return name.substr(0, name.rfind('/'));
  };
  EXPECT_EQ(folderOf("http://h/x/a.tif"), folderOf("http://h/x/b%20c.tfw"));
  EXPECT_EQ(folderOf("http://h/x/a.tif?f=1/2"), folderOf("http://h/x/a.tif")) << "a query holds no step";
}

TEST(RangeNameForms, MadeByHandLeadToAddressesThatServersTake) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"http/h/\xC3\xA9.tif", "http://h/%C3%A9.tif"}, {"http/h/a b/c d.tif", "http://h/a%20b/c%20d.tif"},
      {"http/h/a#1.tif", "http://h/a%231.tif"},       {"http/h/a?b.tif", "http://h/a%3Fb.tif"},
      {"http/h/100%.tif", "http://h/100%25.tif"},     {"http/h/a%2", "http://h/a%252"},
      {"http/h/a\\b.tif", "http://h/a%5Cb.tif"},      {"http/h/a\nb.tif", "http://h/a%0Ab.tif"}};
  for (const auto& [name, address] : cases)
    EXPECT_EQ(addressOfName(std::string(rangePrefix) + name), address) << name;
}

TEST(RangeNameForms, NearlyRightOnesLeadNowhere) {
  for (const std::string name : {"/vsivlrange", "vsivlrange/http/h/a.tif", "/VSIVLRANGE/http/h/a.tif",
                                 "/vsivlrange//h/a.tif", "/vsicurl/http://h/a.tif", "http://h/a.tif"})
    EXPECT_FALSE(addressOfName(name)) << name;
}

struct Key {
  std::string label;
  std::string asked;
  std::string shown;
};

void PrintTo(const Key& key, std::ostream* out) { *out << key.label; }

class RangeNameKey : public testing::TestWithParam<Key> {};

TEST_P(RangeNameKey, StaysInMemoryAndOutOfTheName) {
  const std::string name = rangeRasterName(GetParam().asked);
  EXPECT_EQ(name.find("geheim"), std::string::npos) << name;
  EXPECT_EQ(addressOfRangeRaster(name), GetParam().shown);
  EXPECT_EQ(shownPlace(name), GetParam().shown);
  EXPECT_EQ(addressWithSecrets(name), GetParam().asked);
}

INSTANTIATE_TEST_SUITE_P(
    Each, RangeNameKey,
    testing::Values(
        Key{"Token", "http://k/a.tif?token=geheim", "http://k/a.tif?token=***"},
        Key{"ApiKey", "http://k/a.tif?api_key=geheim", "http://k/a.tif?api_key=***"},
        Key{"Signed", "http://k/a.tif?X-Amz-Signature=geheim", "http://k/a.tif?X-Amz-Signature=***"},
        Key{"TwoKeys", "http://k/a.tif?sig=geheim&token=geheim2", "http://k/a.tif?sig=***&token=***"},
        Key{"Between", "http://k/b.tif?v=1&key=geheim&w=2", "http://k/b.tif?v=1&key=***&w=2"},
        Key{"BlankInPath", "http://k/a%20b.tif?sig=geheim", "http://k/a%20b.tif?sig=***"}),
    [](const auto& each) { return each.param.label; });

TEST(RangeNameKeys, OfOneFileAreNoneOfItsNeighbors) {
  const std::string one = rangeRasterName("http://two/a.tif?sig=geheim1");
  const std::string other = rangeRasterName("http://two/b.tif?sig=geheim2");
  EXPECT_EQ(addressWithSecrets(one), "http://two/a.tif?sig=geheim1");
  EXPECT_EQ(addressWithSecrets(other), "http://two/b.tif?sig=geheim2");
  EXPECT_EQ(addressWithSecrets(nameOfAddress("http://two/c.tif?sig=***")), "http://two/c.tif?sig=***");
}

TEST(RangeNameKeys, LeaveNamesWithoutThemAsTheyAre) {
  EXPECT_EQ(addressWithSecrets(rangeRasterName("http://k/plain.tif")), "http://k/plain.tif");
  EXPECT_EQ(rangeRasterName("http://k/plain.tif#page=2"), rangeRasterName("http://k/plain.tif"));
  EXPECT_FALSE(addressWithSecrets("/data/a.tif"));
  EXPECT_EQ(shownPlace("/data/a.tif"), "/data/a.tif");
}

}  // namespace
}  // namespace vlclientui::client::ranges
