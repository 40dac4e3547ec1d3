// Files of connections in every shape that a person or another program may leave, and books that share one.
#include "client/connections/ConnectionFile.h"
#include "client/connections/ConnectionFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class ConnectionShapes : public ConnectionFixture {
 protected:
  void write(const std::string& text) const {
    fs::create_directories(folder());
    std::ofstream(file(), std::ios::binary | std::ios::trunc) << text;
  }
  void writeEntry(const std::string& members) const {
    write(R"({"version": 1, "connections": [{)" + members + "}]}");
  }
  /// Why the file cannot be used; empty where it can.
  [[nodiscard]] std::string readingIt() const {
    return refusal([&] { static_cast<void>(ConnectionFile(file()).read()); });
  }
  [[nodiscard]] static Names namesIn(const ConnectionBook& book) {
    Names names;
    for (const Connection& connection : book.connections()) names.push_back(connection.name);
    return names;
  }
  static ConnectionEdit plain(const std::string& name, const std::string& address) {
    Connection connection;
    connection.name = name;
    connection.address = address;
    return {connection, std::nullopt, SecretKeeping::Best, ""};
  }
};

TEST_F(ConnectionShapes, AreRefusedWhereTheDocumentIsAnother) {
  const std::string manyBrackets(100000, '[');
  for (const std::string& text :
       {std::string(" "),
        std::string("null"),
        std::string("7"),
        std::string("\"connections\""),
        std::string("{}"),
        std::string(R"({"version": 1})"),
        std::string(R"({"connections": []})"),
        std::string(R"({"version": null, "connections": []})"),
        std::string(R"({"version": "1", "connections": []})"),
        std::string(R"({"version": 0, "connections": []})"),
        std::string(R"({"version": -1, "connections": []})"),
        std::string(R"({"version": 1, "connections": 7})"),
        std::string(R"({"version": 1, "connections": "a"})"),
        std::string(R"({"version": 1, "connections": null})"),
        std::string(R"({"version": 1, "connections": {}})"),
        std::string(R"({"version": 1, "connections": {"a": {"name": "a", "address": "https://b"}}})"),
        std::string(R"({"version": 1, "connections": [7]})"),
        std::string(R"({"version": 1, "connections": [null]})"),
        std::string(R"({"version": 1, "connections": [[]]})"),
        std::string(R"({"version": 1, "connections": [],})"),
        std::string(R"({"version": 1, "connections": []} more)"),
        std::string(R"({'version': 1, 'connections': []})"),
        std::string("<connections/>"),
        std::string("\xFF\xFE{\0}\0", 6),
        std::string(4096, '\0'),
        manyBrackets}) {
    write(text);
    const std::string told = readingIt();
    EXPECT_NE(told.find("is damaged"), std::string::npos) << text.substr(0, 80);
    EXPECT_NE(told.find("It stays as it is"), std::string::npos) << told;
    EXPECT_NE(refusal([&] { ConnectionFile(file()).change([](auto& all) { all.clear(); }); }), "");
    EXPECT_EQ(written(), text);
  }
}

struct Shape {
  const char* members;  ///< of the only connection
  const char* reason;   ///< a part of what is told
};

TEST_F(ConnectionShapes, AreRefusedForOneConnectionThatIsWrong) {
  const std::string noDocument = "it is no document of connections";
  for (const Shape& shape : std::initializer_list<Shape>{
           {R"()", noDocument.c_str()},
           {R"("name": "a")", noDocument.c_str()},
           {R"("address": "https://b")", noDocument.c_str()},
           {R"("name": 7, "address": "https://b")", noDocument.c_str()},
           {R"("name": "a", "address": ["https://b"])", noDocument.c_str()},
           {R"("name": "a", "address": "https://b", "signIn": true)", noDocument.c_str()},
           {R"("name": "a", "address": "https://b", "kept": 1)", noDocument.c_str()},
           {R"("name": "a", "address": "https://b", "secret": {})", noDocument.c_str()},
           {R"("name": "a", "address": "https://b", "parameter": null)", noDocument.c_str()},
           {R"("name": "a\ud800", "address": "https://b")", noDocument.c_str()},
           {R"("name": "", "address": "https://b")", "A connection needs a name"},
           {R"("name": " a", "address": "https://b")", "without blanks at its ends"},
           {R"("name": "a\u0000", "address": "https://b")", "at most 100 bytes of text"},
           {R"("name": "a?b", "address": "https://b")", "must not hold any of"},
           {R"("name": "LocalHost", "address": "https://b")", "means something else"},
           {R"("name": "a", "address": "ftp://b")", "must begin with https:// or http://"},
           {R"("name": "a", "address": "https://u:p@b")", "must not hold a user"},
           {R"("name": "a", "address": "https://b?token=x")", "must not hold a user"},
           {R"("name": "a", "address": "https://b", "signIn": "Password")", "'Password' is unknown"},
           {R"("name": "a", "address": "https://b", "kept": "cloud")", "'cloud' is unknown"},
           {R"("name": "a", "address": "https://b", "signIn": "password")", "The user is missing"},
           {R"("name": "a", "address": "https://b", "signIn": "password", "user": "u:v")", "without a colon"},
           {R"("name": "a", "address": "https://b", "signIn": "token", "parameter": "")", "needs a name"},
           {R"("name": "a", "address": "https://b", "signIn": "token", "header": "a b")", "is no header"},
           {R"("name": "a", "address": "https://b", "signIn": "token", "header": "HOST")", "is no header"}}) {
    writeEntry(shape.members);
    const std::string told = readingIt();
    EXPECT_NE(told.find(shape.reason), std::string::npos) << shape.members << ": " << told;
  }
}

TEST_F(ConnectionShapes, NeedLittleAndForgiveWhatTheyDoNotKnow) {
  writeEntry(R"("name": "a", "address": "https://b")");
  ASSERT_EQ(ConnectionFile(file()).read().size(), 1U);
  const Connection least = ConnectionFile(file()).read().front().connection;
  EXPECT_EQ(least, plain("a", "https://b").connection);
  writeEntry(R"("color": [1], "signIn": "token", "address": "https://[::1]:8080/a", "header": "X-Key",
                "kept": "session", "name": "Zürich")");
  const Connection found = ConnectionFile(file()).read().front().connection;
  EXPECT_EQ(found.name, "Zürich");
  EXPECT_EQ(found.tokenName, "X-Key");
  EXPECT_EQ(found.tokenPlace, TokenPlace::Header);
  EXPECT_EQ(found.kept, SecretPlace::Session);
  write("\xEF\xBB\xBF{\"version\": 1, \"connections\": []}\r\n\r\n");
  EXPECT_EQ(readingIt(), "");
}

TEST_F(ConnectionShapes, AreWrittenSoThatEveryKindIsReadBack) {
  ConnectionFile::Connections all;
  for (const SecretPlace kept : {SecretPlace::Desktop, SecretPlace::File, SecretPlace::Session}) {
    const auto number = std::to_string(static_cast<int>(kept));
    const std::string secret = kept == SecretPlace::File ? "\"\\ \xC3\xA9 </" : "";
    const std::string key = kept == SecretPlace::Desktop ? "VLClientUI-1" : "";
    all.push_back({{"p" + number, "https://b", SignIn::Password, "ann \"x\""}, secret, key});
    all.push_back(
        {{"h" + number, "http://[::1]:81/a?b=c", SignIn::Token, "", TokenPlace::Header, "X"}, secret, key});
    all.push_back(
        {{"q" + number, "https://b/", SignIn::Token, "", TokenPlace::Parameter, "k e&y"}, secret, key});
    for (std::size_t i = all.size() - 3; i < all.size(); ++i) all[i].connection.kept = kept;
  }
  ConnectionFile(file()).change([&](ConnectionFile::Connections& there) { there = all; });
  const ConnectionFile::Connections again = ConnectionFile(file()).read();
  ASSERT_EQ(again.size(), all.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(again[i].connection, all[i].connection) << all[i].connection.name;
    EXPECT_EQ(again[i].secret, all[i].secret) << all[i].connection.name;
    EXPECT_EQ(again[i].secretKey, all[i].secretKey) << all[i].connection.name;
  }
}

TEST_F(ConnectionShapes, StayAsTheyAreWhereAnEditIsGivenUp) {
  openBook()->save(plain("Home", "https://maps.example"));
  const std::string before = written();
  EXPECT_EQ(refusal([&] {
              ConnectionFile(file()).change([](ConnectionFile::Connections& there) {
                there.clear();
                throw RuntimeFailure("given up");
              });
            }),
            "given up");
  EXPECT_EQ(written(), before);
  const PrivateFile::Stamp stamp = PrivateFile(file()).stamp();
  ConnectionFile(file()).change([](ConnectionFile::Connections& /*there*/) {});
  EXPECT_EQ(PrivateFile(file()).stamp(), stamp) << "nothing is written where nothing changes";
}

TEST_F(ConnectionShapes, OfTwoBooksBecomeOneInTheOrderOfTheirNames) {
  const auto one = openBook();
  const auto other = openBook();
  EXPECT_EQ(namesIn(*one), Names());
  EXPECT_EQ(namesIn(*other), Names());
  one->save(plain("m", "https://m.example"));
  other->save(plain("z", "https://z.example"));
  one->save(plain("a", "https://a.example"));
  other->save(plain("B", "https://b.example"));
  EXPECT_EQ(namesIn(*one), (Names{"B", "a", "m", "z"}));
  EXPECT_EQ(namesIn(*other), namesIn(*one));
  EXPECT_EQ(one->addressOf("Z"), "https://z.example");
}

TEST_F(ConnectionShapes, OfTwoBooksThatWantTheSameNameKeepTheFirst) {
  const auto one = openBook();
  const auto other = openBook();
  EXPECT_EQ(namesIn(*other), Names());
  one->save(plain("Home", "https://one.example"));
  EXPECT_EQ(refusal([&] { other->save(plain("HOME", "https://other.example")); }),
            "There is a connection 'Home' already");
  EXPECT_EQ(other->addressOf("home"), "https://one.example");
}

TEST_F(ConnectionShapes, ThatTheOtherBookRemovedOrRenamedAreNotBroughtBack) {
  const auto one = openBook();
  const auto other = openBook();
  one->save(plain("Home", "https://one.example"));
  ConnectionEdit edit = plain("Home", "https://new.example");
  edit.replaced = "home";
  other->remove("Home");
  EXPECT_EQ(refusal([&] { one->save(edit); }), "There is no connection 'home' any more");
  one->save(plain("Home", "https://one.example"));
  ConnectionEdit renamed = plain("Away", "https://one.example");
  renamed.replaced = "Home";
  other->save(renamed);
  EXPECT_EQ(refusal([&] { one->save(edit); }), "There is no connection 'home' any more");
  EXPECT_EQ(refusal([&] { one->remove("Home"); }), "There is no connection 'Home'");
  EXPECT_EQ(namesIn(*one), Names{"Away"});
}

TEST_F(ConnectionShapes, OfBothBooksSendTheNewSecretOnceOneChangedIt) {
  const auto one = openBook();
  const auto other = openBook();
  one->save(withPassword("Home", "https://maps.example/maps"));
  EXPECT_EQ(credentialsFor(*other, "https://maps.example/maps").password, "hemlig-ord");
  ConnectionEdit edit = withPassword("Home", "https://maps.example/maps");
  edit.secret = "new-word";
  edit.replaced = "Home";
  one->save(edit);
  EXPECT_EQ(credentialsFor(*other, "https://MAPS.example:443/maps/a").password, "new-word");
  EXPECT_EQ(credentialsFor(*other, "https://maps.example/maps-secret").password, "");
  EXPECT_EQ(desktop->secrets.size(), 1U);
}

TEST_F(ConnectionShapes, AllowNamesThatArePlainTextAndNoPlaceOfTheirOwn) {
  for (const std::string& name :
       {std::string("a"), std::string("My maps"), std::string("Zürich (new)"), std::string("maps.example"),
        std::string("..."), std::string("127.0.0.2"), std::string("a & <b> \"c\" 'd'"), std::string("%41"),
        std::string(100, 'n')}) {
    EXPECT_EQ(problemOf(plain(name, "https://maps.example").connection), "") << name;
  }
  for (const std::string& name :
       {std::string("a "), std::string("\t"), std::string("a\tb"), std::string("a\x7F"), std::string("C:"),
        std::string("a@b"), std::string("a#b"), std::string("LOCALHOST"), std::string("."),
        std::string("\xC3"), std::string("\xED\xA0\x80"), std::string(101, 'n'), std::string("a\0b", 3)}) {
    EXPECT_NE(problemOf(plain(name, "https://maps.example").connection), "") << name;
  }
  EXPECT_TRUE(isSameName("My Maps", "mY mAPS"));
  EXPECT_FALSE(isSameName("ZÜRICH", "zürich")) << "letters of ASCII alone";
  EXPECT_FALSE(isSameName("a", "a "));
}

}  // namespace
}  // namespace vlclientui::client
