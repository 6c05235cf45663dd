on add(a, b)
	return a + b
end add
add(1, 2) --> 3
my add(1, 2) --> 3
add(1, 2) of me --> 3
ADD(1, 2) --> 3
add(1) --> error -1721
add(1, 2, 3) --> error -1721
sub(1) --> error -1708 «script» doesn’t understand the “sub” message.

on fact(n)
	if n < 2 then return 1
	return n * fact(n - 1)
end fact
fact(20) --> 2432902008176640000

on isEven(n)
	if n is 0 then return true
	return isOdd(n - 1)
end isEven
on isOdd(n)
	if n is 0 then return false
	return isEven(n - 1)
end isOdd
isEven(100) --> true

on forever(n)
	return forever(n + 1)
end forever
forever(0) --> error -2706 Stack overflow.

on last_value()
	set x to 4
end last_value
last_value() --> 4

on none()
	return
end none
none() --> nothing
set x to none() --> error -2763
{none()} --> error -2763

on pair({a, b}, c)
	return {c, b, a}
end pair
pair({1, 2}, 3) --> {3, 2, 1}
pair({1}, 3) --> error -1728

on early(xs)
	repeat with e in xs
		if contents of e > 1 then return contents of e
	end repeat
	return 0
end early
early({1, 2, 3}) --> 2

on run argv
	return count of argv
end run --> 0

on quit
	return "mine"
end quit
quit --> "mine"
