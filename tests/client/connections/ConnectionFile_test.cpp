// What stands in the file of connections, who may read it, and what becomes of it when things go wrong.
#include <algorithm>
#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "client/connections/ConnectionFixture.h"
#include "client/connections/PrivateFile.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class ConnectionFileTest : public ConnectionFixture {
 protected:
  void writeFile(const std::string& text) const {
    fs::create_directories(folder());
    std::ofstream(file(), std::ios::binary) << text;
  }
  /// The exit code of what a process of its own does; 99 for an exception.
  template <class Work>
  static pid_t inProcess(Work work) {
    const pid_t process = fork();
    if (process != 0) return process;
    int code = 99;
    try {
      code = work();
    } catch (const std::exception&) {
    }
    _exit(code);
  }
  static int exitCode(pid_t process) {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(folder())) found.push_back(entry.path().filename());
    std::ranges::sort(found);
    return found;
  }
};

TEST_F(ConnectionFileTest, HoldsWhatThePersonToldAndNoMore) {
  openBook()->save(withToken("Key", "https://maps.example/wcs", TokenPlace::Parameter, "key"));
  const std::string key = desktop->secrets.begin()->first;
  EXPECT_EQ(written(), R"({
  "version": 1,
  "connections": [
    {
      "name": "Key",
      "address": "https://maps.example/wcs",
      "signIn": "token",
      "parameter": "key",
      "kept": "desktop",
      "secretKey": ")" + key +
                           R"("
    }
  ]
}
)");
}

TEST_F(ConnectionFileTest, IsChangedByManyProcessesAtATimeAndLosesNothing) {
  constexpr int processes = 4;
  constexpr int each = 8;
  std::vector<pid_t> running;
  for (int i = 0; i < processes; ++i) {
    running.push_back(inProcess([&] {
      const auto book = openBook();
      for (int j = 0; j < each; ++j)
        book->save(
            withPassword("n" + std::to_string(i * each + j), "https://maps.example", SecretKeeping::File));
      return 0;
    }));
  }
  for (const pid_t process : running) EXPECT_EQ(exitCode(process), 0);
  EXPECT_EQ(openBook()->connections().size(), static_cast<std::size_t>(processes * each));
  EXPECT_EQ(names(), (std::vector<std::string>{"connections.json", "connections.json.lock"}));
}

TEST_F(ConnectionFileTest, StaysAsItWasWhereItCannotBeWritten) {
  openBook()->save(withPassword("Home", "https://maps.example", SecretKeeping::File));
  const std::string before = written();
  const int code = exitCode(inProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{16, 16};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto edit = withPassword("Other", "https://maps.example", SecretKeeping::File);
    return refusal([&] { openBook()->save(edit); }).find("cannot be written") != std::string::npos ? 7 : 1;
  }));
  EXPECT_EQ(code, 7);
  EXPECT_EQ(written(), before);
  EXPECT_EQ(names(), (std::vector<std::string>{"connections.json", "connections.json.lock"}));
}

TEST_F(ConnectionFileTest, LeavesNoSecretOnTheDesktopWhereItCannotBeWritten) {
  fs::create_directories(folder().parent_path());
  std::ofstream(folder().string()) << "a file where the folder should be";
  const auto book = openBook();
  EXPECT_NE(refusal([&] { book->save(withPassword("Home", "https://maps.example")); }), "");
  EXPECT_TRUE(desktop->secrets.empty());
}

TEST_F(ConnectionFileTest, ThatIsDamagedIsToldAndLeftAlone) {
  const std::string sound =
      R"({"version":1,"connections":[{"name":"a","address":"https://b","signIn":"password","user":"u","secret":"geheim"}]})";
  for (const std::string& damaged :
       {sound.substr(0, sound.size() - 4), std::string("geheim"), std::string(), std::string("[]"),
        std::string(R"({"version":2,"connections":[]})"),
        std::string(R"({"version":1,"connections":[{"name":"a"}]})"),
        std::string(R"({"version":1,"connections":[{"name":"a/b","address":"https://c"}]})"),
        std::string(R"({"version":1,"connections":[{"name":"a","address":"https://c","signIn":"geheim"}]})"),
        std::string(R"({"version":"geheim","connections":[]})")}) {
    writeFile(damaged);
    const auto book = openBook();
    const std::string told = refusal([&] { static_cast<void>(book->connections()); });
    EXPECT_NE(told.find("is damaged"), std::string::npos) << damaged;
    EXPECT_EQ(told.find("\"geheim"), std::string::npos) << told;
    EXPECT_EQ(refusal([&] { book->save(withPassword("Home", "https://maps.example")); }), told);
    EXPECT_EQ(refusal([&] { book->remove("a"); }), told);
    EXPECT_EQ(written(), damaged);
    EXPECT_TRUE(desktop->secrets.empty());
  }
}

TEST_F(ConnectionFileTest, ThatIsDamagedStopsNobodyWhoTypesAnAddress) {
  writeFile("{");
  const auto book = openBook();
  std::vector<std::string> told;
  const SilenceListener listener([&](const SilentEnd& end) { told.push_back(end.reason); });
  EXPECT_EQ(book->addressOf("maps.example"), "maps.example");
  EXPECT_EQ(book->withoutSecrets("http://ann:pw@maps.example"), "http://maps.example");
  EXPECT_EQ(credentialsFor(*book, "http://maps.example/a").password, "pw");
  const auto isOfDamage = [](const std::string& reason) {
    return reason.find("is damaged") != std::string::npos;
  };
  EXPECT_EQ(std::ranges::count_if(told, isOfDamage), 1);
  writeFile(R"({"version":1,"connections":[{"name":"Home","address":"https://maps.example"}]})");
  EXPECT_EQ(book->addressOf("Home"), "https://maps.example");
}

TEST_F(ConnectionFileTest, IsTakenFromOthersWhoCouldReadIt) {
  openBook()->save(withPassword("Home", "https://maps.example", SecretKeeping::File));
  fs::permissions(file(), fs::perms(0644));
  EXPECT_EQ(openBook()->connections().size(), 1U);
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0600));
  fs::permissions(folder(), fs::perms(0755));
  openBook()->save(withPassword("Other", "https://maps.example", SecretKeeping::File));
  EXPECT_EQ(fs::status(folder()).permissions(), fs::perms(0700));
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0600));
}

TEST_F(ConnectionFileTest, IsMadeForItsOwnerAloneWhateverTheMaskOfTheProcess) {
  const mode_t former = umask(0);
  openBook()->save(withPassword("Home", "https://maps.example", SecretKeeping::File));
  umask(former);
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(file().string() + ".lock").permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(folder()).permissions(), fs::perms(0700));
}

TEST_F(ConnectionFileTest, StaysALinkWhereItIsOne) {
  openBook()->save(withPassword("Home", "https://maps.example", SecretKeeping::File));
  const fs::path moved = folder().parent_path() / "elsewhere.json";
  fs::rename(file(), moved);
  fs::create_symlink(moved, file());
  openBook()->save(withPassword("Other", "https://maps.example", SecretKeeping::File));
  EXPECT_TRUE(fs::is_symlink(file()));
  EXPECT_EQ(openBook()->connections().size(), 2U);
}

TEST_F(ConnectionFileTest, MustBeAFileOfAReasonableSize) {
  fs::create_directories(file());
  EXPECT_NE(refusal([&] { static_cast<void>(openBook()->connections()); }), "");
  fs::remove(file());
  ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
  EXPECT_NE(refusal([&] { static_cast<void>(openBook()->connections()); }), "");
  fs::remove(file());
  writeFile("");
  fs::resize_file(file(), 5U << 20U);
  EXPECT_NE(refusal([&] { static_cast<void>(openBook()->connections()); }), "");
}

TEST(ConnectionsFolder, IsBelowTheUsersData) {
  const test::EnvironmentKeeper data("XDG_DATA_HOME", "/data/ann");
  EXPECT_EQ(connectionsFolder(), "/data/ann/VLClientUI/connections");
  const test::EnvironmentKeeper relative("XDG_DATA_HOME", "ann");
  const test::EnvironmentKeeper home("HOME", "/home/ann");
  EXPECT_EQ(connectionsFolder(), "/home/ann/.local/share/VLClientUI/connections");
  const test::EnvironmentKeeper nobody("HOME", std::nullopt);
  EXPECT_TRUE(connectionsFolder().empty());
}

}  // namespace
}  // namespace vlclientui::client
