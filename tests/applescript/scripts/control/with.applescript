-- Blocks that change nothing where no application is spoken to.
with timeout of 5 seconds
with transaction
set x to 1
end transaction
end timeout
x --> 1

property asked : 0
on session()
set asked to asked + 1
return 5
end session
with transaction session()
set asked to asked * 10
end transaction
asked --> 10

with transaction 1 / 0
end transaction --> error -2701
