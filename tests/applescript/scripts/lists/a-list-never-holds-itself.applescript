set xs to {1}
set end of xs to xs
xs --> {1, {1}}

set r to {a:1}
set a of r to {r}
r --> {a:{{a:1}}}

set xs to {}
set ys to {xs}
set end of xs to ys
xs --> {{{}}}

set xs to {1, 2}
repeat with e in xs
	set end of xs to e
end repeat
xs --> {1, 2, 1, 2}

on f()
	set x to 1
	set x to a reference to x
	return x
end f
f() --> 1

set r to {a:0}
set a of r to a reference to a of r
r --> {a:0}

set x to 1
set x to a reference to x
x + 1 --> error -2706
