#pragma once

#include <string>
#include <string_view>

namespace vlclientui::platform {

/// Paths with drives and backslashes to native paths, and back. Works on text alone and never looks at the
/// disk. Drive C is the user's home folder, drive Z the root of the file system.
///
/// To native:
/// - `C:\x\y` and `C:x\y` lie below the home folder, `Z:\x` below the root; drive letters in any case.
///   `\x` counts from drive C. "." and ".." are resolved and never lead out of the drive.
/// - Trailing blanks of a component are ignored, and so is a component of blanks: `C:\x \ ` is `C:\x\`. One
///   trailing separator is kept.
/// - `\\host\share` becomes `//host/share`; a relative path keeps its components. "/" separates as "\" does.
/// - A native absolute path (`/x`) passes unchanged, blanks included.
/// - Illegal: any other drive, and a NUL anywhere.
///
/// To logic: the home folder and everything below it lies on drive C, all else on drive Z; a path that has a
/// drive already passes unchanged. Illegal, since they could not be translated back: a component that holds a
/// backslash or ends in a blank, and a NUL.
class PathTranslation {
 public:
  /// @param homeFolder native and absolute; empty means the root.
  explicit PathTranslation(std::string_view homeFolder);
  /// With the home folder of the user: the variable HOME, or the user data base.
  [[nodiscard]] static PathTranslation ofUser();

  /// @throws RuntimeFailure for an illegal path.
  [[nodiscard]] std::string toNative(std::string_view path) const;
  /// @throws RuntimeFailure for an illegal path.
  [[nodiscard]] std::string toLogic(std::string_view nativePath) const;

  /// Without a trailing separator, so empty for the root.
  [[nodiscard]] const std::string& homeFolder() const { return home_; }

 private:
  std::string home_;
};

}  // namespace vlclientui::platform
