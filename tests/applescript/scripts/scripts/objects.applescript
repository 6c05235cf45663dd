script counter
	property n : 0
	on bump()
		set n to n + 1
		return n
	end bump
end script
counter's bump()
tell counter to bump()
{n of counter, counter's bump()} --> {2, 3}

on makeCounter(start)
	script
		property n : start
		on bump()
			set n to n + 1
			return n
		end bump
	end script
	return result
end makeCounter
set a to makeCounter(10)
set b to makeCounter(20)
a's bump()
{a's bump(), b's bump()} --> {12, 21}

script outer
	property v : "outer"
	script inner
		on show()
			return v
		end show
	end script
end script
outer's inner's show() --> "outer"

script s
	return 1 + 2
end script
run s --> 3

property v : 1
script s
	on change()
		set v to v + 1
	end change
end script
s's change()
v --> 2

script s
end script
s's nope() --> error -1708 «script s» doesn’t understand the “nope” message.
nope of s --> error -1728 Can’t get nope of «script s».
