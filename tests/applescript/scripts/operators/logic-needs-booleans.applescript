true and false --> false
true or (1 / 0 = 1) --> true
false and (1 / 0 = 1) --> false
not true --> false
not (1 is 2) --> true
not "true" --> false
not "x" --> error -1700 Can’t make "x" into type boolean.
1 and true --> true
