#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"
#include "headless/HeadlessToolkit.h"
#include "support/FakeClient.h"
#include "support/RecordingPlexa.h"
#include "support/TestSystem.h"

namespace vlclientui::test {

/// A fake XML service for tests that read no document: it makes none.
class NoXml : public XmlService {
 public:
  std::unique_ptr<XmlDocument> createDocument() const override { throw RuntimeFailure("no documents here"); }
};

/// The calling thread with a platform of fakes, and without documents.
class FramePlatform : public testing::Test {
 protected:
  FramePlatform() { setPlatform(std::make_shared<Platform>(adapters())); }
  ~FramePlatform() override {
    setPlatform(nullptr);
    threadState() = {};
  }

  [[nodiscard]] Platform adapters() const { return {system, xml, toolkit, plexa, clientLibrary}; }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<NoXml> xml = std::make_shared<NoXml>();
  std::shared_ptr<headless::HeadlessToolkit> toolkit = std::make_shared<headless::HeadlessToolkit>();
  std::shared_ptr<RecordingPlexaFactory> plexa = std::make_shared<RecordingPlexaFactory>();
  std::shared_ptr<FakeClientLibrary> clientLibrary = std::make_shared<FakeClientLibrary>();
};

}  // namespace vlclientui::test
