// What a target of precompiled headers must have as its source.
