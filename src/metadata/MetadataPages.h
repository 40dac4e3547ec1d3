#pragma once

#include <cstdint>
#include <string>

#include "contracts/controls/Form.h"
#include "metadata/MetadataControls.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataViewerDifferences.h"
#include "metadata/TreeEngine.h"

namespace vlclientui {

/// One of the two windows, as the viewer's parts need it.
struct MetadataWindow {
  Form& form;
  MetadataFields& fields;
  MetadataControls& controls;
  const MetadataViewerDifferences& differences;
};

/// The three texts from which a page is made.
struct PageTexts {
  std::string attributeDefinition;
  std::string formDefinition;
  std::string data;
};

/// Replaces the engine and shows a read-only page in a frame. The header of the form definition is cut off.
/// @throws RuntimeFailure
void showDefinedPage(const MetadataWindow& window, const Control& host, PageTexts texts);

/// The pages of the service, of the image and of the server process. Each ends quietly at its first failure
/// and leaves what it has shown.
class MetadataPages {
 public:
  explicit MetadataPages(const MetadataWindow& window) : window_(window) {}

  /// The page of the selected tab of TabStrip2.
  void ShowServicePage();
  void ShowServiceInfoPage();
  void ShowServicePropertiesPage();
  void ShowServiceMetadataPage();
  void ShowImagePage();
  void ShowServerProcessPage();

  [[nodiscard]] TreeEngine& serverProcessEngine() { return myServerProcessEngine_; }

 private:
  [[nodiscard]] std::string imageData() const;
  [[nodiscard]] TreePlace processPlace() const;

  const MetadataWindow& window_;
  TreeEngine myServerProcessEngine_;
};

/// The definition file as it is on disk now; empty when it is missing or does not parse.
[[nodiscard]] std::unique_ptr<XmlDocument> definitionFile(const std::string& path);
/// The element wrapped with the help block; empty when the document lacks it.
[[nodiscard]] std::string cutWithHelp(const XmlDocument& document, const char* path);
/// The same without help block, for form definitions.
[[nodiscard]] std::string cutPlain(const XmlDocument& document, const char* path);

}  // namespace vlclientui
