set n to 0
repeat 3 times
	set n to n + 1
end repeat
n --> 3

set r to {}
repeat with i from 10 to 1 by -4
	set end of r to i
end repeat
{r, i} --> {{10, 6, 2}, 2}

set r to {}
repeat with i from 1 to 3
	set end of r to i
	set i to 10
end repeat
r --> {1, 2, 3}

set n to 0
repeat until n ≥ 2.5
	set n to n + 0.5
end repeat
n --> 2.5

set n to 5
repeat while n > 3
	set n to n - 1
end repeat
n --> 3

set n to 0
repeat
	set n to n + 1
	if n is 4 then exit repeat
end repeat
n --> 4

set r to {}
repeat with c in "aü"
	set end of r to contents of c
end repeat
r --> {"a", "ü"}

set xs to {1, 2}
repeat with e in xs
	set end of xs to 3
end repeat
count of xs --> 4

repeat with i from 9223372036854775806 to 9223372036854775807
	set r to i
end repeat
r --> 9223372036854775807

repeat "x" times
end repeat --> error -1700

repeat with e in 5
end repeat --> error -1728 Can’t get every item of 5.
