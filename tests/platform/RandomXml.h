#pragma once

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace vlclientui::platform {

/// Random documents and paths from a fixed seed.
class RandomXml {
 public:
  explicit RandomXml(unsigned seed) : random_(seed) {}

  /// Elements with few names, so that paths meet many of them.
  [[nodiscard]] std::string document() { return element(0); }

  /// Of the shape that callers write: names or "*" between slashes, indexes, an attribute at the end.
  [[nodiscard]] std::string path() {
    std::string text(any(origins));
    const std::size_t steps = 1 + below(4);
    for (std::size_t step = 0; step < steps; ++step) {
      if (step > 0) text += '/';
      text += below(5) == 0 ? std::string("*") : std::string(any(names));
      if (below(3) == 0) text += "[" + std::to_string(below(3)) + "]";
    }
    if (below(6) == 0) text += "/@" + std::string(any(attributeTexts));
    return text;
  }

  [[nodiscard]] std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

 private:
  static constexpr std::array<std::string_view, 4> names = {"a", "b", "Service", "x_1"};
  static constexpr std::array<std::string_view, 3> attributeTexts = {"n", "id", "none"};
  static constexpr std::array<std::string_view, 5> origins = {"", "/", "//", "./", ".//"};
  static constexpr std::array<std::string_view, 8> texts = {
      "one", "&lt;&amp;&gt;", "<![CDATA[ <raw> ]]>", "<!-- said -->", "<?ask more?>", "\xC3\xA9",
      " ",   "&#13;"};
  static constexpr std::size_t mostDepth = 6;

  template <std::size_t size>
  std::string_view any(const std::array<std::string_view, size>& choices) {
    return choices[below(size)];
  }

  std::string element(std::size_t depth) {
    const std::string name(any(names));
    std::string text = "<" + name;
    if (below(3) == 0) text += " n='" + std::to_string(below(9)) + "'";
    if (below(5) == 0) text += " id=\"&quot;&#9;'\"";
    text += ">";
    const std::size_t children = depth == mostDepth ? 0 : below(5);
    for (std::size_t child = 0; child < children; ++child) {
      text += below(4) == 0 ? std::string(any(texts)) : element(depth + 1);
    }
    return text + "</" + name + ">";
  }

  std::mt19937 random_;
};

}  // namespace vlclientui::platform
