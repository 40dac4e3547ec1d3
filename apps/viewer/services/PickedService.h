#pragma once

#include <QString>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "client/facade/CatalogueImageService.h"
#include "host/Compose.h"
#include "host/ServiceView.h"

namespace vlclientui::viewer {

/// A picked service for two threads: dialogs use it on the user-interface thread, the map draws it on
/// another; neither waits for the other's pixels. Its export runs on a third thread under a progress window,
/// so that Cancel works at once; the caller waits for it.
class PickedService : public client::OVLCatalogueImageService,
                      public std::enable_shared_from_this<PickedService> {
 public:
  /// @param title for a person. @throws RuntimeFailure when the service cannot be read.
  PickedService(const host::ComposedHost& host, const std::string& reference, QString title);

  [[nodiscard]] std::string getProperty(const std::string& key) override;
  [[nodiscard]] std::string GetDefinition(std::int32_t kind) override;
  [[nodiscard]] std::string ServiceProperties() override;
  [[nodiscard]] std::string ServiceInfo() override;
  /// What is read from servers for it is read beside the windows, and can be given up there.
  /// @throws RuntimeFailure where it was.
  [[nodiscard]] std::string GetImageMetadata(const std::string& level) override;
  [[nodiscard]] std::string GetMetaData(const std::string& key) override;
  /// Why it failed is told in passing; the window that asked tells only that it did.
  [[nodiscard]] bool SaveProperties(const std::string& fileName) override;
  void ExportProperties(const std::string& request) override;
  /// Of a large export from a server the person sees the plan first; what was fetched until it breaks off may
  /// be kept, and taken up at once or by the next export to the same file.
  /// @throws RuntimeFailure when a person cancels it: that is no failure to be told of, and the export window
  /// stays as it is.
  [[nodiscard]] bool ExportImage() override;
  [[nodiscard]] std::string status() override;

  /// As setServiceProperties.
  void follow(const std::string& properties);
  /// Makes what a map shows of it the image last returned, as if it had been drawn so. Sources that only a
  /// catalogue told of are opened for it, which may take a while.
  /// @returns nothing where the map shows no part of it.
  [[nodiscard]] std::optional<host::ViewedPart> show(const host::GeographicEnvelope& view, int columns,
                                                     int rows);
  /// How it is drawn now, for any thread.
  [[nodiscard]] client::ServiceDrawing presentDrawing();
  /// As host::serviceMarks.
  [[nodiscard]] host::ServiceMarks marks();

  /// What came of the last try to export.
  enum class Attempt { None, Written, Canceled, Failed };
  [[nodiscard]] Attempt attempt() const { return attempt_; }
  /// How long it wrote.
  [[nodiscard]] std::chrono::milliseconds took() const { return took_; }

 private:
  [[nodiscard]] bool isToBegin();
  [[nodiscard]] std::optional<client::ExportForecast> plan();
  [[nodiscard]] bool tryOnce();
  [[nodiscard]] bool isToGoOn();

  std::shared_ptr<const Platform> platform_;
  QString title_;
  const bool asksServers_;
  Attempt attempt_ = Attempt::None;
  std::chrono::milliseconds took_{};
  std::recursive_mutex mutex_;
};

}  // namespace vlclientui::viewer
