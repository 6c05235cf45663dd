set x to {}
repeat 20000 times
	set x to {x}
end repeat
set y to {}
repeat 20000 times
	set y to {y}
end repeat
set ok to (class of x)
ok --> list
x = y --> error -2706
copy x to z --> error -2706
x as text --> error -2706

set x to {1}
repeat 40 times
	set x to {x, x}
end repeat
copy x to y --> error -108

on link(x)
	set y to x
	return a reference to y
end link
set v to 1
repeat 20000 times
	set v to link(v)
end repeat
v + 1 --> error -2706
set v to 0 --> 0

on derive(base)
	script
		property parent : base
	end script
	return result
end derive
script first_
end script
set s to first_
repeat 20000 times
	set s to derive(s)
end repeat
set s to 0 --> 0
