on size(n)
	if n < 10 then
		return "small"
	else if n < 100
		return "medium"
	else
		return "large"
	end if
end size
{size(1), size(50), size(500)} --> {"small", "medium", "large"}

set r to "no"
if 1 is in {1, 2}
	set r to "yes"
end if
r --> "yes"

if "x" then return 1 --> error -1700
if missing value then return 1 --> error -1700
