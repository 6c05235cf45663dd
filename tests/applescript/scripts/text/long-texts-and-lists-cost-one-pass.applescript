-- Each of these takes minutes where every step of a loop or a split walks the whole text or list.
set t to "a,"
repeat 17 times
	set t to (t & t)
end repeat
set AppleScript's text item delimiters to ","
count of text items of t --> 131073
set s to 0
repeat with i from 1 to 20000
	set s to s + (length of text item i of t) + (length of word 1 of (text item i of t))
end repeat
s --> 40000

set t to "ä,"
repeat 15 times
	set t to t & t
end repeat
set AppleScript's text item delimiters to ","
set xs to {}
repeat with x in text items of t
	set end of xs to x
end repeat
count of xs --> 32769
count of paragraphs of (xs as text) --> 1

set xs to {}
repeat with i from 1 to 50000
	set end of xs to i
end repeat
set ys to {}
repeat with x in xs
	set end of ys to x
end repeat
ys is xs --> true
