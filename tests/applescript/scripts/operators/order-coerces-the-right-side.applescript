1 < 2 --> true
2 <= 2.0 --> true
"a" < "B" --> true
"b" comes before "a" --> false
"ä" < "z" --> true
5 < "10" --> true
"10" < 5 --> true
3 ≥ 3 --> true
1 < "abc" --> error -1700
{1} < 2 --> error -1700
missing value > 1 --> error -1700
