#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Plexa.h"

namespace vlclientui::test {

/// A sub-control of a recording engine, as the definition drew it and as it was written to.
struct SubControlState {
  std::vector<std::string> entries;
  std::string text;
  std::optional<bool> visible;  ///< nothing until written
  std::optional<bool> enabled;
};

/// What all recording engines of one factory share: the calls in order, across engines, and the answers.
struct PlexaRecord {
  /// "1.ParentWindow 7": the engine's number (from 1), the operation, its value.
  std::vector<std::string> calls;
  std::string templateXml = "<Vorlane/>";
  bool showAnswer = true;
  std::string failAt;                    ///< operation that throws, such as "Show" or "SetOption List_Values"
  std::size_t failAtCall = 0;            ///< the call that throws, counted over all calls from 1; 0 for none
  std::function<void()> duringShow;      ///< run inside Show, while a separate window would be open
  std::optional<std::string> resultXml;  ///< what a person made of the data; else the data
  std::map<std::string, SubControlState> subControls;  ///< by "@" and name
  std::function<void(const std::string&)> onCall;      ///< told each call, before it may throw

  /// @param prefix the engine's number, or that and a sub-control's name.
  void log(const std::string& prefix, const std::string& operation, const std::string& value);
};

/// A fake form engine for tests: shows nothing, logs every call in order.
class RecordingPlexa : public Plexa {
 public:
  RecordingPlexa(std::shared_ptr<PlexaRecord> record, int number)
      : record_(std::move(record)), number_(number) {}
  ~RecordingPlexa() override;

  void ParentWindow(WindowHandle window) override { log("ParentWindow", std::to_string(window)); }
  void DataRootPath(const std::string& path) override { log("DataRootPath", path); }
  void Visible(bool visible) override { log("Visible", visible ? "true" : "false"); }
  void Caption(const std::string& caption) override { log("Caption", caption); }
  void Width(std::int32_t pixels) override { log("Width", std::to_string(pixels)); }
  void Height(std::int32_t pixels) override { log("Height", std::to_string(pixels)); }
  void Left(std::int32_t pixels) override { log("Left", std::to_string(pixels)); }
  void Top(std::int32_t pixels) override { log("Top", std::to_string(pixels)); }
  void DataXml(const std::string& xml) override { keep("DataXml", xml); }
  std::string DataXml() const override { return kept("DataXml"); }
  void AttributeDefinition(const std::string& text) override { keep("AttributeDefinition", text); }
  std::string AttributeDefinition() const override { return kept("AttributeDefinition"); }
  void FormDefinition(const std::string& text) override { keep("FormDefinition", text); }
  std::string FormDefinition() const override { return kept("FormDefinition"); }
  void ModalFrame(bool modal) override { log("ModalFrame", modal ? "true" : "false"); }
  void EmbeddedMode(bool embedded) override { log("EmbeddedMode", embedded ? "true" : "false"); }
  std::string GetResultXml() override;
  bool Commit() override;
  bool Show() override;
  std::string GetTemplateXml() override;
  bool SetOption(const std::string& name, const std::string& value) override;
  std::shared_ptr<PlexaControl> FindControl(const std::string& name) override;

 private:
  void log(const std::string& operation, const std::string& value = {});
  void keep(const std::string& property, const std::string& value);
  [[nodiscard]] std::string kept(const std::string& property) const;

  std::shared_ptr<PlexaRecord> record_;
  int number_;
  std::map<std::string, std::string> properties_;
};

class RecordingPlexaFactory : public PlexaFactory {
 public:
  RecordingPlexaFactory() : record(std::make_shared<PlexaRecord>()) {}
  std::shared_ptr<Plexa> createPlexa() override;

  /// Calls of all engines made after the given number of calls.
  [[nodiscard]] std::vector<std::string> callsFrom(std::size_t start) const;
  /// The engine of that number; null when it was released.
  [[nodiscard]] std::shared_ptr<RecordingPlexa> engine(int number) const;
  /// The last engine that was made and lives; null when there is none.
  [[nodiscard]] std::shared_ptr<RecordingPlexa> lastEngine() const;
  /// How many engines were made, released ones included.
  [[nodiscard]] std::size_t madeCount() const { return engines_.size(); }
  /// The last List_Values that any engine was given.
  [[nodiscard]] std::string lastListValues() const;

  std::shared_ptr<PlexaRecord> record;

 private:
  std::vector<std::weak_ptr<RecordingPlexa>> engines_;
};

}  // namespace vlclientui::test
