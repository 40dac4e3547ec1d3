#pragma once

#include <cstdint>
#include <string>

#include "contracts/controls/Form.h"
#include "metadata/MetadataControls.h"
#include "metadata/MetadataDocuments.h"
#include "metadata/MetadataViewerDifferences.h"
#include "metadata/TreeEngine.h"

namespace vlclientui {

/// One of the two windows, as the routines of the viewer see it.
struct MetadataWindow {
  Form& form;
  MetadataFields& fields;
  MetadataControls& controls;
  const MetadataViewerDifferences& differences;
};

/// The three texts that a page is made of.
struct PageTexts {
  std::string attributeDefinition;
  std::string formDefinition;
  std::string data;
};

/// Shows a read-only page in a frame, with a new engine in place of the former. A header in the form
/// definition never reaches the page. @throws RuntimeFailure
void showDefinedPage(const MetadataWindow& window, const Control& host, PageTexts texts);

/// The pages of the service, of the image and of the server process. Each of them ends quietly at its first
/// failure and leaves what it has shown.
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

/// A definition file as it stands now; empty when it is missing or does not parse.
[[nodiscard]] std::unique_ptr<XmlDocument> definitionFile(const std::string& path);
/// Cuts an element out and wraps it with the help block; empty when it is missing.
[[nodiscard]] std::string cutWithHelp(const XmlDocument& document, const char* path);
/// The same without help block, for form definitions.
[[nodiscard]] std::string cutPlain(const XmlDocument& document, const char* path);

}  // namespace vlclientui
