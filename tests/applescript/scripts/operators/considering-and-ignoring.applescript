considering case
	set r to {"a" is "A", "abc" contains "B", "abc" begins with "A", {"a"} contains "A"}
end considering
r --> {false, false, false, false}

ignoring diacriticals
	set r to "résumé" is "resume"
end ignoring
r --> true

ignoring white space, punctuation and hyphens
	set r to "a-b c!" is "abc"
end ignoring
r --> true

considering numeric strings
	set r to {"file10" > "file9", "v1.07" is "v1.7"}
end considering
r --> {true, true}

on same(a, b)
	return a is b
end same
considering case
	set r to same("a", "A")
end considering
r --> false

considering case
	ignoring case
		set r to "a" is "A"
	end ignoring
end considering
r --> true

{"é" is "é", "é" contains "E", "xé" contains "É", "é1" begins with "é", "é" is in {"é"}} --> {true, false, true, true, true}

-- The Kelvin sign is a K, in three bytes.
{"KK" is "kk", "kk" is "KKk", "k" is "été"} --> {true, false, false}
