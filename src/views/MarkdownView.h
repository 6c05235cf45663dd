#pragma once

#include <QLabel>
#include <string>
#include <string_view>

namespace tabwright::views {

/// Markdown in the one theme of all windows, in dark letters or light ones as the window's ground asks. Links are
/// opened by the desktop; they and the text can be reached with the keyboard.
class MarkdownView final : public QLabel {
public:
  explicit MarkdownView(std::string_view markdown, QWidget* parent = nullptr);

  void setMarkdown(std::string_view markdown);

protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void render();
  void takeHeight();

  std::string markdown_;
};

/// The rich text of Markdown for a widget of this palette.
[[nodiscard]] QString richTextFor(const QPalette& palette, std::string_view markdown);

} // namespace tabwright::views
