set a to {1}
set b to a
set end of b to 2
a --> {1, 2}

set a to {1, {2}}
copy a to b
set item 1 of item 2 of b to 9
{a, b} --> {{1, {2}}, {1, {9}}}

set a to {x:1}
set b to a
set x of b to 2
x of a --> 2

set a to {1}
set b to a
set a to a & {2}
{a, b} --> {{1, 2}, {1}}

set a to {}
set a to a & {1}
set a to a & {2}
set b to a
set a to a & {3}
{a, b} --> {{1, 2, 3}, {1, 2}}

set a to {1, 2}
set a to a & a
a --> {1, 2, 1, 2}

on grow(xs)
	set xs to xs & {2}
	return xs
end grow
set a to {1}
set b to grow(a)
{a, b} --> {{1}, {1, 2}}

on grow(xs)
	set end of xs to 2
end grow
set a to {1}
grow(a)
a --> {1, 2}
