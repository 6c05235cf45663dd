"12" as integer --> 12
" 12 " as number --> 12
"1.5" as number --> 1.5
"1.5" as integer --> 2
2.4 as integer --> 2
-1.5 as integer --> -2
3 as real --> 3.0
true as integer --> 1
{7} as integer --> 7
"true" as boolean --> true
0 as boolean --> false
"a" as list --> {"a"}
{1} as list --> {1}
{a:1, b:2} as list --> {1, 2}
missing value as list --> {missing value}
{} as record --> {}
"5" as {integer, text} --> 5
"x" as {integer, text} --> "x"
month of (current date) as integer --> 1
"abc" as integer --> error -1700 Can’t make "abc" into type integer.
"" as number --> error -1700 Can’t make "" into type number.
"0x10" as number --> error -1700
"nan" as real --> error -1700
{1, 2} as integer --> error -1700 Can’t make {1, 2} into type integer.
"x" as record --> error -1700 Can’t make "x" into type record.
"maybe" as boolean --> error -1700 Can’t make "maybe" into type boolean.
1.0E+30 as integer --> error -1700
"x" as {integer, real} --> error -1700
1 as 2 --> error -1700

"+-5" as number --> error -1700
{{a:1}} as record --> {a:1}

set xs to {1, 2}
set r to a reference to item 1 of xs
set contents of r to xs
xs --> {{1, 2}, 2}
