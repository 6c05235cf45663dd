script animal
	property sound : "…"
	on speak()
		return my sound & kind()
	end speak
	on kind()
		return "!"
	end kind
end script
script dog
	property parent : animal
	property sound : "wuff"
	on kind()
		return "?" & continue_kind()
	end kind
	on continue_kind()
		continue kind()
	end continue_kind
end script
{dog's speak(), animal's speak()} --> {"wuff?!", "…!"}
sound of dog --> "wuff"

script base
	property shared : 1
end script
script derived
	property parent : base
end script
set shared of derived to 5
{shared of base, shared of derived} --> {5, 5}

script lonely
	on f()
		continue f()
	end f
end script
lonely's f() --> error -1708 Can’t continue f.
