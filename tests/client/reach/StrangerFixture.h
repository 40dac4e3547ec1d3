#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "client/RasterFixture.h"
#include "client/raster/GdalScope.h"
#include "client/reach/Places.h"

namespace vlclientui::test {

/// A server of this machine that nobody should ask; it answers nothing.
class UnaskedServer {
 public:
  UnaskedServer() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof place;
    auto* const address = reinterpret_cast<sockaddr*>(&place);
    if (bind(socket_, address, size) != 0 || listen(socket_, 8) != 0) throw std::runtime_error("no server");
    getsockname(socket_, address, &size);
    port_ = ntohs(place.sin_port);
  }
  ~UnaskedServer() { close(socket_); }
  UnaskedServer(const UnaskedServer&) = delete;
  UnaskedServer& operator=(const UnaskedServer&) = delete;

  [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/a.tif"; }
  [[nodiscard]] bool wasAsked() const {
    pollfd one{socket_, POLLIN, 0};
    return poll(&one, 1, 0) > 0;
  }
  /// Whoever asks is sent away, so that it does not wait.
  void sendAway() { shutdown(socket_, SHUT_RDWR); }

 private:
  int socket_;
  int port_ = 0;
};

/// A value of the environment that the places of this process know, as long as this lives.
class AllowedByEnvironment {
 public:
  AllowedByEnvironment(const char* variable, const std::string& value) : variable_(variable) {
    setenv(variable, value.c_str(), 1);
    client::Places::shared().learnAllowance();
  }
  ~AllowedByEnvironment() {
    unsetenv(variable_);
    client::Places::shared().learnAllowance();
  }
  AllowedByEnvironment(const AllowedByEnvironment&) = delete;
  AllowedByEnvironment& operator=(const AllowedByEnvironment&) = delete;

 private:
  const char* variable_;
};

/// What a stranger sent lies in sent/folder, so that its neighbors lie in sent; what is none of a stranger's
/// business lies in private.
class StrangerFixture : public RasterFixture {
 protected:
  StrangerFixture() {
    makeRaster("private/secret.tif");
    makeRaster("sent/folder/own.tif");
    makeRaster("sent/neighbor/tile.tif");
  }

  [[nodiscard]] std::string secret() const { return (folder() / "private/secret.tif").string(); }
  [[nodiscard]] std::string sent(const std::string& name) const {
    return (folder() / "sent/folder" / name).string();
  }

  /// A virtual raster that says how its source looks, so that it need not be opened at first.
  [[nodiscard]] static std::string mosaicOf(const std::string& source, const std::string& relative = "0") {
    return R"(<VRTDataset rasterXSize="8" rasterYSize="6"><VRTRasterBand dataType="Byte" band="1"><SimpleSource>)"
           R"(<SourceFilename relativeToVRT=")" +
           relative + R"(">)" + source +
           R"(</SourceFilename><SourceBand>1</SourceBand><SourceProperties RasterXSize="8" RasterYSize="6" )"
           R"(DataType="Byte" BlockXSize="8" BlockYSize="6"/></SimpleSource></VRTRasterBand></VRTDataset>)";
  }

  /// Opens a file and reads its pixels. @returns the failure, or nothing.
  [[nodiscard]] static std::string readWhole(const std::string& file) {
    const client::GdalScope scope;
    const client::DatasetPtr raster = client::openRaster(file);
    if (!raster) return scope.failures("it is not opened");
    std::array<unsigned char, 48> values{};
    const bool isRead = raster->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, 8, 6, values.data(), 8, 6, GDT_Byte,
                                                           0, 0, nullptr) == CE_None;
    raster->GetRasterBand(1)->GetOverviewCount();
    return scope.failures(isRead ? "" : "it is not read");
  }

  /// The same of a text under a name in the stranger's folder.
  [[nodiscard]] std::string readSent(const std::string& name, const std::string& text) const {
    return readWhole(writeText("sent/folder/" + name, text).string());
  }
};

}  // namespace vlclientui::test
