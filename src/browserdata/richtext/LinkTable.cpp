// The address stands in quotation marks in the field's instruction; `fieldAddress` leaves nothing that ends them.
#include "browserdata/richtext/LinkTable.h"

#include "browserdata/richtext/RtfText.h"

namespace tabwright::browserdata {

std::uint32_t LinkTable::add(std::string_view address) {
  auto taken = fieldAddress(address);
  if (!taken)
    return 0;
  links_.push_back({*std::move(taken)});
  return static_cast<std::uint32_t>(links_.size());
}

bool LinkTable::openField(std::string& out, std::uint32_t link) {
  if (link == 0)
    return false;
  Link& entry = links_.at(link - 1);
  // The text is written all the same, without a field around it.
  if (entry.fields == maximumFields)
    return false;
  ++entry.fields;
  out += "{\\field{\\*\\fldinst{HYPERLINK \"" + entry.address + "\"}}{\\fldrslt ";
  return true;
}

} // namespace tabwright::browserdata
