# Writes SOURCE, which defines `embeddedStringCatalogues()`: one row per file FOLDER/<language>/<table>.json.
file(GLOB files RELATIVE "${FOLDER}" "${FOLDER}/*/*.json")
list(SORT files)
set(rows "")
foreach(file IN LISTS files)
  get_filename_component(language "${file}" DIRECTORY)
  get_filename_component(table "${file}" NAME_WLE)
  file(READ "${FOLDER}/${file}" content HEX)
  file(SIZE "${FOLDER}/${file}" size)
  string(REGEX REPLACE "(..)" "\\\\x\\1" content "${content}")
  string(REGEX REPLACE "(................................................................)" "\\1\"\n     \"" content "${content}")
  string(APPEND rows "    {\"${language}\", \"${table}\",\n     {\"${content}\", ${size}}},\n")
endforeach()
file(WRITE "${SOURCE}" "// Generated from the files under resources/strings/. Do not edit.
#include \"platform/StringCatalogueSources.h\"

namespace tabwright::platform {
namespace {

constexpr StringCatalogue::Source sources[]{
${rows}};

} // namespace

std::span<const StringCatalogue::Source> embeddedStringCatalogues() { return sources; }

} // namespace tabwright::platform
")
