// All but the children was read and translated by the source before the element was made. The children go through the
// source anew each time, since applications change their menus while they are looked at.
#include "automation/AxeElement.h"

#include "automation/MenuSource.h"

namespace tabwright::automation {

std::expected<AxeElement::Value, AXError> AxeElement::value(AxeAttribute attribute) const {
  switch (attribute) {
  case AxeAttribute::children: {
    auto lists = facts_->source->children({this, 1});
    if (!lists)
      return std::unexpected(AXError{AXError::cannotComplete});
    return std::move(lists->front());
  }
  case AxeAttribute::enabled:
    if (!facts_->isEnabled)
      break;
    // An enabled item in a disabled menu can't be chosen.
    for (const Facts* each = facts_.get(); each; each = each->parent.get()) {
      if (each->isEnabled == false)
        return false;
    }
    return true;
  case AxeAttribute::parent:
    if (facts_->parent)
      return AxeElement(facts_->parent);
    break;
  case AxeAttribute::role:
    return std::string(facts_->role);
  case AxeAttribute::title:
    if (facts_->title)
      return *facts_->title;
    break;
  }
  return std::unexpected(AXError{AXError::noValue});
}

std::string AxeElement::title() const {
  return facts_->title.value_or("");
}

std::string AxeElement::role() const {
  return std::string(facts_->role);
}

std::vector<AxeElement> AxeElement::children() const {
  return read<std::vector<AxeElement>>(AxeAttribute::children).value_or(std::vector<AxeElement>{});
}

std::optional<AxeElement> AxeElement::parent() const {
  const auto parent = read<AxeElement>(AxeAttribute::parent);
  return parent ? std::optional(*parent) : std::nullopt;
}

bool AxeElement::isEnabled() const {
  return read<bool>(AxeAttribute::enabled).value_or(false);
}

bool AxeElement::isMenu() const {
  return isItem() || facts_->role == axerole::menu;
}

bool AxeElement::isItem() const {
  return facts_->role == axerole::menuBarItem || facts_->role == axerole::menuItem;
}

std::vector<AxeElement> AxeElement::items() const {
  std::vector<AxeElement> below = children();
  return isItem() && below.size() == 1 ? below.front().children() : below;
}

bool AxeElement::isSubMenu() const {
  return isItem() && children().size() == 1;
}

} // namespace tabwright::automation
