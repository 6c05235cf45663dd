#pragma once

#include "shell/Application.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// An application with windows that are no more than their names, and a record of what was done to it.
class ModelApplication final : public shell::Application {
public:
  bool hidden = false;
  bool canMakeWindows = true;
  std::vector<std::string> events;

  void open(std::string identifier) { windows_.push_back(std::make_unique<ModelWindow>(*this, std::move(identifier))); }
  [[nodiscard]] std::vector<std::string> openWindows() const {
    std::vector<std::string> names;
    for (const auto& window : windows_)
      names.push_back(window->identifier());
    return names;
  }
  [[nodiscard]] shell::ApplicationDelegate* delegate() const { return delegate_; }

  [[nodiscard]] bool isHidden() const override { return hidden; }
  [[nodiscard]] std::vector<shell::Window*> windows() const override {
    std::vector<shell::Window*> open;
    for (const auto& window : windows_)
      open.push_back(window.get());
    return open;
  }
  [[nodiscard]] shell::Window* keyWindow() const override { return nullptr; }
  [[nodiscard]] shell::Window* onboardingWindow() const override { return onboarding_.get(); }
  shell::Window* makeOnboardingWindow() override {
    if (canMakeWindows)
      onboarding_ = std::make_unique<ModelWindow>(*this, std::string(shell::onboardingWindowIdentifier));
    return onboarding_.get();
  }
  bool openAddress(const std::string& address) override {
    events.push_back("open " + address);
    return true;
  }
  void revealFile(const std::filesystem::path& file) override { events.push_back("reveal " + file.string()); }
  void setAllowsAutomaticWindowTabbing(bool isAllowed) override {
    events.push_back(isAllowed ? "tabbing on" : "tabbing off");
  }
  void setDelegate(shell::ApplicationDelegate* delegate) override { delegate_ = delegate; }
  void terminate() override { events.emplace_back("terminate"); }

private:
  class ModelWindow final : public shell::Window {
  public:
    ModelWindow(ModelApplication& owner, std::string identifier) : owner_(owner), identifier_(std::move(identifier)) {}
    [[nodiscard]] std::string identifier() const override { return identifier_; }
    void close() override {
      owner_.events.push_back("close " + identifier_);
      isVisible_ = false;
      std::erase_if(owner_.windows_, [this](const auto& window) { return window.get() == this; });
    }
    [[nodiscard]] bool isVisible() const override { return isVisible_; }
    void setTitle(const std::string& title) override { owner_.events.push_back("title " + title); }
    void renewContent() override { owner_.events.push_back("content " + identifier_); }
    void center() override { owner_.events.push_back("center " + identifier_); }
    void makeKeyAndOrderFront() override {
      owner_.events.push_back("front " + identifier_);
      isVisible_ = true;
    }

  private:
    ModelApplication& owner_;
    std::string identifier_;
    bool isVisible_ = false;
  };

  std::vector<std::unique_ptr<ModelWindow>> windows_;
  std::unique_ptr<ModelWindow> onboarding_;
  shell::ApplicationDelegate* delegate_ = nullptr;
};

} // namespace tabwright::testsupport
