try
	error "bad" number 5 from {1} partial result {2} to text
on error m number n from f partial result p to t
	set r to {m, n, f, p, t}
end try
r --> {"bad", 5, {1}, {2}, text}

try
	item 9 of {1}
on error m number n
	set r to {m, n}
end try
r --> {"Can’t get item 9 of {1}.", -1728}

try
	1 / 0
end try
"on" --> "on"

try
	"x" as integer
on error m from f
	set r to f
end try
r --> "x"

try
	try
		error "inner" number 1
	on error m number n
		error "outer " & m number n + 1
	end try
on error m number n
	set r to {m, n}
end try
r --> {"outer inner", 2}


on f()
	repeat
		try
			error number -128
		on error number n
			return n
		end try
	end repeat
end f
f() --> -128

-- A handler for one number lets the others through.
try
	try
		error number -128
	on error number -128
		set r to "cancelled"
	end try
end try
r --> "cancelled"

try
	try
		error "other" number 5
	on error m number -128
		set r to m
	end try
on error m number n
	set r to {m, n}
end try
r --> {"other", 5}

try
	{a:1} as text
on error m from v
	set r to {m, v}
end try
r --> {"Can’t make {a:1} into type text.", {a:1}}

error "own" --> error -2700 own
error "own" number -5 --> error -5 own
error number -128 --> error -128 User canceled.
error number 42 --> error 42 An error of type 42 has occurred.
error --> error -2700

set n to 0
on f()
  global n
  try
    return {a:1} as text
  on error
    set n to n + 1
    error "again" number 7
  end try
end f
try
  f()
end try
n --> 1
