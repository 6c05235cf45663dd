{1 is 1, 1 equals 1, 1 is equal to 1, 1 = 2} --> {true, true, true, false}
{1 ≠ 2, 1 /= 2, 1 is not 2, 1 isn't 2, 1 isn’t 2, 1 is not equal to 2, 1 does not equal 2, 1 doesn't equal 2} --> {true, true, true, true, true, true, true, true}
{2 > 1, 2 is greater than 1, 2 comes after 1, 2 is not less than or equal to 1, 1 > 1} --> {true, true, true, true, false}
{1 < 2, 1 is less than 2, 1 comes before 2, 1 < 1} --> {true, true, true, false}
{2 ≥ 2, 2 >= 2, 2 is greater than or equal to 2, 2 is not less than 2, 2 does not come before 2, 1 ≥ 2} --> {true, true, true, true, true, false}
{2 ≤ 2, 2 <= 2, 2 is less than or equal to 2, 2 doesn’t come after 2, 3 ≤ 2} --> {true, true, true, true, false}
{"ab" contains "b", "ab" does not contain "c", "a" is in "ab", "a" is contained by "ab", "c" is not in "ab", "c" isn't contained by "ab"} --> {true, true, true, true, true, true}
{"ab" starts with "a", "ab" begins with "b", "ab" ends with "b", 4 ÷ 2, 4 × 2} --> {true, false, true, 2.0, 8}
1 - 2 - 3 --> -4
2 ^ 3 ^ 2 --> 512.0
-2 ^ 2 --> 4.0
- -1 --> 1
7 div 2 mod 3 --> 0
"a" & 1 + 2 --> "a3"
1 & 2 as text --> "12"
1 as text & "b" is "1b" --> true
1 < 2 = (2 > 1) --> true
not false is true and true or false --> true
{1.0E+3, .5, 9223372036854775807, 9223372036854775808} --> {1000.0, 0.5, 9223372036854775807, 9.223372036854776E+18}
"a\"b\\c" --> "a\"b\\c"
