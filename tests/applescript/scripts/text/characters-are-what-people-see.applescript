length of "abc" --> 3
length of "añ🇩🇪👩‍👩‍👧" --> 4
count of "äö" --> 2
character 2 of "äöü" --> "ö"
character -1 of "a🇩🇪" --> "🇩🇪"
first character of "xyz" --> "x"
last character of "xyz" --> "z"
middle character of "xyz" --> "y"
some character of "abc" --> "b"
characters of "aü" --> {"a", "ü"}
every character of "ab" --> {"a", "b"}
characters 2 thru -1 of "hello" --> {"e", "l", "l", "o"}
text 2 thru 4 of "hello" --> "ell"
text 4 thru 2 of "hello" --> "ell"
text -3 thru -1 of "grün!" --> "ün!"
item 1 of "xy" --> "x"
reverse of characters of "abc" as text --> "cba"
count of characters in "a👍🏽b" --> 3
character 4 of "abc" --> error -1728 Can’t get character 4 of "abc".
character 0 of "abc" --> error -1728
character 1 of "" --> error -1728
text 2 thru 9 of "abc" --> error -1728 Can’t get text 2 thru 9 of "abc".
last character of "" --> error -1728
character 1 of 5 --> error -1728 Can’t get character 1 of 5.
