#include "desktop/UpdateMessage.h"

#include "shell/Varn.h"
#include "views/Text.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocumentFragment>
#include <string>
#include <utility>

namespace tabwright::desktop {

using updates::UpdateOutcome;

void showUpdateOutcome(const UpdateOutcome& outcome, std::function<void()> install) {
  auto* message = new QMessageBox(QApplication::activeWindow()); // Qt deletes it once it is closed
  message->setAttribute(Qt::WA_DeleteOnClose);
  message->setObjectName(QStringLiteral("update"));
  message->setWindowTitle(views::text(shell::Varn::App::name));
  message->setIcon(outcome.kind == UpdateOutcome::Kind::failed ? QMessageBox::Warning : QMessageBox::Information);
  // Words of the feed are shown as they are, and load nothing.
  message->setTextFormat(Qt::PlainText);
  message->setText(views::text(outcome.headline));
  const std::string link = outcome.notesLink.empty() ? "" : "\n\n" + outcome.notesLink;
  message->setInformativeText(views::text(outcome.advice + link));
  message->setDetailedText(QTextDocumentFragment::fromHtml(views::text(outcome.notes)).toPlainText());
  message->addButton(QMessageBox::Close);
  if (outcome.canBeInstalled) {
    QPushButton* button = message->addButton(views::label("updates.install"), QMessageBox::AcceptRole);
    message->setDefaultButton(button);
    QObject::connect(button, &QPushButton::clicked, button, [install = std::move(install)] { install(); });
  }
  message->open();
}

} // namespace tabwright::desktop
