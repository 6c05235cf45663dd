set xs to {1, 2, 3}
set item 2 of xs to "b"
set item -1 of xs to "c"
set end of xs to 4
set beginning of xs to 0
set first item of xs to "z"
xs --> {"z", 1, "b", "c", 4}
set item 9 of xs to 1 --> error -1728
set word 1 of "abc" to "x" --> error -10006
set end of 5 to 1 --> error -10006

set {a, b} to {1, 2}
{b, a} --> {2, 1}

set {a, b} to {1, 2, 3}
{a, b} --> {1, 2}

set {a, {b, c}} to {1, {2, 3}}
c --> 3

set {a, b} to {1} --> error -1728 Can’t get item 2 of {1}.
set {a, b} to 5 --> error -1728

set {a, b} to {1, 2}
set {a, b} to {b, a}
{a, b} --> {2, 1}

set {x:p, y:q} to {y:2, x:1}
{p, q} --> {1, 2}
