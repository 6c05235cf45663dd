"a" & "b" --> "ab"
"a" & 1 & 2.5 --> "a12.5"
"a" & true & missing value --> "atruemissing value"
1 & 2 --> {1, 2}
1 & "a" --> {1, "a"}
"a" & {1} --> {"a", 1}
{1} & 2 & {3, 4} --> {1, 2, 3, 4}
{1} & {{2}} --> {1, {2}}
{a:1} & {b:2} --> {a:1, b:2}
{a:1} & {a:2, b:3} --> {a:1, b:3}
1 & 2 as text --> "12"
"n" & 1 + 2 --> "n3"
"a" & "b" is "ab" --> true

set t to "x"
set u to t
set t to t & "y"
{t, u} --> {"xy", "x"}

set t to "x"
set t to t & 1 & {2}
t --> {"x1", 2}
