on findAll of needle from theSource given limit:n
	return {needle, theSource, n}
end findAll
findAll of "a" from "b" given limit:3 --> {"a", "b", 3}
findAll of "a" from "b" --> error -1715 The limit parameter is missing for findAll.

on scale of x given factor:f : 2
	return x * f
end scale
scale of 5 --> 10
scale of 5 given factor:3 --> 15
