1 as text --> "1"
0.5 as text --> "0.5"
1.0 as text --> "1.0"
1234.5 as text --> "1234.5"
12345.0 as text --> "1.2345E+4"
1.0E+20 as text --> "1.0E+20"
1.5E-7 as text --> "1.5E-7"
true as text --> "true"
null as text --> "null"
missing value as text --> "missing value"
{1, "a", {2, 3}} as text --> "1a23"
{} as text --> ""
class of 1 as text --> "integer"
text as text --> "text"
(class of {}) as string --> "list"
{a:1} as text --> error -1700 Can’t make {a:1} into type text.
{1, {a:1}} as text --> error -1700 Can’t make {1, {a:1}} into type text.

set AppleScript's text item delimiters to ", "
{1, 2, 3} as text --> "1, 2, 3"
{1, 2} & "" --> {1, 2, ""}
"<" & ({1, 2} as text) & ">" --> "<1, 2>"
