#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Boolean16.h"
#include "contracts/Object.h"
#include "contracts/Plexa.h"
#include "contracts/Silence.h"
#include "contracts/VorlaneClient.h"
#include "contracts/controls/Controls.h"
#include "frame/LiveObjects.h"
#include "selection/ServerInfoDocument.h"
#include "selection/ServiceFolders.h"

#pragma GCC visibility push(default)
namespace vlclientui {

class ServiceDetails;

/// The body of the add-service window. Its upper half gets the services of a server and lets a person browse
/// them in folders; it also remembers servers (ImageServicesControl.cpp). Its lower half collects references
/// (ImageServicesControlSelection.cpp).
///
/// Nearly every routine ends at its first failure without a message, and its caller continues. A person sees
/// only the message boxes shown here.
class ImageServicesControl : public Object,
                             public HostedControl,
                             public std::enable_shared_from_this<ImageServicesControl> {
 public:
  /// A list of texts in its order.
  using Collection = std::vector<std::string>;

  /// @param container null when a host makes the control without a window. @param name unique in the
  /// container.
  explicit ImageServicesControl(ControlContainer* container, std::string name = "ImageServicesControl1");
  ~ImageServicesControl() override;

  // The fields of the default interface.
  Collection myFile;  ///< set at hide: the selected list and an empty string at its end
  /// Of the older generation; null when a newer one was given.
  std::shared_ptr<IServerClient> myClient;
  ObjectPtr myOVLClient;                    ///< as given; a call fails when it is not an IOVLServerClient
  Collection MRUServers;                    ///< set at hide: the entries of the server box, each once
  Collection ServiceNames;                  ///< of the server now shown, after filtering
  std::string SelectedFile;                 ///< reference of the row last clicked or file last added
  std::string SelectedServer;               ///< server of the list now shown
  std::string myServerInfo;                 ///< the server info document last received
  Collection myFinalSelectedServices;       ///< never filled here
  Boolean16 FilterCalled = boolean16False;  ///< an extent was given
  /// Western edge of that extent, in degrees.
  double MyXMin = 0;
  /// Eastern edge.
  double myXMax = 0;
  /// Southern edge.
  double myYMin = 0;
  /// Northern edge.
  double myYMax = 0;
  std::int16_t TheListCount = 0;  ///< whether the selected list has entries: 1 or 0

  Label uiLblServerName{*this, "uiLblServerName", "Server &Name:"};  ///< caption of uiTxtBoxServerName
  /// The server; its list has those used before.
  TypingCombo uiTxtBoxServerName{*this, "uiTxtBoxServerName"};
  /// Lets a person choose a computer or a folder as server.
  Button uiBtnBrowseServer{*this, "uiBtnBrowseServer", "..."};
  /// Whether services beside the host's extent are left out.
  CheckBox Check1{*this, "Check1", "Only show services available in the current view's extent"};
  /// Takes the clicked row into the selected list, or opens its folder.
  Button SelectButton{*this, "SelectButton", "&Select"};
  /// Shows what the server tells of the clicked service.
  Button Info{*this, "Info", "&Properties..."};
  Label Label3{*this, "Label3", "Title:"};  ///< caption of Desc
  /// Title of the clicked service.
  TextBox Desc{*this, "Desc"};
  Label Label1{*this, "Label1", "Selected Services:"};  ///< caption of ListBox
  /// The references that are handed to the host.
  vlclientui::ListBox ListBox{*this, "ListBox"};
  /// Adds a file to the selected list.
  Button Browse{*this, "Browse", "&Browse..."};
  /// Takes the marked rows out of the selected list.
  Button Remove{*this, "Remove", "&Remove"};

  /// The selected list changed.
  Event<> abc;

  /// Loads the list for the first time, once per show and before the window appears. Ignores the filter.
  void ShowThePlexa();
  /// Rebuilds the engine's surface from ServiceNames.
  void OnLoad(Boolean16 ServerRunning);
  /// Appends a name to the services that OnLoad lets a person browse.
  void AddElementToStringArray(const std::string& stringToAdd);
  /// Fills the list from the position in the folders. Raises nothing, as plexaReset.
  void updateListView();
  /// Whether the list has no entries.
  [[nodiscard]] static bool isArrayEmpty(const ServiceFolders::StringArray& checkArr) {
    return checkArr.empty();
  }
  /// True detaches the engine's surface from this control's window.
  void plexaReset(Boolean16 reset);

  [[nodiscard]] std::string typeName() const override { return "ImageServicesControl"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

 protected:
  /// Fills the fields that a host reads, and remembers the servers.
  void onHide() override;

 private:
  void setDesign();
  void connectEvents();
  template <class Routine>
  bool visits(Routine&& routine, const RoutineName& name = std::source_location::current());

  // The service browser.
  void fillServerBox();
  std::string serverToAsk();
  void loadFirstTime();
  void RefreshServices();
  void refreshFromServer();
  void showSilentServer();
  void takeServices(Collection names, std::string serverInfo, std::shared_ptr<const XmlDocument> document);
  void rebuildSurface(bool serverRunning);
  void fillList();
  [[nodiscard]] const ServiceDetails& details();
  void replaceEngine();
  void showMessageRow(const char* values);
  void placeSurface();
  void moveServerToTop();
  void BrowseForServer();
  void detachEngine();
  [[nodiscard]] bool hasClient() const { return myClient || myOVLClient; }
  void tellThatClientIsMissing() const;
  [[nodiscard]] std::string askServer(const std::string& request) const;
  [[nodiscard]] ExtentTest extentTest() const;
  [[nodiscard]] bool IsKnownMruServer(const std::string& server) const;

  // The selected list.
  void myPlexa_Notify(const PlexaEvent& event);
  void rowDoubleClicked(const PlexaEvent& event);
  void rowClicked(const PlexaEvent& event);
  void showTitle(const std::string& shortName);
  void addSelectedFile();
  void addIfNew(const std::string& entry);
  void browseForFile();
  void removeSelected();
  void showInformation();
  [[nodiscard]] std::optional<std::string> informationDefinition(const std::string& path) const;
  void showInformationWindow(const std::string& attributeDefinition, const std::string& formDefinition,
                             const std::string& data);
  void releaseInformationEngine();
  [[nodiscard]] WindowHandle findListWindow() const;
  [[nodiscard]] bool ListHasEntry(const std::string& text) const;
  [[nodiscard]] std::string referenceTo(const std::string& path) const;
  void publishListChange();

  LiveObject alive_;
  Form* const window_;  ///< null for a control that a host places nowhere
  std::shared_ptr<Plexa> myPlexa_;
  std::shared_ptr<Plexa> informationPlexa_;
  std::shared_ptr<ServiceFolders> folders_;
  ServiceFolders::StringArray serviceFolderNames_;
  struct DetailsOfAnswer;
  std::shared_ptr<const DetailsOfAnswer> details_;
  struct ParsedAnswer;
  std::weak_ptr<ParsedAnswer> answer_;  ///< only while the list is filled from it
  std::string requestXml_;
  std::string lastListValues_;
  std::string lastClickedPath_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
