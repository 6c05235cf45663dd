1 / 0 --> error -2701
1 div 0 --> error -2701
1 mod 0.0 --> error -2701
"abc" + 1 --> error -1700 Can’t make "abc" into type number.
{1, 2} + 1 --> error -1700 Can’t make {1, 2} into type number.
{a:1} * 2 --> error -1700 Can’t make {a:1} into type number.
missing value + 1 --> error -1700 Can’t make missing value into type number.
1.0E+300 * 1.0E+300 --> error -2702
