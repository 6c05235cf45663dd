#include "views/Controls.h"

#include "views/Text.h"

#include <QGroupBox>
#include <QPixmap>
#include <QScrollArea>
#include <utility>

namespace tabwright::views {

QPushButton* addButton(QLayout& layout, const QString& title, Prominence prominence, std::function<void()> pressed) {
  auto* button = new QPushButton(title);
  button->setDefault(prominence == Prominence::prominent);
  button->setAutoDefault(true); // the return key presses it where it has the focus
  button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  QObject::connect(button, &QPushButton::clicked, button, std::move(pressed));
  layout.addWidget(button);
  return button;
}

QPushButton* addLink(QLayout& layout, const QString& title, std::function<void()> pressed) {
  QPushButton* button = addButton(layout, title, Prominence::plain, std::move(pressed));
  button->setFlat(true);
  button->setCursor(Qt::PointingHandCursor);
  button->setStyleSheet(
      QStringLiteral("QPushButton{color:palette(link);text-align:left;padding:3px;border:1px solid transparent}"
                     "QPushButton:hover{text-decoration:underline}QPushButton:focus{border:1px dotted palette(link)}"));
  return button;
}

Column makeColumn() {
  auto* widget = new QWidget;
  auto* whole = new QVBoxLayout(widget);
  auto* layout = new QVBoxLayout;
  layout->setSpacing(12);
  whole->addLayout(layout);
  whole->addStretch();
  return {.widget = widget, .layout = layout};
}

QWidget* scrolling(QWidget* content) {
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(content);
  return area;
}

QLabel* makePicture(std::string_view png, const QString& description) {
  QPixmap pixmap;
  pixmap.loadFromData(reinterpret_cast<const uchar*>(png.data()), static_cast<uint>(png.size()));
  auto* picture = new QLabel;
  picture->setPixmap(pixmap);
  picture->setAccessibleName(description);
  return picture;
}

QLabel* makeSecondaryLine(const QString& text) {
  auto* line = new QLabel(text);
  line->setForegroundRole(QPalette::PlaceholderText);
  line->setWordWrap(true);
  return line;
}

Column addSystemBox(QLayout& layout) {
  auto* box = new QGroupBox(label("linux.heading"));
  auto* column = new QVBoxLayout(box);
  layout.addWidget(box);
  return {.widget = box, .layout = column};
}

} // namespace tabwright::views
