offset of "lo" in "hello" --> 4
offset of "LO" in "hello" --> 4
offset of "x" in "hello" --> 0
offset of "ü" in "🇩🇪Ü" --> 2
id of "a" --> 97
id of "ab" --> {97, 98}
character id 65 --> "A"
string id {72, 105} --> "Hi"
character id 128512 --> "😀"
character id 55296 --> error -1728
quoted form of "it's" --> "'it'\\''s'"
ASCII character 65 --> "A"
ASCII number "A" --> 65
