#pragma once

#include <string>

// Folders that tests read from, without a separator at their end. They stand in one source file, so that no
// other depends on where the project lies, and a compiler cache serves every checkout.
namespace vlclientui {

// The root of the project.
const std::string& sourceFolder();
// The text of one of its files. @param name below the root, such as "definitions/VLClient.XADef"; empty for a
// file that is not there.
std::string sourceFileText(const std::string& name);
// Documents and tables of the tests.
const std::string& testDataFolder();
// The sample catalogue that the build made.
const std::string& samplesFolder();
// What servers need to offer that catalogue, made by the build, too.
const std::string& serverFilesFolder();

}  // namespace vlclientui
