// Nothing: the precompiled headers need a source file to belong to.
