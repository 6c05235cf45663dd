"Hello world" contains "WORLD" --> true
"abc" contains "" --> true
"abc" does not contain "d" --> true
"bc" is in "abc" --> true
"abc" begins with "AB" --> true
"abc" ends with "bc" --> true
"über" begins with "ÜB" --> true
{1, 2, 3} contains 2 --> true
{1, 2, 3} contains {2, 3} --> true
{1, 2, 3} contains {3, 2} --> false
{1, 2, 3} begins with 1 --> true
{1, 2, 3} ends with {2, 3} --> true
{1, 2, 3} ends with {1, 2} --> false
2 is in {1, 2} --> true
"x" is not in {"a", "b"} --> true
{{1, 2}, 3} contains {{1, 2}} --> true
{{1, 2}, 3} contains {1, 2} --> false
{a:1, b:2} contains {b:2} --> true
{a:1, b:2} contains {b:3} --> false
12 contains 2 --> true
missing value is in {1, missing value} --> true
{a:1} contains 1 --> error -1700
