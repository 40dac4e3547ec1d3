#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "scenarios/ServiceScenarios.h"
#include "scenarios/SweepStage.h"
#include "support/FakeClient.h"

namespace vlclientui::test {

/// The library in a world that counts its calls: a window system, a form engine, the operating system, a
/// service of documents, a client library, a service with two rasters and a server, each of which tells the
/// strike before it answers.
class SweepWorld : public ServiceScenarios {
 public:
  SweepWorld();
  ~SweepWorld() override;
  void TestBody() override {}

  /// Makes everything anew, the files of the user too.
  void begin();
  /// Gives service and server their answers again, for another run at the same objects.
  void refresh();
  /// Drops what service, server and system remember of the calls.
  void forget();
  /// Expects that nothing of the case is left.
  void end();

  /// A person's acts in the modal window to come.
  void visit(Acts acts) const { toolkit->visits.push_back(std::move(acts)); }

  Strike strike;
  std::unique_ptr<SweepStage> stage;
  std::shared_ptr<StrikingToolkit> toolkit;
  std::shared_ptr<StrikingPlexaFactory> engines;
  std::shared_ptr<FakeServer> server = std::make_shared<FakeServer>();
  std::shared_ptr<IServerClient> client = std::make_shared<FakeServerClient>(server);
  using ServiceScenarios::service;
  using ServiceScenarios::system;

 private:
  void beginFiles() const;
};

/// One dialog object of a host with what a person does at it.
class SweepCase {
 public:
  virtual ~SweepCase() = default;
  /// The host's calls, and the person's acts in between.
  virtual void run() = 0;
  /// The window that is on show, or stands in the host's window; null for none.
  [[nodiscard]] virtual std::shared_ptr<Form> window() = 0;
  /// Closes it as the person or the host does.
  virtual void close() = 0;
  /// The host shows it. @returns the failure text; empty when it was shown.
  virtual std::string showAgain() = 0;
  /// The host lets go of the dialog object.
  virtual void release() = 0;
  /// What the host reads at the object.
  [[nodiscard]] virtual std::string told() = 0;
};

struct SweepScenario {
  std::string name;
  std::function<std::unique_ptr<SweepCase>(SweepWorld&)> make;
};

/// With underscores in place of blanks.
[[nodiscard]] std::string asTestName(std::string name);

/// All windows of the library.
[[nodiscard]] std::vector<SweepScenario> sweepScenarios();

}  // namespace vlclientui::test
