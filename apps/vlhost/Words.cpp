#include "Words.h"

#include <iterator>
#include <sstream>

namespace vlclientui::vlhost {

Words::Words(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    const auto equals = argument.starts_with("--") ? argument.find('=') : std::string::npos;
    words_.push_back({argument.substr(0, equals), false});
    if (equals != std::string::npos) words_.push_back({argument.substr(equals + 1), true});
  }
}

std::string Words::take() {
  if (words_[next_].isJoined) throw surplus();
  return words_[next_++].text;
}

Misuse Words::surplus() const {
  auto option = next_ - 1;
  while (words_[option].isJoined) --option;
  const std::string taken =
      option + 1 == next_ ? "' takes no value" : "' takes no further value '" + words_[next_].text + "'";
  return Misuse("'" + words_[option].text + taken);
}

std::optional<std::string> Words::takeValue(bool (*accepts)(const std::string&)) {
  if (atEnd()) return std::nullopt;
  const Word& word = words_[next_];
  if (!word.isJoined && !accepts(word.text)) return std::nullopt;
  ++next_;
  return word.text;
}

void Words::splitJoinedValue() {
  if (atEnd() || !words_[next_].isJoined) return;
  std::istringstream values(words_[next_].text);
  std::vector<Word> split;
  for (std::string value; values >> value;) split.push_back({value, true});
  const auto place = words_.erase(words_.begin() + static_cast<std::ptrdiff_t>(next_));
  words_.insert(place, split.begin(), split.end());
}

std::string Words::takeFile(const std::string& option) {
  const auto file = takeValue([](const std::string& word) { return !word.starts_with("-"); });
  if (!file || file->empty()) throw Misuse("no file behind '" + option + "'");
  return *file;
}

}  // namespace vlclientui::vlhost
