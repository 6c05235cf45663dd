set xs to {1, "two", 3.5, true}
item 1 of xs --> 1
item -1 of xs --> true
first item of xs --> 1
second item of xs --> "two"
last item of xs --> true
middle item of xs --> "two"
some item of xs --> 3.5
items 2 thru 3 of xs --> {"two", 3.5}
items -2 thru -1 of xs --> {3.5, true}
items of xs --> {1, "two", 3.5, true}
length of xs --> 4
count of xs --> 4
(count xs) --> 4
number of xs --> 4
count xs each text --> 1
rest of xs --> {"two", 3.5, true}
reverse of xs --> {true, 3.5, "two", 1}
numbers of xs --> {1, 3.5}
integers of xs --> {1}
every text of xs --> {"two"}
integer 1 of xs --> 1
item 5 of xs --> error -1728 Can’t get item 5 of {1, "two", 3.5, true}.
item 0 of xs --> error -1728
items 3 thru 9 of xs --> error -1728 Can’t get items 3 thru 9 of {1, "two", 3.5, true}.
text 3 of xs --> error -1728
item "x" of xs --> error -1700

item 9 of {1} --> error -1728 Can’t get item 9 of {1}.
last item of {} --> error -1728 Can’t get last item of {}.
some item of {} --> error -1728
rest of {} --> error -1728
item 1 of 5 --> error -1728 Can’t get item 1 of 5.
count of 5 --> error -1708
{} --> {}
