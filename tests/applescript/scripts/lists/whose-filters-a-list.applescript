set xs to {1, 5, "a", 3}
every number of xs whose it > 2 --> {5, 3}

set xs to {{n:1, s:"a"}, {n:2, s:"b"}, {n:3, s:"c"}}
set found to items of xs whose n > 1
found --> {{n:2, s:"b"}, {n:3, s:"c"}}

set xs to {1, 5, 2, 3}
items of xs whose it > 2 --> {5, 3}
first item of xs whose it > 1 --> 5
last item of xs whose (it > 1 and it < 5) --> 3
count of (items of xs whose it > 1) --> 3
items of xs whose it > 9 --> {}
first item of xs whose it > 9 --> error -1728
