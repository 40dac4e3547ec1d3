#include "metadata/SourceMetadata.h"

namespace vlclientui {

SourceMetadata::SourceMetadata(Toolkit& toolkit) : Form(toolkit, "SourceMetadata") {}

void SourceMetadata::RefreshTheForm() {}

std::shared_ptr<void> SourceMetadata::buildControls() { return nullptr; }

}  // namespace vlclientui
