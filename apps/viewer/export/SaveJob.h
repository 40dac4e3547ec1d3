#pragma once

#include "client/jobs/ExportJob.h"

class QWidget;

namespace vlclientui {
class XmlService;
}

namespace vlclientui::viewer {

/// Asks a person for a file, proposed beside the image, and writes the job there, so that the command line or
/// another program makes the same file again. What goes wrong is told in a box.
void saveJobByPerson(const client::ExportJob& job, const XmlService& xml, QWidget* parent);

}  // namespace vlclientui::viewer
