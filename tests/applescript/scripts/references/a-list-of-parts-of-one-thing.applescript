set r to {width:3, height:4, inner:{depth:5}}
{width, height} of r --> {3, 4}
{height, width} of {width:1, height:2} --> {2, 1}
{depth} of inner of r --> {5}
set {w, h} to {width, height} of r --> {3, 4}
set {width, height} of r to {7, 8}
r --> {width:7, height:8, inner:{depth:5}}
item 2 of {width, height} of r --> 8
{first character, last character} of "xyz" --> {"x", "z"}
{1, 2} of r --> error -2741
{width, {height}} of r --> error -2741
