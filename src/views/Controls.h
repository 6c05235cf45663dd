#pragma once

#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>
#include <functional>
#include <string_view>

namespace tabwright::views {

/// A button with the key's text. A prominent one is the page's main deed, and takes the return key.
enum class Prominence { plain, prominent };
QPushButton* addButton(QLayout& layout, const QString& title, Prominence prominence, std::function<void()> pressed);

/// A button that looks as a link does, and can be reached with the keyboard.
QPushButton* addLink(QLayout& layout, const QString& title, std::function<void()> pressed);

/// A column of widgets that stays at the top of its place.
struct Column {
  QWidget* widget = nullptr;
  QVBoxLayout* layout = nullptr;
};
Column makeColumn();

/// The same, with a bar to scroll by where it is too long.
QWidget* scrolling(QWidget* content);

/// A picture of the program's resources, with the text for those who can't see it.
QLabel* makePicture(std::string_view png, const QString& description);

/// A line in the colour of secondary texts.
QLabel* makeSecondaryLine(const QString& text);

/// A box with what holds on this system beside what the page says.
Column addSystemBox(QLayout& layout);

} // namespace tabwright::views
