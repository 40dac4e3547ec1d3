#include "scenarios/StrikingPlatform.h"

namespace vlclientui::test {

namespace {

/// One port before another. Whoever calls keeps it alive.
template <class Port>
class Struck {
 public:
  Struck(std::shared_ptr<Port> inner, Strike& strike) : inner_(std::move(inner)), strike_(strike) {}

 protected:
  [[nodiscard]] Port& called() const {
    strike_.call(Asked::Others);
    return *inner_;
  }
  [[nodiscard]] Port& uncounted() const { return *inner_; }
  [[nodiscard]] Strike& strike() const { return strike_; }

 private:
  std::shared_ptr<Port> inner_;
  Strike& strike_;
};

class StrikingKey final : public RegistryKey, Struck<RegistryKey> {
 public:
  using Struck::Struck;
  std::optional<RegistryValue> query(const std::string& name) const override { return called().query(name); }
};

class StrikingSystem final : public System, Struck<System> {
 public:
  using Struck::Struck;
  std::optional<std::string> shellFolder(std::int32_t folderId) override {
    return called().shellFolder(folderId);
  }
  std::optional<std::string> environment(const std::string& name) override {
    return called().environment(name);
  }
  std::unique_ptr<RegistryKey> openRegistryKey(RegistryHive hive, const std::string& key) override {
    std::shared_ptr<RegistryKey> opened = called().openRegistryKey(hive, key);
    if (!opened) return nullptr;
    return std::make_unique<StrikingKey>(std::move(opened), strike());
  }
  bool makeSureDirectoryPathExists(const std::string& path) override {
    return called().makeSureDirectoryPathExists(path);
  }
  std::string firstDirectoryEntry(const std::string& path) override {
    return called().firstDirectoryEntry(path);
  }
  std::int64_t fileLength(const std::string& path) override { return called().fileLength(path); }
  bool fileExists(const std::string& path) override { return called().fileExists(path); }
  bool folderExists(const std::string& path) override { return called().folderExists(path); }
  void launch(const std::string& commandText) override { called().launch(commandText); }
  std::int32_t userLocale() override { return called().userLocale(); }
  std::int32_t localeInfo(std::int32_t locale, std::int32_t item, std::string& buffer,
                          std::int32_t size) override {
    return called().localeInfo(locale, item, buffer, size);
  }
  LocaleFormat localeFormat() override { return uncounted().localeFormat(); }
  std::string nativePath(const std::string& path) const override { return uncounted().nativePath(path); }
  std::string logicPath(const std::string& nativePath) const override {
    return uncounted().logicPath(nativePath);
  }
};

class StrikingDocument final : public XmlDocument, Struck<XmlDocument> {
 public:
  using Struck::Struck;
  bool loadXml(std::string_view text) override { return called().loadXml(text); }
  bool load(const std::string& path) override { return called().load(path); }
  void save(const std::string& path) const override { called().save(path); }
  XmlNodePtr documentElement() const override { return uncounted().documentElement(); }
  std::vector<XmlNodePtr> childNodes() const override { return uncounted().childNodes(); }
  XmlNodePtr selectSingleNode(std::string_view path) const override {
    return uncounted().selectSingleNode(path);
  }
  std::vector<XmlNodePtr> selectNodes(std::string_view path) const override {
    return uncounted().selectNodes(path);
  }
  XmlNodePtr createElement(std::string_view name) override { return uncounted().createElement(name); }
  XmlNodePtr createNode(XmlNodeKind kind, std::string_view name, std::string_view nameSpace) override {
    return uncounted().createNode(kind, name, nameSpace);
  }
  XmlNodePtr appendChild(const XmlNodePtr& child) override { return uncounted().appendChild(child); }
  std::string xml() const override { return uncounted().xml(); }
};

class StrikingXml final : public XmlService, Struck<XmlService> {
 public:
  using Struck::Struck;
  std::unique_ptr<XmlDocument> createDocument() const override {
    return std::make_unique<StrikingDocument>(called().createDocument(), strike());
  }
};

class StrikingPaths final : public InstallPaths, Struck<InstallPaths> {
 public:
  using Struck::Struck;
  std::string GetPath(std::int32_t kind) override { return called().GetPath(kind); }
};

class StrikingStatus final : public ClientStatus, Struck<ClientStatus> {
 public:
  using Struck::Struck;
  std::string GetText(const std::string& statusXml) override { return called().GetText(statusXml); }
};

class StrikingLibrary final : public ClientLibrary, Struck<ClientLibrary> {
 public:
  using Struck::Struck;
  std::unique_ptr<InstallPaths> createInstallPaths() override {
    return std::make_unique<StrikingPaths>(called().createInstallPaths(), strike());
  }
  std::unique_ptr<ClientStatus> createClientStatus() override {
    return std::make_unique<StrikingStatus>(called().createClientStatus(), strike());
  }
  std::string serverToShow(const std::string& typed) override { return called().serverToShow(typed); }
};

}  // namespace

std::shared_ptr<System> strikingSystem(std::shared_ptr<System> inner, Strike& strike) {
  return std::make_shared<StrikingSystem>(std::move(inner), strike);
}

std::shared_ptr<XmlService> strikingXml(std::shared_ptr<XmlService> inner, Strike& strike) {
  return std::make_shared<StrikingXml>(std::move(inner), strike);
}

std::shared_ptr<ClientLibrary> strikingLibrary(std::shared_ptr<ClientLibrary> inner, Strike& strike) {
  return std::make_shared<StrikingLibrary>(std::move(inner), strike);
}

}  // namespace vlclientui::test
