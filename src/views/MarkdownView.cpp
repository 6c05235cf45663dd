#include "views/MarkdownView.h"

#include "markdown/Document.h"
#include "markdown/RichText.h"
#include "markdown/Theme.h"
#include "views/Text.h"

#include <QEvent>
#include <QPalette>

namespace tabwright::views {

QString richTextFor(const QPalette& palette, std::string_view markdown) {
  const bool isDark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
  const auto scheme = isDark ? markdown::ColourScheme::dark : markdown::ColourScheme::light;
  return text(markdown::richText(markdown::parse(markdown), markdown::markdownTheme, scheme));
}

MarkdownView::MarkdownView(std::string_view markdown, QWidget* parent) : QLabel(parent), markdown_(markdown) {
  setTextFormat(Qt::RichText);
  setWordWrap(true);
  // Read and copied by the pointer; with the keyboard only links are gone to, where there are some.
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse);
  setOpenExternalLinks(true);
  setAlignment(Qt::AlignTop | Qt::AlignLeading);
  render();
}

void MarkdownView::setMarkdown(std::string_view markdown) {
  markdown_ = markdown;
  render();
}

void MarkdownView::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    render();
}

void MarkdownView::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  takeHeight();
}

void MarkdownView::render() {
  const QString rich = richTextFor(palette(), markdown_);
  setText(rich);
  const bool hasLinks = rich.contains(QStringLiteral("<a "));
  setTextInteractionFlags(textInteractionFlags().setFlag(Qt::LinksAccessibleByKeyboard, hasLinks));
  setFocusPolicy(hasLinks ? Qt::StrongFocus : Qt::ClickFocus);
  takeHeight();
}

// Layouts give a label with wrapped text the height of a squarer one.
void MarkdownView::takeHeight() {
  const int wanted = heightForWidth(width());
  if (wanted > 0 && wanted != height())
    setFixedHeight(wanted);
}

} // namespace tabwright::views
