#include "shell/BundledResource.h"
#include "shell/PageLinks.h"
#include "shell/Varn.h"
#include "tabwright_viewsResources.h"
#include "views/Controls.h"
#include "views/MarkdownView.h"
#include "views/Text.h"
#include "views/pages/Pages.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>

namespace tabwright::views {
namespace {

void addTitle(QVBoxLayout& page) {
  QLabel* picture = makePicture(resources::app_icon_png, label("about.icon", {shell::Varn::App::name}));
  auto* title = new QLabel(
      QStringLiteral("<span style=\"font-size:x-large\"><b>%1</b></span>").arg(text(shell::Varn::App::name)));
  QLabel* release = makeSecondaryLine(text(shell::Varn::App::release()));
  for (QLabel* each : {picture, title, release}) {
    each->setAlignment(Qt::AlignHCenter);
    page.addWidget(each);
  }
}

void addRow(QVBoxLayout& page, const QString& title, std::function<void()> pressed,
            const std::vector<shell::ExternalLink>& links, const Services& services) {
  auto* row = new QHBoxLayout;
  page.addLayout(row);
  row->addStretch();
  if (pressed)
    addLink(*row, title, std::move(pressed));
  for (const shell::ExternalLink& link : links)
    addLink(*row, text(link.label),
            [&services, url = link.url] { services.application.openAddress(shell::refLinkTarget(url)); });
  row->addStretch();
}

} // namespace

QWidget* makeAboutPage(const Services& services) {
  const Column page = makeColumn();
  addTitle(*page.layout);
  const shell::AboutLinks links = shell::aboutLinks(services.endpoints);
  addRow(
      *page.layout, label("about.news"),
      [&services] { services.main.appState().selectedSheet.set(shell::RootViewSheet::whatsNew); }, links.first,
      services);
  const bool canMail = canSendFeedback(services);
  std::function<void()> mail;
  if (canMail)
    mail = [&services] { sendFeedback(services); };
  addRow(*page.layout, label("about.feedback"), mail, links.second, services);
  if (canMail) {
    QPushButton* button = addButton(*page.layout, label("about.betaFeedback"), Prominence::prominent, mail);
    page.layout->setAlignment(button, Qt::AlignHCenter);
  }
  return page.widget;
}

void showWhatsNew(QWidget& parent, const Services& services) {
  auto* sheet = new QDialog(&parent);
  sheet->setAttribute(Qt::WA_DeleteOnClose);
  sheet->setModal(true);
  sheet->setWindowTitle(label("news.title"));
  auto* layout = new QVBoxLayout(sheet);
  layout->addWidget(new QLabel(
      QStringLiteral("<span style=\"font-size:x-large\"><b>%1</b></span>").arg(label("news.title").toHtmlEscaped())));
  const shell::ResourceBundle::Content news = shell::ResourceBundle::main().read("WhatsNew-Beta.md");
  auto* view =
      new MarkdownView(news.lack == shell::ResourceBundle::Lack::none ? news.text : shell::windowText("news.missing"));
  view->setObjectName(QStringLiteral("news"));
  view->setMargin(12);
  QWidget* area = scrolling(view);
  area->setStyleSheet(QStringLiteral("QScrollArea{border-radius:8px;border:1px solid palette(mid)}"));
  layout->addWidget(area, 1);
  auto* row = new QHBoxLayout;
  layout->addLayout(row);
  if (!services.endpoints.website.empty())
    addLink(*row, label("news.notes"), [&services] {
      services.application.openAddress(
          shell::refLinkTarget(std::string(services.endpoints.website) + "/tabwright/changes"));
    });
  row->addStretch();
  addButton(*row, label("news.read"), Prominence::prominent, [&services, sheet] {
    services.main.appState().markWhatsNewAsRead();
    sheet->close();
  });
  // Closed by another way it comes again at the next launch.
  QObject::connect(sheet, &QDialog::finished, sheet,
                   [&services] { services.main.appState().selectedSheet.set(shell::RootViewSheet::none); });
  sheet->resize(520, 380);
  sheet->show();
}

} // namespace tabwright::views
