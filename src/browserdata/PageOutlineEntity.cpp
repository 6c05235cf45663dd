#include "browserdata/PageOutlineEntity.h"

namespace tabwright::browserdata {

PageElementEntity PageElementEntity::fromJSON(const platform::JSONReader& json) {
  return {
      .reference = json.find<std::string>("reference"),
      .role = json.require<std::string>("role"),
      .name = json.find<std::string>("name"),
      .value = json.find<std::string>("value"),
      .states = json.find<std::vector<std::string>>("states"),
      .url = json.find<std::string>("url"),
      .level = json.find<std::int64_t>("level"),
      .depth = json.require<std::int64_t>("depth"),
  };
}

std::string PageElementEntity::displayRepresentation() const {
  std::string text = role;
  if (name)
    text += " \"" + *name + "\"";
  if (reference)
    text += " " + *reference;
  return text;
}

const intents::EntityDefinition<PageElementEntity>& PageElementEntity::definition() {
  static const intents::EntityDefinition<PageElementEntity> definition(
      "PageElementEntity",
      {{"reference", &PageElementEntity::reference},
       {"role", &PageElementEntity::role},
       {"name", &PageElementEntity::name},
       {"value", &PageElementEntity::value},
       {"states", &PageElementEntity::states},
       {"url", &PageElementEntity::url},
       {"level", &PageElementEntity::level},
       {"depth", &PageElementEntity::depth}},
      [](const PageElementEntity& element) { return element.displayRepresentation(); });
  return definition;
}

PageOutlineEntity PageOutlineEntity::fromJSON(const platform::JSONReader& json) {
  return {
      .title = json.require<std::string>("title"),
      .url = json.require<std::string>("url"),
      .text = json.require<std::string>("text"),
      .elements = json.require<std::vector<PageElementEntity>>("elements"),
      .leftOut = json.require<std::int64_t>("leftOut"),
  };
}

const intents::EntityDefinition<PageOutlineEntity>& PageOutlineEntity::definition() {
  static const intents::EntityDefinition<PageOutlineEntity> definition(
      "PageOutlineEntity",
      {{"title", &PageOutlineEntity::title},
       {"url", &PageOutlineEntity::url},
       {"text", &PageOutlineEntity::text},
       {"elements", &PageOutlineEntity::elements},
       {"leftOut", &PageOutlineEntity::leftOut}},
      [](const PageOutlineEntity& outline) { return outline.text; }, intents::TextForm::none, {}, "text");
  return definition;
}

} // namespace tabwright::browserdata
