set r to {}
repeat with e in {"x", "y"}
	set end of r to e is "x"
end repeat
r --> {false, false}

repeat with e in {"x"}
	set r to {contents of e is "x", class of e, e as text, {"x"} contains e, e is in {"x"}, e & "z", length of e}
end repeat
r --> {true, text, "x", true, true, "xz", 1}

repeat with e in {3}
	set r to {e + 1, e * e, e > 2, -e}
end repeat
r --> {4, 9, true, -3}

repeat with e in {{name:"n"}}
	set r to e's name
end repeat
r --> "n"

set xs to {1, 2, 3}
repeat with e in xs
	set contents of e to e * 10
end repeat
xs --> {10, 20, 30}

set ys to {}
repeat with e in {1, 2}
	set end of ys to e
end repeat
{ys, ys is {1, 2}, item 1 of ys is 1} --> {{1, 2}, true, false}

repeat with e in {1, 2}
end repeat
e --> 2

repeat with e in {1}
	copy e to v
end repeat
v is 1 --> true

repeat with e in {"x"}
	set r to e is e
end repeat
r --> true
