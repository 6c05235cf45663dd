1 = 1.0 --> true
1 is "1" --> false
"1" is 1 --> false
"abc" is "ABC" --> true
"abc" is not "abd" --> true
"straße" is "STRASSE" --> false
"É" is "é" --> true
"e" is "é" --> false
{1, "A"} is {1.0, "a"} --> true
{1, 2} is {1, 2, 3} --> false
{a:1, b:2} is {b:2, a:1} --> true
{a:1} is {a:1, b:2} --> false
null is null --> true
null is "null" --> false
missing value is null --> false
missing value is missing value --> true
true is "true" --> false
text is string --> true
class of "x" is text --> true
class of "x" is string --> true
class of 1 is real --> false

-- Whole numbers are compared whole, and with a real as reals.
9007199254740993 = 9007199254740992 --> false
9007199254740992 = 9007199254740992.0 --> true
2.0 = 2 --> true
