round 2.5 --> 2
round 3.5 --> 4
round -2.5 --> -2
round 2.5 rounding as taught in school --> 3
round 2.1 rounding up --> 3
round 2.9 rounding down --> 2
round -2.9 rounding toward zero --> -2
round 7 --> 7
round "x" --> error -1700
random number from 1 to 6 --> 4
random number --> 0.5
random number from 1.0 to 2.0 --> 1.5
delay 3 --> nothing
delay "x" --> error -1700
log "x" --> nothing
beep --> nothing
pi > 3.14 --> true
days --> 86400
(current date) - (current date) --> 0
exists item 1 of {1} --> true
exists item 2 of {1} --> false
get 1 + 2 --> 3
do shell script "ls" --> error -10004
display dialog "x" --> error -10004
activate --> nothing
quit --> error -1708
