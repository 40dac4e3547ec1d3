// Input: any text, as the file of connections. What is written of it reads the same.

#include <sys/stat.h>

#include "Require.h"
#include "client/connections/ConnectionFile.h"
#include "contracts/RuntimeFailure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vlclientui;
  using fuzzing::require;
  static const fuzzing::ScratchFolder folder;
  const auto path = folder.file("connections.json", fuzzing::textOf(data, size));
  ::chmod(path.c_str(), 0600);
  const client::ConnectionFile file(path);
  std::size_t count = 0;
  try {
    count = file.read().size();
  } catch (const RuntimeFailure& failure) {
    require(!failure.description().empty(), "a refusal has words");
    return 0;
  }
  // From here on nothing is refused: what was read can be written, and a file of our own reads again.
  const auto write = [&] { file.change([](client::ConnectionFile::Connections& /*all*/) {}); };
  // What does not belong to a way to sign in is left out.
  write();
  const auto written = file.read();
  require(written.size() == count, "as many connections are written");
  write();
  require(file.read() == written, "connections that were written read the same");
  return 0;
}
