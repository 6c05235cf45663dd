#pragma once

#include "actions/ScriptAction.h"
#include "browserdata/BrowserTabData.h"
#include "browserdata/BrowserTabEntity.h"
#include "browserdata/BrowserWindowData.h"
#include "browserdata/BrowserWindowEntity.h"

namespace tabwright::actions {

/// An action whose script reports one tab or one window, as a record, and whose value is that tab or window.
template <class Record, class Entity>
class EntityAction : public ScriptAction<Record, Entity> {
protected:
  using ScriptAction<Record, Entity>::ScriptAction;

  [[nodiscard]] Entity result(Record answer, const engine::TargetContext& browser) const override {
    return Entity(answer, browser);
  }
};

/// The two kinds that there are.
using TabAction = EntityAction<browserdata::BrowserTabData, browserdata::BrowserTabEntity>;
using WindowAction = EntityAction<browserdata::BrowserWindowData, browserdata::BrowserWindowEntity>;

} // namespace tabwright::actions
