words of "Hello, big world!" --> {"Hello", "big", "world"}
word 2 of "don't stop 3.14" --> "stop"
count of words in "one two" --> 2
last word of "one two three" --> "three"
words 2 thru 3 of "a b c d" --> {"b", "c"}
paragraphs of "a\nb\r\nc\rd" --> {"a", "b", "c", "d"}
count of paragraphs of "a\n" --> 2
paragraphs of "" --> {}
paragraph 3 of "a\nb" --> error -1728 Can’t get paragraph 3 of "a
words of "" --> {}
first word of "…" --> error -1728
every word of "aa b cc" whose length is 2 --> {"aa", "cc"}

text from word 2 to word 3 of "one two, three four" --> "two, three"
words from word 2 to word 3 of "one two, three four" --> {"two", "three"}
text from word 1 to word 9 of "one" --> error -1728
