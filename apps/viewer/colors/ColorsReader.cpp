#include "viewer/colors/ColorsReader.h"

#include <QMetaObject>
#include <utility>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::viewer {
ColorsReader::ColorsReader(QObject* parent) : QObject(parent) { pool_.setMaxThreadCount(1); }

ColorsReader::~ColorsReader() {
  pool_.clear();
  work_.cancel();
  pool_.waitForDone();
}

void ColorsReader::giveUp() {
  ++question_;
  pool_.clear();
  work_.cancel();
  work_ = {};
}

void ColorsReader::begin(std::function<std::function<void()>()> work) {
  giveUp();
  pool_.start([this, work = std::move(work), question = question_, token = work_] {
    const client::CancelScope scope(token);
    std::function<void()> outcome;
    try {
      outcome = work();
    } catch (const RuntimeFailure& failure) {
      const QString problem = QString::fromStdString(failure.description());
      outcome = [this, problem] { emit failed(problem); };
    } catch (const std::exception& failure) {
      const QString problem = QString::fromUtf8(failure.what());
      outcome = [this, problem] { emit failed(problem); };
    }
    QMetaObject::invokeMethod(this, [this, question, outcome] {
      if (question == question_ && outcome) outcome();
    });
  });
}

// As far as the service is known: to open all sources of a server for their colors would take long.
void ColorsReader::readColors(const Drawing& drawing) {
  begin([this, drawing]() -> std::function<void()> {
    const auto colors = client::serviceColorsOf(*drawing->within(std::nullopt));
    if (!colors) return {};
    return [this, colors = *colors] { emit colorsRead(colors); };
  });
}

void ColorsReader::readWords(const Drawing& drawing) {
  begin([this, drawing]() -> std::function<void()> {
    const auto words = client::serviceWordsOf(*drawing->within(std::nullopt));
    return [this, words] { emit wordsRead(words); };
  });
}

void ColorsReader::readSpreads(const Drawing& drawing, const std::vector<int>& bands) {
  begin([this, drawing, bands]() -> std::function<void()> {
    const auto spreads = client::spreadsOf(*drawing->within(std::nullopt), bands);
    if (!spreads) return {};
    return [this, bands, spreads = *spreads] { emit spreadsRead(bands, spreads); };
  });
}

}  // namespace vlclientui::viewer
