set r to {name:"n", tabID:7, |any text|:true}
tabID of r --> 7
TABID of r --> 7
r's tabID --> 7
name of r --> "n"
|any text| of r --> true
count of r --> 3
r --> {name:"n", tabID:7, |any text|:true}
missingOne of r --> error -1728 Can’t get missingOne of {name:"n", tabID:7, |any text|:true}.
set tabID of r to "x" --> "x"
set newOne of r to 1 --> error -10006 Can’t set newOne of {name:"n", tabID:7, |any text|:true} to 1.
item 1 of r --> error -1728

set r to {a:{b:{c:1}}}
set c of b of a of r to 2
r's a's b's c --> 2

set r to {a:1, A:2}
r --> {a:2}

set tabsList to {}
set r to {tabsList:{}}
set end of tabsList of r to 5
set end of tabsList of r to 6
{tabsList of r, tabsList} --> {{5, 6}, {}}

-- Labels are one whatever their case, in other alphabets too, and another when one only begins like the other.
set r to {|Straße|:1, tab:2, |10 K|:3, Ä:4, tabs2:5}
|STRASSE| of r --> 1
|10 k| of r --> 3
ä of r --> 4
{TAB of r, TABS2 of r} --> {2, 5}
tabs3 of r --> error -1728
|Straßen| of r --> error -1728

set r to {a:1, b:2}
set {a, b} in r to {3, 4}
r --> {a:3, b:4}
