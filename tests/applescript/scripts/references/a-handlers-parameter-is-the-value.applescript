on same(v)
	return v is "x"
end same
repeat with e in {"x"}
	set r to same(e)
end repeat
r --> true

on change(v)
	set contents of v to "y"
end change
set xs to {"x"}
repeat with e in xs
	change(e)
end repeat
xs --> {"y"}
