#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contracts/Object.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A named rectangle in the units of its service. Its five properties are texts at the interface: coordinates
/// are kept as numbers, read and written under the user's locale. A text that is not a number sets 0.
///
/// Hosts never hold one, so it does not keep the library in memory.
class Envelope : public Object {
 public:
  /// What the window lists it as.
  [[nodiscard]] const std::string& Description() const { return description_; }
  /// @param text for a person, UTF-8.
  void Description(std::string text) { description_ = std::move(text); }
  /// Shortest form, up to 15 significant digits.
  [[nodiscard]] std::string XMin() const;
  /// Left edge. @param text a number; see above for any other.
  void XMin(const std::string& text);
  /// Right edge, in the same form.
  [[nodiscard]] std::string XMax() const;
  /// Right edge.
  void XMax(const std::string& text);
  /// Lower edge, in the same form.
  [[nodiscard]] std::string YMin() const;
  /// Lower edge.
  void YMin(const std::string& text);
  /// Upper edge, in the same form.
  [[nodiscard]] std::string YMax() const;
  /// Upper edge.
  void YMax(const std::string& text);

  [[nodiscard]] std::string typeName() const override { return "Envelope"; }
  [[nodiscard]] Object* queryInterface(std::string_view interfaceName) override;

 private:
  std::string description_;
  double xMin_ = 0;
  double xMax_ = 0;
  double yMin_ = 0;
  double yMax_ = 0;
};

/// CustomEnvelopes: the extents that a host passed last. One list per process, so a host must use its export
/// objects on one thread.
[[nodiscard]] std::vector<std::shared_ptr<Envelope>>& customEnvelopes();

}  // namespace vlclientui
#pragma GCC visibility pop
