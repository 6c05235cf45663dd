// Tables: which of a table's structure is open, and what a tag of that structure ends and implies. One function serves
// for several insertion modes of the standard: a part closes all up to the innermost element that may hold it, and
// opens those between the two that the page has left out.
#include "html/TreeConstruction.h"

#include <initializer_list>

namespace tabwright::html {

// Of a table, but for cells and captions: text doesn't stand in it.
bool TreeConstruction::isStructure(const Element& element) {
  return element.has(isRow) && (element.tag.tag == tag_table || !element.has(boundsScope));
}

void TreeConstruction::startInTable(const Token& token) {
  const Tag tag = token.traits.tag;
  if (tag == tag_table) { // in another one, between cells
    endInTable(tag_table);
    return start(token);
  }
  const std::size_t table = find(tag_table, 0);
  // A row or a cell outside of tables is no element at all.
  if (table == nowhere)
    return;
  const auto within = [&](std::initializer_list<Tag> tags) { // where one of them is open in the innermost table
    for (std::size_t position = stack_.size(); position-- > table;)
      for (const Tag wanted : tags)
        if (stack_[position]->tag.tag == wanted)
          return position;
    return nowhere;
  };
  const bool isCell = tag == tag_td || tag == tag_th;
  const std::size_t row = isCell ? within({tag_tr}) : nowhere;
  const std::size_t section = isCell || tag == tag_tr ? within({tag_tbody, tag_thead, tag_tfoot}) : nowhere;
  const std::size_t columns = tag == tag_col ? within({tag_colgroup}) : nowhere;
  closeThrough((row != nowhere ? row : section != nowhere ? section : columns != nowhere ? columns : table) + 1);
  if ((isCell || tag == tag_tr) && section == nowhere && row == nowhere)
    insertElement(tag_tbody);
  if (isCell && row == nowhere)
    insertElement(tag_tr);
  if (tag == tag_col && columns == nowhere)
    insertElement(tag_colgroup);
  insertElement(token);
  // A marker: formatting from outside the cell isn't carried into it.
  if (isCell || tag == tag_caption)
    addFormatting(nullptr);
}

void TreeConstruction::endInTable(Tag tag) {
  if (const std::size_t position = find(tag, 0, tag_table); position != nowhere)
    closeThrough(position);
}

} // namespace tabwright::html
