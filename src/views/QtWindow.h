#pragma once

#include "shell/Window.h"

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

namespace tabwright::views {

/// A window of Qt as the shell knows windows. It keeps its place and size across launches.
class QtWindow final : public shell::Window {
public:
  /// `makeContent` gives the widget that fills the window; it is called by `renewContent`.
  QtWindow(std::string_view identifier, std::unique_ptr<QWidget> frame,
           std::function<void(QWidget& frame)> makeContent);
  ~QtWindow() override;

  [[nodiscard]] std::string identifier() const override { return identifier_; }
  void close() override;
  [[nodiscard]] bool isVisible() const override;
  void setTitle(const std::string& title) override;
  void renewContent() override;
  void center() override;
  void makeKeyAndOrderFront() override;

  [[nodiscard]] QWidget& frame() { return *frame_; }

private:
  void restorePlace();
  void keepPlace() const;

  const std::string identifier_;
  std::unique_ptr<QWidget> frame_;
  std::function<void(QWidget& frame)> makeContent_;
  bool hasPlace_ = false; ///< true once a place of an earlier launch was found
};

} // namespace tabwright::views
