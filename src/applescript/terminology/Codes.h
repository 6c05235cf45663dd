#pragma once

#include "applescript/terminology/FourCharCode.h"

/// Four-character codes of the classes, properties and constants that the language itself gives a meaning to. The same
/// codes stand in languageTerminology(), and in the dictionaries of applications for the same things.
///
/// A code is told apart from another by its kind too: `month` is a class and a property of dates. `text`, `string` and
/// `Unicode text` are three codes for one class (`isTextClass`).
namespace tabwright::applescript::codes {

// Classes
/// The class of every value.
inline constexpr FourCharCode anything = fourCharCode("****");
inline constexpr FourCharCode application = fourCharCode("capp");
inline constexpr FourCharCode boolean = fourCharCode("bool");
inline constexpr FourCharCode character = fourCharCode("cha ");
inline constexpr FourCharCode className = fourCharCode("pcls"); ///< the property `class`
inline constexpr FourCharCode constant = fourCharCode("enum");
inline constexpr FourCharCode date = fourCharCode("ldt ");
/// An object of the Objective-C bridge.
inline constexpr FourCharCode foreign = fourCharCode("ocid");
inline constexpr FourCharCode integer = fourCharCode("long");
inline constexpr FourCharCode item = fourCharCode("cobj");
inline constexpr FourCharCode list = fourCharCode("list");
inline constexpr FourCharCode month = fourCharCode("mnth"); ///< also the property of a date
inline constexpr FourCharCode number = fourCharCode("nmbr");
inline constexpr FourCharCode paragraph = fourCharCode("cpar");
inline constexpr FourCharCode real = fourCharCode("doub");
inline constexpr FourCharCode record = fourCharCode("reco");
inline constexpr FourCharCode reference = fourCharCode("obj ");
inline constexpr FourCharCode script = fourCharCode("scpt");
inline constexpr FourCharCode string = fourCharCode("TEXT");
inline constexpr FourCharCode text = fourCharCode("ctxt");
inline constexpr FourCharCode textItem = fourCharCode("citm");
inline constexpr FourCharCode typeClass = fourCharCode("type"); ///< the class `class`
inline constexpr FourCharCode unicodeText = fourCharCode("utxt");
inline constexpr FourCharCode weekday = fourCharCode("wkdy"); ///< also the property of a date
inline constexpr FourCharCode word = fourCharCode("cwor");

// Properties of values
inline constexpr FourCharCode contents = fourCharCode("pcnt");
inline constexpr FourCharCode id = fourCharCode("ID  ");
inline constexpr FourCharCode length = fourCharCode("leng");
inline constexpr FourCharCode name = fourCharCode("pnam");
inline constexpr FourCharCode parent = fourCharCode("pare");
inline constexpr FourCharCode quotedForm = fourCharCode("strq");
inline constexpr FourCharCode rest = fourCharCode("rest");
inline constexpr FourCharCode reverse = fourCharCode("rvse");
inline constexpr FourCharCode running = fourCharCode("prun");
inline constexpr FourCharCode textItemDelimiters = fourCharCode("txdl");
inline constexpr FourCharCode version = fourCharCode("vers");

// Properties of dates
inline constexpr FourCharCode year = fourCharCode("year");
inline constexpr FourCharCode day = fourCharCode("day ");
inline constexpr FourCharCode hours = fourCharCode("hour");
inline constexpr FourCharCode minutes = fourCharCode("min ");
inline constexpr FourCharCode seconds = fourCharCode("scnd");
inline constexpr FourCharCode time = fourCharCode("time");
inline constexpr FourCharCode dateString = fourCharCode("dstr");
inline constexpr FourCharCode shortDateString = fourCharCode("shdt");
inline constexpr FourCharCode timeString = fourCharCode("tstr");

// Constants
inline constexpr FourCharCode appleScript = fourCharCode("ascr");

} // namespace tabwright::applescript::codes
