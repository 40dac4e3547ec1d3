#pragma once

#include <functional>
#include <memory>
#include <string>

#include "contracts/Plexa.h"
#include "host/Compose.h"

class QString;
class QWidget;

/// Windows of a host on the toolkit of composeDesktopPlatform.
#pragma GCC visibility push(default)
namespace vlclientui::host {

/// The number to pass where a dialog asks for a window of the host, such as ShowPropertyPage. The page
/// becomes a child of the widget and may go into its layout. The number is never reused, even after the
/// widget is destroyed. @throws RuntimeFailure for a platform of another toolkit.
[[nodiscard]] WindowHandle windowHandleOf(const ComposedHost& host, QWidget& widget);

/// Hears what the library's windows tell in passing, such as the name of a file that was saved, as long as
/// the object lives. Nothing is heard on a platform of another toolkit.
class NewsListener {
 public:
  /// @param host of composeDesktopPlatform. @param hear called with one sentence at a time, on the thread of
  /// the windows.
  NewsListener(const ComposedHost& host, std::function<void(const QString& news)> hear);
  NewsListener(const NewsListener&) = delete;
  NewsListener& operator=(const NewsListener&) = delete;
  ~NewsListener();

 private:
  std::shared_ptr<Toolkit> toolkit_;
  int connection_ = 0;
};

/// Opens a help page on Ctrl+F1 in a window of the host, where no page of the library in it has its own.
/// @param window of the host. @param page file name without its ending.
void openHelpByKey(QWidget& window, const std::string& page);

/// Gives a letter to one widget of a page only, and none that the host's window around it has already.
void settleMnemonics(QWidget& page);

}  // namespace vlclientui::host
#pragma GCC visibility pop
