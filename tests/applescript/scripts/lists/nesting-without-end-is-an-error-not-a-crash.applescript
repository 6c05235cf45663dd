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
copy x to y --> error -2707
