// Input: five texts with zero bytes between: what a server tells of its services, and service info, metadata,
// image metadata and properties of one of them. The windows show them, and a person goes through.

#include <memory>
#include <string>

#include "Require.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/VorlaneClient.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"
#include "engine/Engine.h"
#include "headless/HeadlessToolkit.h"
#include "host/Compose.h"
#include "host/Services.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

constexpr std::size_t mostRows = 6;
constexpr int runsOfOneToolkit = 500;

class Server final : public IOVLServerClient {
 public:
  explicit Server(std::string answer) : answer_(std::move(answer)) {}
  [[nodiscard]] std::string GetServerInfo(const std::string& /*request*/) override { return answer_; }

 private:
  std::string answer_;
};

void collect(const ControlContainer& container, std::vector<Control*>& found) {
  for (Control* const control : container.controls()) {
    found.push_back(control);
    if (const auto* const hosted = dynamic_cast<const HostedControl*>(control)) collect(*hosted, found);
  }
}

Control* controlOf(const Form& form, const std::string& name) {
  std::vector<Control*> all;
  collect(form, all);
  for (Control* const control : all) {
    if (control->name() == name) return control;
  }
  return nullptr;
}

void press(const Form& form, const std::string& name) {
  auto* const button = dynamic_cast<Button*>(controlOf(form, name));
  if (form.loaded() && button != nullptr) button->userClicks();
}

std::shared_ptr<engine::Engine> shownList() {
  for (engine::Engine* const each : engine::Engine::ofThread()) {
    if (each->showsList()) return each->shared_from_this();
  }
  return nullptr;
}

void pick(const Form& form) {
  for (std::size_t row = 0; row < mostRows; ++row) {
    if (const auto list = shownList()) list->rowClicked(row);
    press(form, "SelectButton");
    press(form, "Info");
    if (const auto list = shownList()) list->rowActivated(row);
    if (const auto list = shownList()) list->backspacePressed();
  }
  press(form, "uibtnok");
}

void showServices(headless::HeadlessToolkit& toolkit, const std::string& serverInfo) {
  const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
  toolkit.scriptModal([](Form& form) { pick(form); });
  static_cast<void>(dialog->Init("", std::make_shared<Server>(serverInfo)));
  static_cast<void>(dialog->ShowDialog());
  static_cast<void>(dialog->GetSelectedServices());
}

void lookThrough(const Form& form) {
  auto* const tree = dynamic_cast<TreeView*>(controlOf(form, "uiTreeView"));
  std::vector<std::string> keys;
  if (tree != nullptr) {
    for (const auto& node : tree->nodes()) keys.push_back(node.key);
  }
  for (std::size_t i = 0; i < keys.size() && i < mostRows && form.loaded(); ++i) tree->userSelects(keys[i]);
  press(form, "uibtnok");
}

void showProperties(headless::HeadlessToolkit& toolkit, std::string_view& input) {
  const auto dialog = queryInterface<IOVLServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
  static_cast<void>(dialog->Init("", nullptr, nullptr));
  dialog->serviceInfoXml(fuzzing::takePart(input));
  dialog->MetaDataXml(fuzzing::takePart(input));
  dialog->ImageMetaDataXml(fuzzing::takePart(input));
  dialog->ServicePropertiesXml(fuzzing::takePart(input));
  toolkit.scriptModal([](Form& form) { lookThrough(form); });
  static_cast<void>(dialog->ShowPropertiesModalDialog());
  static_cast<void>(dialog->ShowViewPointModalDialog());
  static_cast<void>(dialog->GetUpdatedProperties());
}

host::ComposedHost newHost() {
  static const fuzzing::ScratchFolder home;
  for (const char* const variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
    ::unsetenv(variable);
  ::setenv("HOME", home.path().c_str(), 1);
  host::HostOptions options;
  options.catalogue = home.path();
  options.home = VL_INSTALLATION;
  return host::start(host::composeHeadlessPlatform(options));
}

/// Toolkits record what they show.
const host::ComposedHost& presentHost() {
  static std::unique_ptr<host::ComposedHost> present;
  static int runs = 0;
  if (!present || ++runs % runsOfOneToolkit == 0) present = std::make_unique<host::ComposedHost>(newHost());
  return *present;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const host::ComposedHost& host = presentHost();
  auto& toolkit = dynamic_cast<headless::HeadlessToolkit&>(*host.platform->toolkit);
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string serverInfo = fuzzing::takePart(input);
  try {
    for (const auto& service : host::readServices(*host.platform->xml, serverInfo))
      require(!service.name.empty(), "a service has a name");
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
  }
  // Nothing is raised to a host here.
  showServices(toolkit, serverInfo);
  showProperties(toolkit, input);
  return 0;
}
