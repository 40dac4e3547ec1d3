// vlhost as a program: its connections, and secrets that are typed on its command line.
#include <array>
#include <csignal>
#include <fstream>
#include <functional>
#include <sstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* password = "hemlig-ord";

struct Ran {
  int code = -1;
  std::string output;
  std::string errors;
};

std::string textOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

std::string quoted(const std::string& word) {
  std::string text = "'";
  for (const char letter : word) text += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return text + "'";
}

class ConnectionsProgram : public testing::Test {
 protected:
  [[nodiscard]] fs::path path(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] fs::path connectionsFile() const {
    return path("data/VLClientUI/connections/connections.json");
  }
  [[nodiscard]] std::string environment() const {
    return "cd " + quoted(folder_.path().string()) + " && exec env HOME=" + quoted(folder_.path().string()) +
           " XDG_DATA_HOME=" + quoted(path("data").string()) + " VLCLIENTUI_HOME=" + quoted(sourceFolder()) +
           " DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere " + more + " ";
  }
  Ran run(const std::vector<std::string>& words, const std::string& input = "") {
    std::ofstream(path("stdin"), std::ios::binary) << input;
    std::string command = environment() + quoted(VL_VLHOST);
    for (const std::string& word : words) command += " " + quoted(word);
    command += " <stdin >stdout 2>stderr";
    const int status = std::system(command.c_str());
    Ran ran{WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOf(path("stdout")), textOf(path("stderr"))};
    everything_ += ran.output + ran.errors;
    fs::remove(path("stdin"));
    return ran;
  }
  /// All that was printed and written so far.
  [[nodiscard]] std::string everything() const {
    std::string all = everything_;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path()))
      if (entry.is_regular_file()) all += entry.path().string() + textOf(entry.path());
    return all;
  }
  /// What a person at a terminal sees who answers when the program asks.
  std::string atTerminal(const std::vector<std::string>& words,
                         const std::function<void(int terminal, pid_t process)>& answer, int& status) const {
    std::string command = environment() + quoted(VL_VLHOST);
    for (const std::string& word : words) command += " " + quoted(word);
    int terminal = -1;
    const pid_t process = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process == 0) {
      execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
    std::string seen;
    bool isAnswered = false;
    std::array<char, 512> piece{};
    for (ssize_t got = 0; (got = ::read(terminal, piece.data(), piece.size())) > 0;) {
      seen.append(piece.data(), static_cast<std::size_t>(got));
      if (isAnswered || seen.find("): ") == std::string::npos) continue;
      answer(terminal, process);
      isAnswered = true;
    }
    waitpid(process, &status, 0);
    ::close(terminal);
    return seen;
  }
  std::string atTerminal(const std::vector<std::string>& words, const std::string& typed, int& code) const {
    int status = 0;
    std::string seen = atTerminal(
        words, [&](int terminal, pid_t) { EXPECT_GT(::write(terminal, typed.data(), typed.size()), 0); },
        status);
    code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return seen;
  }

  std::string more;  ///< variables of the environment
  FaultProxy proxy_{MapServer::shared().address().substr(7)};

 private:
  TemporaryFolder folder_;
  std::string everything_;
};

TEST_F(ConnectionsProgram, AddsListsTriesUsesAndRemovesAConnection) {
  proxy_.always("wants=basic:ann:hemlig-ord");
  const Ran added =
      run({"connections", "add", "Home maps", proxy_.address("/wcs"), "--user", "ann"}, "hemlig-ord\n");
  EXPECT_EQ(added.code, 0) << added.errors;
  EXPECT_NE(added.output.find("added Home maps\nThe password is kept in the file '"), std::string::npos)
      << added.output;
  EXPECT_NE(added.errors.find("travels readable for everybody"), std::string::npos);
  EXPECT_EQ(fs::status(connectionsFile()).permissions(), fs::perms(0600));

  const Ran listed = run({"connections", "list"});
  EXPECT_NE(listed.output.find("Home maps  " + proxy_.address("/wcs") + "  user ann  file\n\n1 connection\n"),
            std::string::npos)
      << listed.output;
  EXPECT_EQ(run({"connections", "list", "--json"}).output,
            "[\n  {\n    \"name\": \"Home maps\",\n    \"address\": \"" + proxy_.address("/wcs") +
                "\",\n    \"user\": \"ann\",\n    \"kept\": \"file\"\n  }\n]\n");
  EXPECT_EQ(run({"connections", "try", "home maps"}).output, "The server answers, with 7 services.\n");

  const Ran services = run({"services", "Home maps", "--json"});
  EXPECT_NE(services.output.find("\"ImageService://Home maps/World/EGM96_Geoid\""), std::string::npos);
  const Ran exported = run({"export", "ImageService://Home maps/World/EGM96_Geoid", "--cols", "72", "--rows",
                            "36", "--metadata", "-o", "geoid.Tif"});
  EXPECT_EQ(exported.code, 0) << exported.errors;

  EXPECT_EQ(run({"connections", "remove", "Home maps"}).output, "removed Home maps\n");
  EXPECT_EQ(run({"connections", "list", "--json"}).output, "[]\n");
  EXPECT_EQ(everything().find(password), std::string::npos);
  EXPECT_EQ(run({"connections", "remove", "Home maps"}).code, 1);
  EXPECT_EQ(run({"connections", "try", "Home maps"}).code, 1);
}

TEST_F(ConnectionsProgram, AsksForAPasswordAtATerminalAndDoesNotShowIt) {
  int code = -1;
  const std::string seen = atTerminal(
      {"connections", "add", "Home", "https://maps.example/wcs", "--user", "ann"}, "hemlig-ord\n", code);
  EXPECT_EQ(code, 0) << seen;
  EXPECT_NE(seen.find("Password of ann for 'Home' (https://maps.example/wcs): "), std::string::npos) << seen;
  EXPECT_EQ(seen.find(password), std::string::npos) << seen;
  EXPECT_NE(textOf(connectionsFile()).find(password), std::string::npos);
}

TEST_F(ConnectionsProgram, AddsNothingWhereTheQuestionIsGivenUp) {
  int code = -1;
  const std::string seen =
      atTerminal({"connections", "add", "Home", "https://maps.example/wcs", "--token"}, "half\x03", code);
  EXPECT_EQ(code, 1);
  EXPECT_NE(seen.find("The token is missing."), std::string::npos) << seen;
  EXPECT_FALSE(fs::exists(connectionsFile()));
}

TEST_F(ConnectionsProgram, LeavesATerminalWithEchoWhereASignalEndsItsQuestion) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    termios before{};
    termios after{};
    int status = 0;
    atTerminal(
        {"connections", "add", "Home", proxy_.address("/wcs"), "--user", "ann"},
        [&](int terminal, pid_t process) {
          const int seenBy = ::open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
          tcgetattr(seenBy, &before);
          kill(process, signal);
          waitpid(process, &status, 0);
          tcgetattr(seenBy, &after);
          ::close(seenBy);
          EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        },
        status);
    EXPECT_EQ(before.c_lflag & ECHO, 0U);
    EXPECT_NE(after.c_lflag & ECHO, 0U);
    EXPECT_NE(after.c_lflag & ISIG, 0U);
  }
  EXPECT_FALSE(fs::exists(connectionsFile()));
}

TEST_F(ConnectionsProgram, TakesATokenFromAFile) {
  std::ofstream(path("token")) << "hemlig-ord\r\nsecond line\n";
  EXPECT_EQ(run({"connections", "add", "Key", proxy_.address("/wcs"), "--token-parameter", "key",
                 "--password-file", "token", "--keep=file"})
                .code,
            0);
  fs::remove(path("token"));
  proxy_.always("wants=parameter:key:hemlig-ord");
  EXPECT_EQ(run({"connections", "try", "Key", "--json"}).output,
            "{\n  \"name\": \"Key\",\n  \"answers\": true,\n  \"services\": 7\n}\n");
  proxy_.always("wants=parameter:key:another");
  const Ran refused = run({"connections", "try", "Key", "--json"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.output.find("\"answers\": false"), std::string::npos);
  EXPECT_NE(refused.errors.find("status 401"), std::string::npos) << refused.errors;
  EXPECT_EQ((refused.output + refused.errors).find(password), std::string::npos);
  EXPECT_EQ(run({"connections", "add", "Key", proxy_.address("/wcs")}).code, 1);
  EXPECT_EQ(run({"connections", "add", "Key", proxy_.address("/wcs"), "--replace"}).output, "replaced Key\n");
  EXPECT_EQ(everything().find(password), std::string::npos);
}

TEST_F(ConnectionsProgram, KeepsNoPasswordThatIsWantedForASessionOnly) {
  EXPECT_EQ(
      run({"connections", "add", "Home", proxy_.address("/wcs"), "--user=ann", "--keep=session"}).output,
      "added Home\nThe password is kept nowhere; each command asks for it.\n");
  proxy_.always("wants=basic:ann:hemlig-ord");
  EXPECT_NE(run({"services", "Home"}).errors.find("status 401"), std::string::npos);
  int code = -1;
  const std::string seen = atTerminal({"services", "Home"}, "hemlig-ord\n", code);
  EXPECT_EQ(code, 0) << seen;
  EXPECT_NE(seen.find("World/EGM96_Geoid"), std::string::npos) << seen;
  EXPECT_EQ(everything().find(password), std::string::npos);
}

TEST_F(ConnectionsProgram, RefusesTheDesktopsStoreWhereItIsMissing) {
  const Ran ran = run({"connections", "add", "Home", "https://maps.example", "--user=ann", "--keep=desktop"},
                      "hemlig-ord\n");
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("The password cannot be kept: "), std::string::npos) << ran.errors;
  EXPECT_EQ(everything().find(password), std::string::npos);
}

TEST_F(ConnectionsProgram, ShowsAndWritesNoSecretThatStandsOnItsCommandLine) {
  proxy_.always("wants=basic:ann:hemlig-ord");
  more = "VLCLIENTUI_TRACE=trace.txt";
  const std::string server = "http://ann:hemlig-ord@" + proxy_.place() + "/wcs?api_key=nyckel-ord";
  const std::string reference = "ImageService://" + server + "/World/EGM96_Geoid";
  const Ran table = run({"services", server, "--verbose"});
  EXPECT_EQ(table.code, 0) << table.errors;
  EXPECT_NE(table.output.find("REFERENCE is ImageService://" + proxy_.address("/wcs") + "/NAME"),
            std::string::npos)
      << table.output;
  EXPECT_EQ(run({"services", server, "--json"}).code, 0);
  EXPECT_EQ(run({"services", server, "--xml"}).code, 0);
  EXPECT_EQ(run({"metadata", reference}).code, 0);
  EXPECT_EQ(run({"metadata", reference, "--service", "--save", "service.xml"}).code, 0);
  EXPECT_EQ(run({"properties", reference, "--save", "saved.VLRef"}).code, 0);
  EXPECT_EQ(run({"export", reference, "--cols=72", "--rows=36", "--metadata", "-o", "geoid.Tif"}).code, 0);
  EXPECT_EQ(run({"export", reference, "--dry-run", "--verbose", "-o", "geoid.Tif"}).code, 0);
  EXPECT_NE(
      textOf(path("saved.VLRef")).find("ImageService://" + proxy_.address("/wcs") + "/World/EGM96_Geoid"),
      std::string::npos);
  EXPECT_EQ(run({"metadata", reference, "too many"}).code, 2);
  EXPECT_EQ(run({"services", "--json", server + "x", server}).code, 2);
  EXPECT_EQ(run({"metadata", "ImageService://" + server + "/Nowhere"}).code, 1);
  proxy_.always("status=500");
  EXPECT_EQ(run({"services", server, "--verbose"}).code, 1);
  EXPECT_EQ(everything().find(password), std::string::npos);
  EXPECT_EQ(everything().find("nyckel-ord"), std::string::npos);
}

TEST_F(ConnectionsProgram, AsksForAConnectionWhereASavedReferenceLacksItsSecret) {
  proxy_.always("wants=basic:ann:hemlig-ord");
  const std::string reference =
      "ImageService://http://ann:hemlig-ord@" + proxy_.place() + "/wcs/World/EGM96_Geoid";
  EXPECT_EQ(run({"properties", reference, "--save", "saved.VLRef"}).code, 0);
  const Ran later = run({"metadata", "saved.VLRef"});
  EXPECT_EQ(later.code, 1);
  EXPECT_NE(later.errors.find("a connection to this address can keep it"), std::string::npos) << later.errors;
  run({"connections", "add", "Home", proxy_.address("/wcs"), "--user=ann"}, "hemlig-ord\n");
  EXPECT_EQ(run({"metadata", "saved.VLRef"}).code, 0);
}

TEST_F(ConnectionsProgram, TellsThatTheFileIsDamagedAndLeavesIt) {
  fs::create_directories(connectionsFile().parent_path());
  std::ofstream(connectionsFile()) << "{\"version\": 1, \"conn";
  for (const auto& words : std::vector<std::vector<std::string>>{{"connections", "list"},
                                                                 {"connections", "add", "a", "https://b"},
                                                                 {"connections", "remove", "a"}}) {
    const Ran ran = run(words);
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find("is damaged"), std::string::npos) << ran.errors;
  }
  EXPECT_EQ(textOf(connectionsFile()), "{\"version\": 1, \"conn");
  EXPECT_EQ(run({"services", proxy_.address("/wcs")}).code, 0);
}

TEST_F(ConnectionsProgram, RefusesASecondWayToSignInBesideThatOfTheAddress) {
  std::ofstream(path("word")) << "hemlig-ord\n";
  const std::string file = "--password-file=" + path("word").string();
  const auto refusal = [&](const std::vector<std::string>& options, const std::string& address) {
    std::vector<std::string> words = {"connections", "add", "Home", address};
    words.insert(words.end(), options.begin(), options.end());
    const Ran ran = run(words);
    EXPECT_EQ(ran.code, 2) << ran.output;
    EXPECT_EQ(ran.errors.find("annat-ord"), std::string::npos) << ran.errors;
    return ran.errors;
  };
  const std::string user = "http://ann:annat-ord@" + proxy_.place() + "/wcs";
  EXPECT_NE(refusal({"--user=bob"}, user).find("the address tells who signs in already"), std::string::npos);
  EXPECT_NE(refusal({"--user=bob", file}, user).find("'--user'"), std::string::npos);
  EXPECT_NE(refusal({file}, user).find("'--password-file'"), std::string::npos);
  EXPECT_NE(refusal({"--token"}, proxy_.address("/wcs") + "?key=annat-ord").find("'--token'"),
            std::string::npos);
  EXPECT_FALSE(fs::exists(connectionsFile()));
  EXPECT_EQ(run({"connections", "add", "Home", "http://ann@" + proxy_.place() + "/wcs", file}).code, 0);
}

TEST_F(ConnectionsProgram, RefusesWhatMakesNoSense) {
  for (const auto& words :
       std::vector<std::vector<std::string>>{{"connections"},
                                             {"connections", "show"},
                                             {"connections", "add"},
                                             {"connections", "add", "a"},
                                             {"connections", "add", "a", "https://b", "c"},
                                             {"connections", "add", "a", "https://b", "--user"},
                                             {"connections", "add", "a", "https://b", "--user=x", "--token"},
                                             {"connections", "list", "--token"},
                                             {"connections", "add", "a", "https://b", "--keep=here"},
                                             {"connections", "add", "a", "https://b", "--yaml"},
                                             {"connections", "list", "a"},
                                             {"connections", "try"},
                                             {"connections", "remove"}}) {
    EXPECT_EQ(run(words).code, 2) << words.back();
  }
  EXPECT_EQ(run({"connections", "add", "a/b", "https://c"}).code, 1);
  EXPECT_EQ(run({"connections", "--help"}).output.find("vlhost connections keeps servers"), 0U);
  EXPECT_NE(run({"--help"}).output.find("  connections "), std::string::npos);
}

}  // namespace
}  // namespace vlclientui::test
