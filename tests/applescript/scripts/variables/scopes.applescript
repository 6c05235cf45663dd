x --> error -2753 The variable x is not defined.

set newUrl to 1
newURL --> 1

on f()
	return x
end f
set x to 1
f() --> error -2753 The variable x is not defined.

on f()
	global x
	set x to x + 1
end f
set x to 1
f()
x --> 2

global x
on f()
	return x
end f
set x to 3
f() --> 3

property x : 1
on f()
	set x to x + 1
	return x
end f
f()
f()
x --> 3

property x : 1
on f(x)
	set x to 9
end f
f(5)
{x, my x, x of me} --> {1, 1, 1}

property x : 1
on f()
	local x
	set x to 9
	return my x
end f
f() --> 1

property a : 2
property b : a * 3
b --> 6

on f()
	set y to 1
	return g()
end f
on g()
	return y
end g
f() --> error -2753

1 + 1
result --> 2

set x to 5
result + 1 --> 6

set result to 7
1
result --> 7
