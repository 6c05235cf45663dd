property p : 1
set r to a reference to p
set contents of r to 5
{p, contents of r, r + 1} --> {5, 5, 6}

on f()
	set x to 1
	set r to a reference to x
	set contents of r to 2
	set x to x + 10
	return {x, contents of r}
end f
f() --> {12, 12}

on outlives()
	set xs to {1}
	return a reference to xs
end outlives
set r to outlives()
set end of contents of r to 2
contents of r --> {1, 2}

set rec to {a:1}
set r to a reference to a of rec
set contents of r to 3
rec --> {a:3}

set xs to {1, 2}
set r to a reference to item 2 of xs
set contents of r to "b"
xs --> {1, "b"}

set xs to {1, 2}
set r to a reference to item 2 of xs
set xs to {}
contents of r --> 2

on f(n)
	set r to a reference to n
	if n > 0 then
		set m to f(n - 1)
		return {n, contents of m}
	end if
	return r
end f
f(1) --> {1, 0}
