class of 1 --> integer
class of 1.5 --> real
class of "a" --> text
class of true --> boolean
class of {1} --> list
class of {a:1} --> record
class of null --> class
class of missing value --> class
class of text --> class
class of (current date) --> date
class of me --> script
class of January --> month
class of {class:"own"} --> "own"
