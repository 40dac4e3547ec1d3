#include "viewer/values/ValuesReader.h"

#include <QMetaObject>
#include <algorithm>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::viewer {
namespace {

constexpr int threads = 4;  // most of them may wait for servers

ReadValues readValues(const AskedService& service, const client::AskedPlace& place) {
  ReadValues read{service.name};
  const auto fail = [&](const QString& problem) {
    read.state = ReadValues::State::Failed;
    read.problem = problem;
  };
  try {
    const auto source = [&](const auto& area) { return service.drawing->within(area); };
    auto values = client::valuesAt(source, place);
    read.state = values ? ReadValues::State::Read : ReadValues::State::GivenUp;
    if (values) read.sources = *std::move(values);
  } catch (const RuntimeFailure& failure) {
    fail(QString::fromStdString(failure.description()));
  } catch (const std::exception& failure) {
    fail(QString::fromUtf8(failure.what()));
  }
  return read;
}

}  // namespace

ValuesReader::ValuesReader(QObject* parent) : QObject(parent) { pool_.setMaxThreadCount(threads); }

ValuesReader::~ValuesReader() {
  pool_.clear();
  work_.cancel();
  pool_.waitForDone();
}

void ValuesReader::ask(const std::vector<AskedService>& services, const client::AskedPlace& place) {
  giveUp();
  values_.clear();
  for (const AskedService& service : services) {
    const std::size_t number = values_.size();
    values_.push_back({service.name});
    pool_.start([this, service, place, number, question = question_, work = work_] {
      const client::CancelScope scope(work);
      const ReadValues read = readValues(service, place);
      QMetaObject::invokeMethod(this, [this, question, number, read] { take(question, number, read); });
    });
  }
  emit changed();
}

// What begins from now on is under a switch of its own.
void ValuesReader::giveUp() {
  ++question_;
  pool_.clear();
  work_.cancel();
  work_ = {};
  if (!isReading()) return;
  for (ReadValues& one : values_) {
    if (one.state == ReadValues::State::Reading) one.state = ReadValues::State::GivenUp;
  }
  emit changed();
}

bool ValuesReader::isReading() const {
  return std::ranges::find(values_, ReadValues::State::Reading, &ReadValues::state) != values_.end();
}

void ValuesReader::take(int question, std::size_t number, const ReadValues& read) {
  if (question != question_) return;
  values_[number] = read;
  emit changed();
}

}  // namespace vlclientui::viewer
