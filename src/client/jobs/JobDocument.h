#pragma once

#include <filesystem>
#include <string>

#include "client/jobs/ExportJob.h"

#pragma GCC visibility push(default)
namespace vlclientui {
class XmlService;
}

/// Jobs as XML; docs/jobs.md describes it, and definitions/job.xsd is its schema.
namespace vlclientui::client {

/// The ending of their files, with the point.
inline constexpr const char* jobEnding = ".VLJob";

/// The element `VLJob` as a document, for reading by a person as well.
[[nodiscard]] std::string jobDocument(const ExportJob& job, const XmlService& xml);

/// Reads and checks the whole document first. One that holds a single job somewhere inside counts too, such
/// as the metadata beside an image.
/// @param document the text. @param folder native, from which relative paths in the document count. @param
/// xml reads it.
/// @throws RuntimeFailure that says what is wrong, as a sentence for a person without the name of the file.
[[nodiscard]] ExportJob readJob(const std::string& document, const std::filesystem::path& folder,
                                const XmlService& xml);

/// Writes the file whole or not at all. @param job that is written. @param file native. @param xml makes the
/// document. @throws RuntimeFailure when it cannot be written.
void saveJob(const ExportJob& job, const std::filesystem::path& file, const XmlService& xml);

/// Reads a job from a file. @param file native. @param xml reads it. @throws RuntimeFailure that names the
/// file and says why it is no job.
[[nodiscard]] ExportJob openJob(const std::filesystem::path& file, const XmlService& xml);

}  // namespace vlclientui::client
#pragma GCC visibility pop
