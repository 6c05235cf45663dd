set AppleScript's text item delimiters to ","
text items of "a,b,,c" --> {"a", "b", "", "c"}
text item 2 of "a,b" --> "b"
text items 2 thru -1 of "a,b,c" --> {"b", "c"}
count of text items of "a,b" --> 2
text items of "" --> {}
text items of "abc" --> {"abc"}
text item 3 of "a,b" --> error -1728 Can’t get text item 3 of "a,b".

set AppleScript's text item delimiters to {"--", "x"}
text items of "aXb--cxd" --> {"a", "b", "c", "d"}

set AppleScript's text item delimiters to {"b", "bc"}
text items of "abcd" --> {"a", "cd"}

set text item delimiters to "ß"
text items of "1ß2ß3" --> {"1", "2", "3"}
text item delimiters --> "ß"

set AppleScript's text item delimiters to ""
text items of "ab" --> {"a", "b"}

set saved to AppleScript's text item delimiters
set AppleScript's text item delimiters to "/"
set parts to text items of "a/b"
set AppleScript's text item delimiters to saved
{parts, {1, 2} as text} --> {{"a", "b"}, "12"}

set AppleScript's text item delimiters to {a:1} --> error -1700

considering case
	set AppleScript's text item delimiters to "x"
	set r to text items of "aXbxc"
end considering
r --> {"aXb", "c"}

-- Composed and decomposed letters are one, and a letter is not found in what it is a part of.
set AppleScript's text item delimiters to "é"
count of text items of "1é2É3" --> 3
offset of "é" in "abcé" --> 4
offset of "e" in "éae" --> 3
set AppleScript's text item delimiters to "e"
text items of "aébe" --> {"aéb", ""}
