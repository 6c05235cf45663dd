-- Blocks that change nothing where no application is spoken to.
with timeout of 5 seconds
with transaction
set x to 1
end transaction
end timeout
x --> 1
