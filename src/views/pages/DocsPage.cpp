#include "shell/BundledResource.h"
#include "shell/EnvironmentSummary.h"
#include "shell/LinkSections.h"
#include "shell/PageLinks.h"
#include "views/Controls.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/pages/Pages.h"

#include <QGroupBox>
#include <QTextBrowser>

namespace tabwright::views {
namespace {

/// Made once: the browsers' versions at the first use serve for the process's life.
const std::string& summary(const Services& services) {
  static const std::string text =
      shell::environmentSummary(shell::operatingSystem(), services.main.defaultsManager().browserVersionList());
  return text;
}

QLayout& addSection(QLayout& page, const QString& header) {
  auto* box = new QGroupBox(header);
  auto* layout = new QVBoxLayout(box);
  layout->setSpacing(2);
  page.addWidget(box);
  return *layout;
}

} // namespace

void sendFeedback(const Services& services) {
  if (const auto address = shell::feedbackAddress(services.endpoints, summary(services)))
    services.application.openAddress(*address);
}

bool canSendFeedback(const Services& services) {
  return !services.endpoints.supportMail.empty();
}

QWidget* makeDocsPage(const Services& services) {
  const Column page = makeColumn();
  const std::vector<shell::ExternalLink> support = shell::supportLinks(services.endpoints);
  if (!support.empty() || canSendFeedback(services)) {
    QLayout& section = addSection(*page.layout, label("docs.support"));
    if (canSendFeedback(services))
      addLink(section, label("docs.feedback"), [&services] { sendFeedback(services); });
    for (const shell::ExternalLink& link : support)
      addLink(section, text(link.label),
              [&services, url = link.url] { services.application.openAddress(shell::refLinkTarget(url)); });
  }
  for (const auto& links : shell::decodeResource<std::vector<shell::ExternalLinkSection>>("ActionsLibraryLinks.json")) {
    QLayout& section = addSection(*page.layout, label("docs.section", {shell::windowText(links.label)}));
    for (const shell::ExternalLink& link : links.links)
      addLink(section, label(link.label),
              [widget = page.widget, link] { showDocument(*widget, shell::windowText(link.label), link.url); });
  }
  return scrolling(page.widget);
}

void showDocument(QWidget& parent, const std::string& title, const std::string& file) {
  // A window of its own: a dialog would stay above the main one.
  auto* dialog = new QWidget(parent.window(), Qt::Window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(text(title));
  auto* browser = new QTextBrowser;
  browser->setOpenExternalLinks(true);
  browser->setAccessibleName(text(title));
  browser->setHtml(richTextFor(browser->palette(), shell::ResourceBundle::main().read(file).text));
  auto* layout = new QVBoxLayout(dialog);
  layout->addWidget(browser);
  dialog->resize(820, 640);
  dialog->show();
}

} // namespace tabwright::views
