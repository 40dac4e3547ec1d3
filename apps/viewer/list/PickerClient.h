#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "client/facade/CatalogueServerClient.h"

namespace vlclientui::viewer {

/// The client that the add-service dialog asks: it reads a server's list on another thread. The host's
/// windows live on meanwhile, and what lasts can be given up in a window over them; nothing else takes input.
class PickerClient : public client::OVLCatalogueServerClient {
 public:
  /// @param told what each answer left out, on the thread of the windows; outlives the client.
  PickerClient(const std::shared_ptr<client::CatalogueServer>& server,
               std::function<void(const std::vector<client::LeftOut>&)> told);
  /// Gives up what is being read; that ends by itself.
  ~PickerClient() override;

  /// Empty where it was given up, as for a server that does not answer.
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;

 private:
  struct Reading;

  std::shared_ptr<client::CatalogueServer> server_;
  std::function<void(const std::vector<client::LeftOut>&)> told_;
  std::shared_ptr<Reading> last_;
};

}  // namespace vlclientui::viewer
