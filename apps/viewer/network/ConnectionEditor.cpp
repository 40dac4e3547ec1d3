#include "viewer/network/ConnectionEditor.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "host/DesktopWindows.h"
#include "widgets/ComboBoxNames.h"
#include "widgets/QtVersions.h"

namespace vlclientui::viewer {
namespace {

using client::SecretKeeping;
using client::SignIn;
using client::TokenPlace;

constexpr int leastWidth = 520;

enum Way { Nothing, User, HeaderToken, ParameterToken };

Way wayOf(const client::Connection& connection) {
  if (connection.signIn == SignIn::None) return Nothing;
  if (connection.signIn == SignIn::Password) return User;
  return connection.tokenPlace == TokenPlace::Header ? HeaderToken : ParameterToken;
}

QLineEdit* line(const char* name, const QString& toolTip) {
  auto* const box = new QLineEdit;
  box->setObjectName(name);
  box->setToolTip(toolTip);
  return box;
}

QComboBox* choice(const char* name, const QStringList& entries, const QString& toolTip) {
  auto* const box = new QComboBox;
  box->setObjectName(name);
  box->addItems(entries);
  box->setToolTip(toolTip);
  return box;
}

QLabel* wrapped(const char* name) {
  auto* const label = new QLabel;
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

ConnectionEditor::ConnectionEditor(ConnectionDraft draft, std::string file, Save save, QWidget* parent)
    : QDialog(parent), draft_(std::move(draft)), file_(std::move(file)), save_(std::move(save)) {
  setObjectName("ConnectionEditor");
  setWindowTitle(draft_.present ? tr("Edit connection") : tr("Add connection"));
  setMinimumWidth(leastWidth);
  build();
  fill();
  showFields();
  connect(address_, &QLineEdit::editingFinished, this, &ConnectionEditor::takeAddress);
  for (QLineEdit* const box : {name_, address_, user_, tokenName_, secret_})
    connect(box, &QLineEdit::textEdited, this, &ConnectionEditor::read);
  for (QComboBox* const box : {signIn_, keeping_})
    connect(box, qOverload<int>(&QComboBox::activated), this, [this] {
      read();
      showFields();
    });
  host::openHelpByKey(*this, "Connections");
}

void ConnectionEditor::build() {
  name_ = line("ConnectionName", tr("What you type in place of the address"));
  address_ = line("ConnectionAddress", tr("Begins with https:// or http://"));
  signIn_ =
      choice("ConnectionSignIn",
             {tr("Nothing"), tr("User and password"), tr("Token in a header"), tr("Token in a parameter")},
             tr("How the server knows who asks"));
  user_ = line("ConnectionUser", tr("Your name on the server"));
  tokenName_ = line("ConnectionTokenName", tr("In \"Authorization\" a token goes as \"Bearer ...\""));
  secret_ = line("ConnectionSecret", tr("Sent to this server only"));
  secret_->setEchoMode(QLineEdit::Password);
  keeping_ = choice("ConnectionKeeping",
                    {tr("On the desktop, else in a file"), tr("On the desktop only"), tr("In a file"),
                     tr("For this session only")},
                    tr("Where the password or token is kept"));
  words_ = wrapped("ConnectionWords");
  problem_ = wrapped("ConnectionProblem");
  fields_ = new QFormLayout;
  fields_->addRow(tr("&Name:"), name_);
  fields_->addRow(tr("&Address:"), address_);
  fields_->addRow(tr("&Sign in with:"), signIn_);
  fields_->addRow(tr("&User:"), user_);
  fields_->addRow(tr("&Header:"), tokenName_);
  fields_->addRow(tr("&Password:"), secret_);
  fields_->addRow(tr("&Keep it:"), keeping_);
  for (QComboBox* const box : {signIn_, keeping_}) widgets::nameByLabel(*box);
  wait_ = new WaitLine(tr("Waiting for the secret store of the desktop\u2026"));
  buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons_->button(QDialogButtonBox::Ok)->setObjectName("SaveConnection");
  connect(buttons_, &QDialogButtonBox::accepted, this, &ConnectionEditor::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &ConnectionEditor::reject);
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(fields_);
  rows->addWidget(words_);
  rows->addWidget(problem_);
  rows->addWidget(wait_);
  rows->addStretch(1);
  rows->addWidget(buttons_);
  problem_->hide();
}

void ConnectionEditor::fill() {
  const client::Connection& connection = draft_.connection;
  name_->setText(QString::fromStdString(connection.name));
  address_->setText(QString::fromStdString(connection.address));
  signIn_->setCurrentIndex(wayOf(connection));
  user_->setText(QString::fromStdString(connection.user));
  tokenName_->setText(QString::fromStdString(connection.tokenName));
  secret_->setText(QString::fromStdString(draft_.secret));
  keeping_->setCurrentIndex(static_cast<int>(draft_.keeping));
}

void ConnectionEditor::read() {
  client::Connection& connection = draft_.connection;
  const int way = signIn_->currentIndex();
  connection.name = name_->text().trimmed().toStdString();
  connection.address = address_->text().trimmed().toStdString();
  connection.user = user_->text().trimmed().toStdString();
  connection.tokenName = tokenName_->text().trimmed().toStdString();
  draft_.signInWith(way == Nothing ? SignIn::None
                    : way == User  ? SignIn::Password
                                   : SignIn::Token,
                    way == ParameterToken ? TokenPlace::Parameter : TokenPlace::Header);
  if (tokenName_->text().trimmed().toStdString() != connection.tokenName)
    tokenName_->setText(QString::fromStdString(connection.tokenName));
  draft_.secret = secret_->text().toStdString();
  draft_.keeping = static_cast<SecretKeeping>(keeping_->currentIndex());
  showWords();
  say({});
}

// A password that was pasted with the address does not stay to be read there.
void ConnectionEditor::takeAddress() {
  const std::string typed = address_->text().trimmed().toStdString();
  draft_.takeAddress(typed);
  if (draft_.connection.address == typed) return;
  fill();
  showFields();
}

void ConnectionEditor::showFields() {
  const int way = signIn_->currentIndex();
  widgets::showRow(*fields_, *user_, way == User);
  widgets::showRow(*fields_, *tokenName_, way == HeaderToken || way == ParameterToken);
  widgets::showRow(*fields_, *secret_, way != Nothing);
  widgets::showRow(*fields_, *keeping_, way != Nothing);
  const auto caption = [this](QWidget* field, const QString& text) {
    qobject_cast<QLabel*>(fields_->labelForField(field))->setText(text);
  };
  caption(tokenName_, way == ParameterToken ? tr("Para&meter:") : tr("&Header:"));
  caption(secret_, way == User ? tr("&Password:") : tr("&Token:"));
  words_->setVisible(way != Nothing);
  showWords();
}

void ConnectionEditor::showWords() {
  secret_->setPlaceholderText(draft_.keepsSecret() ? tr("unchanged") : QString());
  words_->setText(QString::fromStdString(draft_.words(desktop_, file_)));
  makeRoom();
}

void ConnectionEditor::tellOfDesktop(const std::string& problem) {
  desktop_ = problem;
  showWords();
}

// Rows come and go, and texts of several lines count for one with the layout.
void ConnectionEditor::makeRoom() {
  layout()->activate();
  const int least = layout()->totalMinimumSize().height();
  setMinimumHeight(std::max(least, layout()->totalHeightForWidth(std::max(width(), leastWidth))));
}

void ConnectionEditor::say(const QString& problem) {
  problem_->setText(problem);
  problem_->setVisible(!problem.isEmpty());
  makeRoom();
}

void ConnectionEditor::accept() {
  if (saving_) return;
  takeAddress();
  read();
  const QString problem = QString::fromStdString(draft_.problem());
  if (!problem.isEmpty()) return say(problem);
  save();
}

void ConnectionEditor::reject() {
  if (saving_) return saving_->giveUp();
  QDialog::reject();
}

void ConnectionEditor::save() {
  saving_ = std::make_unique<Errand>([save = save_, edit = draft_.edit()] { return save(edit); });
  connect(saving_.get(), &Errand::overdue, this, [this] {
    wait_->show();
    makeRoom();
  });
  connect(saving_.get(), &Errand::done, this, &ConnectionEditor::endSave);
  showSaving(true);
  saving_->start();
}

void ConnectionEditor::endSave(Errand::End end, const QString& words) {
  saving_.release()->deleteLater();
  wait_->hide();
  showSaving(false);
  if (end == Errand::End::GivenUp) return say(tr("The wait was given up; nothing is saved."));
  if (end == Errand::End::Failed) return say(words);
  saved_ = words;
  QDialog::accept();
}

void ConnectionEditor::showSaving(bool isSaving) {
  for (int row = 0; row < fields_->rowCount(); ++row)
    fields_->itemAt(row, QFormLayout::FieldRole)->widget()->setEnabled(!isSaving);
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(!isSaving);
  if (!isSaving) name_->setFocus();
}

}  // namespace vlclientui::viewer
