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
