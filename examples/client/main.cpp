// A host with a client of its own: the picker lists what this program knows, with no folder and no server
// behind it. example_client [picture.png]    with a picture the picker is closed by itself
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <exception>
#include <iostream>
#include <string>

#include "contracts/RuntimeFailure.h"
#include "contracts/VorlaneClient.h"
#include "host/Compose.h"
#include "library/ClassFactory.h"
#include "selection/ImageServicesDialogInterfaces.h"

using namespace vlclientui;

namespace {

std::string service(const std::string& name, const std::string& title) {
  return "<Service><Name>" + name + "</Name><ImageServiceInfo><Name>" + name + "</Name><KeyDetails><Title>" +
         title +
         "</Title></KeyDetails><NBands>1</NBands><PixelType>Byte</PixelType><GeographicEnvelope><XMin>6</"
         "XMin>"
         "<YMin>46</YMin><XMax>10</XMax><YMax>48</YMax></GeographicEnvelope></ImageServiceInfo></Service>";
}

/// Answers the one question that the picker asks. A client that cannot answer throws RuntimeFailure.
class ClientOfMine : public IOVLServerClient {
 public:
  Object* queryInterface(std::string_view name) override {
    return name == IOVLServerClient::interfaceName ? this : nullptr;
  }
  std::string GetServerInfo(const std::string& request) override {
    if (request.find("unknown") != std::string::npos) throw RuntimeFailure("there is no such server");
    std::cerr << "asked: " << request.substr(0, 60) << "...\n";
    return "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services>" +
           service("Winter", "The valley in winter") + service("Summer", "The valley in summer") +
           service("Plans/Roads", "Roads as planned") +
           "</Services></ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>";
  }
};

void closeWithPicture(const QString& picture) {
  QWidget* const window = QApplication::activeModalWidget();
  if (window == nullptr) return;
  window->grab().save(picture);
  window->close();
}

int run(const QApplication& application) {
  const auto host = host::start(host::composeDesktopPlatform({}));
  const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
  const QString picture = application.arguments().value(1);
  QTimer person;  // in a person's place, for whatever window comes
  QObject::connect(&person, &QTimer::timeout, [picture] { closeWithPicture(picture); });
  if (!picture.isEmpty()) person.start(300);
  if (!dialog->Init("", std::make_shared<ClientOfMine>()) || !dialog->ShowDialog()) {
    std::cerr << dialog->Status() << "\n";
    return 1;
  }
  std::cout << "picked: " << dialog->GetSelectedServices() << "\n";  // empty after Cancel
  return 0;
}

}  // namespace

int main(int argc, char** argv) try {
  const QApplication application(argc, argv);
  return run(application);
} catch (const std::exception& failure) {
  std::cerr << failure.what() << "\n";
  return 1;
}
